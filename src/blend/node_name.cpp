#include "blend/node_name.h"

#include "foundation/file_name_extract.h"

namespace neq::blend {
namespace {

bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

std::string nodeNameOf(std::string path) {
    return FileNameExtract(path, 2);
}

bool isPlainNodeName(std::string_view name) {
    if (name.empty() || isAsciiDigit(name.front())) return false;
    for (char c : name)
        if (!isAsciiLetter(c) && !isAsciiDigit(c) && c != '_' && c != ':') return false;
    return true;
}

bool isQuotableNodeName(std::string_view name) {
    for (char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\' || byte < 0x20 || byte == 0x7F) return false;
    }
    return true;
}

} // namespace neq::blend
