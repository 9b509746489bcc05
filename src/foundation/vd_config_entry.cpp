// Looking up and rewriting one "KEY = value" entry of a configuration file.

#include "foundation/vd_config_parser.h"

#include "foundation/vd_config_text.h"

#include <string>
#include <vector>

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
