#include "api/name_exports.h"

#include "api/host_entry.h"
#include "api/module_state.h"
#include "api/name_registry.h"

char* NameCheck(char* name) {
    const VDString unique = neq::api::reserveUniqueName(nameSet, name);
    return neq::api::newHostText({unique.c_str(), static_cast<std::size_t>(unique.length())});
}

void NameSetClear() {
    nameSet.clear();
}
