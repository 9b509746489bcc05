// Splitting a "KEY = value" line and converting values.

#include "foundation/vd_config_parser.h"

#include "foundation/vd_config_text.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>

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
