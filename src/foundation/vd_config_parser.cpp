// The KEY value configuration files: the parser, its entries, the parameter lookups and
// the file reads and writes, with the helpers they share.

#include "foundation/vd_config_parser.h"

#include "foundation/file_io.h"
#include "foundation/vd_string.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace neq::config {

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
inline bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// Reads the whole file (files::readRegularFile). False (bytes empty) when it cannot be
// opened for reading, is empty or is not a regular file.
bool readConfigFile(const VDString& path, std::vector<char>& bytes);

// Calls visit(lineBegin, lineEnd, nextLine) for each line of [begin, end): a line ends
// at "\n" or "\r" (or at end), and the next one starts after the run of terminators.
template <class Visit> void forEachLine(const char* begin, const char* end, Visit visit) {
    const char* line = begin;
    while (line < end) {
        const char* lineEnd = line;
        while (lineEnd < end && !isLineEnd(*lineEnd))
            ++lineEnd;
        const char* next = lineEnd;
        while (next < end && isLineEnd(*next))
            ++next;
        visit(line, lineEnd, next);
        line = next;
    }
}

// Replaces the file at path with bytes through a temporary file in the same folder and
// a rename (files::replaceFile), keeping the file's permission bits and any link; a
// device is written directly. False when the file could not be written, the file then
// left as it was: also when its folder takes no new file.
bool replaceFileContents(const char* path, const std::string& bytes);

} // namespace neq::config

// The keyword list and the dispatch of a file's lines to it.

using neq::config::isBlank;
using neq::config::isLineEnd;

namespace {

bool isSeparator(char c) {
    return isBlank(c) || c == ':' || c == '=';
}

} // namespace

bool VDGenericConfigFileToken::parseLine(const char* line, void* context) const {
    const char* keyword = m_keyword.c_str();
    const char* rest = line;
    for (;; ++keyword, ++rest) {
        if (*rest == '\0') {
            if (*keyword != '\0') return false;
            // The keyword is the whole line: consumed like a keyword followed only by
            // separators, without a call, so a bare key never changes its field.
            return true;
        }
        if (neq::vdstring::upperCase(*keyword) != neq::vdstring::upperCase(*rest)) break;
    }
    // The first difference. Only a finished keyword matches, as a prefix of the key.
    if (*keyword != '\0') return false;
    while (isSeparator(*rest))
        ++rest;
    if (*rest != '\0' && m_handler) m_handler(rest, context);
    return true;
}

VDGenericConfigFileParser::VDGenericConfigFileParser(const VDGenericConfigFileParser& other) {
    *this = other;
}

VDGenericConfigFileParser&
VDGenericConfigFileParser::operator=(const VDGenericConfigFileParser& other) {
    if (this == &other) return *this;
    freeTokens();
    // Rebuilt in the same order: copy the tail first, each token pushed at the head.
    std::vector<const VDGenericConfigFileToken*> tokens;
    for (const VDGenericConfigFileToken* token = other.m_tokens; token; token = token->m_next)
        tokens.push_back(token);
    for (auto it = tokens.rbegin(); it != tokens.rend(); ++it)
        addToken((*it)->m_keyword.getString(), (*it)->m_handler);
    return *this;
}

VDGenericConfigFileParser::~VDGenericConfigFileParser() {
    freeTokens();
}

void VDGenericConfigFileParser::freeTokens() {
    while (m_tokens) {
        VDGenericConfigFileToken* next = m_tokens->m_next;
        delete m_tokens;
        m_tokens = next;
    }
}

void VDGenericConfigFileParser::addToken(const char* keyword,
                                         VDGenericConfigFileToken::Handler handler) {
    m_tokens = new VDGenericConfigFileToken(keyword, handler, m_tokens);
}

char* VDGenericConfigFileParser::findEndOfLine(char* text) {
    if (text == nullptr) return nullptr;
    while (*text != '\0' && !isLineEnd(*text))
        ++text;
    return *text != '\0' ? text : nullptr;
}

char* VDGenericConfigFileParser::findNextLine(char* text) {
    char* next = findEndOfLine(text);
    if (next == nullptr) return nullptr;
    while (isLineEnd(*next))
        ++next;
    return *next != '\0' ? next : nullptr;
}

bool VDGenericConfigFileParser::parseFile(const char* path, void* context) const {
    std::vector<char> text;
    if (!neq::config::readConfigFile(VDString(path), text)) return false;
    text.push_back('\0');
    // Each line ends at a terminator; the text ending first (a last line without one,
    // or a NUL byte) stops the walk.
    for (char* line = text.data(); line != nullptr;) {
        char* lineEnd = findEndOfLine(line);
        if (lineEnd == nullptr) break;
        char* next = findNextLine(lineEnd);
        while (line < lineEnd && isBlank(*line))
            ++line;
        while (lineEnd > line && isBlank(lineEnd[-1]))
            --lineEnd;
        *lineEnd = '\0';
        for (const VDGenericConfigFileToken* token = m_tokens; token; token = token->m_next)
            if (token->parseLine(line, context)) break;
        line = next;
    }
    return true;
}

// Looking up and rewriting one "KEY = value" entry of a configuration file.

namespace {

// Walks the file's lines as parseALine splits them. A line with an empty key leaves key
// and value as the previous line set them, so it counts as a line of that key.
// visit(lineBegin, nextLine, key, value) returns false to stop.
template <class Visit> void forEachEntry(const std::vector<char>& text, Visit visit) {
    VDString key;
    VDString value;
    bool going = true;
    neq::config::forEachLine(text.data(), text.data() + text.size(),
                             [&](const char* line, const char* lineEnd, const char* next) {
                                 if (!going) return;
                                 VDGenericConfigFileParser::parseALine(line, lineEnd, key, value);
                                 key.toUpper();
                                 going = visit(line, next, key, value);
                             });
}

bool holdsLineBreak(const VDString& text) {
    for (int i = 0; i < text.length(); ++i)
        if (neq::config::isLineEnd(text[i])) return true;
    return false;
}

} // namespace

VDString VDGenericConfigFileParser::findTokenInConfigFile(const VDString& path,
                                                          const VDString& token, bool* found) {
    VDString wanted(token);
    wanted.toUpper();
    if (found) *found = false;
    std::vector<char> text;
    VDString result;
    neq::config::readConfigFile(path, text);
    forEachEntry(text, [&](const char*, const char*, const VDString& key, const VDString& value) {
        if (key != wanted) return true;
        if (found) *found = true;
        const int length = value.length();
        result = (length >= 2 && value[0] == '"' && value[length - 1] == '"')
                     ? value.subString(1, length - 1)
                     : value;
        return false;
    });
    return result;
}

bool VDGenericConfigFileParser::replaceTokenInConfigFile(const VDString& path,
                                                         const VDString& token,
                                                         const VDString& value, bool* found) {
    if (found) *found = false;
    // A line break in either would write extra lines, letting a value smuggle in an
    // entry of another key: such a pair is refused and the file left as it is.
    if (holdsLineBreak(token) || holdsLineBreak(value)) return false;
    VDString key(token);
    key.toUpper();
    std::string contents = std::string(key.c_str()) + " = " + value.c_str() + "\n";
    std::vector<char> text;
    neq::config::readConfigFile(path, text);
    forEachEntry(text,
                 [&](const char* line, const char* next, const VDString& lineKey, const VDString&) {
                     if (lineKey == key) {
                         if (found) *found = true;
                     } else {
                         contents.append(line, next);
                     }
                     return true;
                 });
    return neq::config::replaceFileContents(path.getValidFilePath(), contents);
}

// Splitting a "KEY = value" line and converting values.

using neq::config::isBlank;
using neq::config::isLineEnd;

namespace {

// Index of text in words (compared ignoring case), or -1.
template <std::size_t N> int indexOfWord(const char* text, const char* const (&words)[N]) {
    for (std::size_t i = 0; i < N; ++i)
        if (VDString::cmpNoCase(text, words[i]) == 0) return static_cast<int>(i);
    return -1;
}

const char* const kFalseWords[] = {"No", "0", "False", "#f"};
const char* const kTrueWords[] = {"Yes", "1", "True", "#t"};

} // namespace

bool VDGenericConfigFileParser::parseALine(const char* begin, const char* end, VDString& key,
                                           VDString& value) {
    if (begin == nullptr || end == nullptr) return false;
    while (begin < end && isBlank(*begin))
        ++begin;
    while (end > begin && (isBlank(end[-1]) || isLineEnd(end[-1])))
        --end;
    const char* equals = static_cast<const char*>(std::memchr(begin, '=', end - begin));
    const char* keyEnd = equals ? equals : end;
    while (keyEnd > begin && isBlank(keyEnd[-1]))
        --keyEnd;
    if (keyEnd == begin) return false;
    key.create(begin, keyEnd);
    const char* valueBegin = equals ? equals + 1 : end;
    while (valueBegin < end && isBlank(*valueBegin))
        ++valueBegin;
    value.create(valueBegin, end);
    return true;
}

VDString VDGenericConfigFileParser::paramToString(const char* value) {
    VDString result;
    if (value == nullptr || *value == '\0') return result;
    if (*value != '"') {
        result.set(value);
        return result;
    }
    const char* inside = value + 1;
    const char* end = inside + std::strlen(inside);
    // Without a closing quote (a lone quote included) everything after the opening one.
    if (end > inside && end[-1] == '"') --end;
    result.create(inside, end);
    return result;
}

bool VDGenericConfigFileParser::paramToBool(const char* value) {
    return indexOfWord(value, kFalseWords) < 0;
}

int VDGenericConfigFileParser::paramToBoolOrDefault(const char* value) {
    if (indexOfWord(value, kFalseWords) >= 0) return 0;
    if (indexOfWord(value, kTrueWords) >= 0) return 1;
    return -1;
}

float VDGenericConfigFileParser::paramToFloat(const char* value) {
    float number = 0.0f;
    if (value == nullptr || std::sscanf(value, "%f", &number) != 1) return 0.0f;
    return number;
}

int VDGenericConfigFileParser::paramToInt(const char* value) {
    const float number = paramToFloat(value);
    if (std::isnan(number)) return 0;
    // Beyond the int range the conversion would be undefined: clamp.
    if (number >= 2147483648.0f) return INT_MAX;
    if (number <= -2147483648.0f) return INT_MIN;
    return static_cast<int>(number);
}

// Whole-file reads and the replacing write of configuration files.

namespace neq::config {

bool readConfigFile(const VDString& path, std::vector<char>& bytes) {
    std::string text, reason;
    files::readRegularFile(path.getValidFilePath(), text, reason);
    bytes.assign(text.begin(), text.end());
    return !bytes.empty();
}

bool replaceFileContents(const char* path, const std::string& bytes) {
    std::string reason;
    struct stat existing {};
    if (::stat(path, &existing) != 0 || S_ISREG(existing.st_mode))
        return files::replaceFile(path, bytes, reason);
    // A device is not a file to replace: it is written to, as it always was (a FIFO only
    // when someone reads it; otherwise the write fails instead of waiting).
    files::OwnedDescriptor device(
        files::openFile(path, O_WRONLY | O_TRUNC, files::Kind::anyFile, reason));
    return device.isOpen() && files::writeAll(device.get(), bytes.data(), bytes.size()) &&
           device.close();
}

} // namespace neq::config
