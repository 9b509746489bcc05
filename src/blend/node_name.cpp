#include "blend/node_name.h"

namespace neq::blend {
namespace {

bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

bool isPlainNodeName(std::string_view name) {
    if (name.empty() || isAsciiDigit(name.front())) return false;
    for (char c : name)
        if (!isAsciiLetter(c) && !isAsciiDigit(c) && c != '_' && c != ':') return false;
    return true;
}

} // namespace neq::blend
