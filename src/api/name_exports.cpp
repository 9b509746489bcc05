#include "api/name_exports.h"

#include "api/module_state.h"
#include "api/name_registry.h"

#include <cstring>

char* NameCheck(char* name) {
    const VDString unique = neq::api::reserveUniqueName(nameSet, name);
    const std::size_t size = static_cast<std::size_t>(unique.length()) + 1;
    char* copy = new char[size];
    std::memcpy(copy, unique.c_str(), size);
    return copy;
}

void NameSetClear() {
    nameSet.clear();
}
