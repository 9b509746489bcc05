// Host entries of the unique-name registry.

#include "api/host_entry.h"
#include "api/name_exports.h"

#include <memory>

// text: the proposed name; out: receives the unique name. The host passes both; a null
// text is still read as the empty name (and reserved), and a null out only skips the
// copy, rather than crashing the host.
NEQBRIDGE_HOST_ENTRY CheckName(char* text, double, char* out) {
    return neq::api::guardedEntry([&] {
        const std::unique_ptr<char[]> unique(NameCheck(text));
        if (!unique) return neq::api::kInternalFailure;
        if (out != nullptr) neq::api::copyToHost(out, unique.get());
        return 0.0f;
    });
}

NEQBRIDGE_HOST_ENTRY ClearNameSet(char*, double, char*) {
    NameSetClear();
    return 0.0f;
}
