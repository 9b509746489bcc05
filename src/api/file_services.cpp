// Host entries that delete and append files.

#include "api/host_entry.h"
#include "foundation/vd_disk_server_internal.h"
#include "foundation/whole_file.h"

#include <fcntl.h>

#include <cstdio>
#include <string>

using neq::api::guardedEntry;

namespace {

constexpr float kSourceUnreadable = -1.0f;
constexpr float kDestinationUnwritable = -2.0f;

// Appends the source's bytes and then its last byte once more (a zero byte for an
// empty source): the copy loop host scripts grew up with wrote its holder again on
// the failing read at end of file, and they expect that byte. The source is read
// whole and appended in one write; reading it all first also makes appending a file
// to itself well defined.
float appendWithRepeatedLastByte(const char* source, const char* destination) {
    std::vector<std::uint8_t> bytes;
    // A folder, FIFO or device counts as a source that cannot be opened.
    if (!neq::readWholeFile(source, bytes)) return kSourceUnreadable;
    neq::appendRepeatedLastByte(bytes);
    // Created if missing, never truncated; a FIFO nobody reads is refused, not waited on.
    std::string reason;
    neq::diskserver::OwnedDescriptor file(neq::files::openFile(
        destination, O_WRONLY | O_CREAT | O_APPEND, neq::files::Kind::anyFile, reason));
    if (!file.isOpen()) return kDestinationUnwritable;
    // As in the copy loop, a failed write is not reported: the entry returns 0.
    neq::diskserver::writeAll(file.get(), reinterpret_cast<const char*>(bytes.data()),
                              bytes.size());
    return 0.0f;
}

} // namespace

NEQBRIDGE_HOST_ENTRY FileDelete(char* text, double, char*) {
    return guardedEntry([&] { return text ? static_cast<float>(std::remove(text)) : -1.0f; });
}

// text = source file, out = destination file (read as a path, not written to).
NEQBRIDGE_HOST_ENTRY AddFile(char* text, double, char* out) {
    return guardedEntry([&] {
        if (text == nullptr || out == nullptr) return 0.0f; // success by long-standing contract
        return appendWithRepeatedLastByte(text, out);
    });
}
