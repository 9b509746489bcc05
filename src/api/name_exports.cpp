#include "api/name_exports.h"

#include "api/host_entry.h"
#include "api/module_state.h"
#include "api/name_registry.h"

namespace {

// Belongs to nameSet; not exported, since nothing outside needs it.
neq::api::CopyCounterHints copyCounterHints;

} // namespace

// Null when memory ran out; the name may then be reserved without being handed out.
char* NameCheck(char* name) try {
    const VDString unique = neq::api::reserveUniqueName(nameSet, copyCounterHints, name);
    return neq::api::newHostText({unique.c_str(), static_cast<std::size_t>(unique.length())});
} catch (...) {
    return nullptr;
}

void NameSetClear() {
    nameSet.clear();
    copyCounterHints = {};
}
