// The keyword list and the dispatch of a file's lines to it.

#include "foundation/vd_config_parser.h"

#include "foundation/vd_config_text.h"
#include "foundation/vd_string_chars.h"

#include <vector>

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
