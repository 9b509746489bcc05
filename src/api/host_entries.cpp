// The fifteen entries the host calls by their plain names, in the order of the host's
// table. Each is a thin shell: it checks its pointers, calls one operation, copies any
// text into the host's buffer and returns a float code. None lets an exception out.

#include "api/host_entry.h"
#include "api/module_state.h"
#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"
#include "uvmerge/vd_uv_merge_algo.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <memory>

using neq::api::guardedEntry;
using neq::api::kCannotOpenOutput;
using neq::api::kDone;
using neq::api::kFailed;

namespace {

// Appends the source's bytes and then its last byte once more (a zero byte for an
// empty source): the copy loop host scripts grew up with wrote its holder again on
// the failing read at end of file, and they expect that byte. The source is read
// whole and appended in one write; reading it all first also makes appending a file
// to itself well defined.
float appendWithRepeatedLastByte(const char* source, const char* destination) {
    std::vector<std::uint8_t> bytes;
    // A folder, FIFO or device counts as a source that cannot be opened.
    if (!neq::readWholeFile(source, bytes)) return kFailed;
    neq::appendRepeatedLastByte(bytes);
    // Created if missing, never truncated; a FIFO nobody reads is refused, not waited on.
    std::string reason;
    neq::files::OwnedDescriptor file(neq::files::openFile(
        destination, O_WRONLY | O_CREAT | O_APPEND, neq::files::Kind::anyFile, reason));
    if (!file.isOpen()) return kCannotOpenOutput;
    // As in the copy loop, a failed write is not reported: the entry returns 0.
    neq::files::writeAll(file.get(), reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return kDone;
}

} // namespace

NEQBRIDGE_HOST_ENTRY Version(char*, double, char*) {
    return 4.09f;
}

// text = target scene, out = base scene (read as a path, not written to). The typed
// exports refuse null pointers with -9 before touching the name list or any file.
NEQBRIDGE_HOST_ENTRY addBlendFile(char* text, double, char* out) {
    return addBlend(text, out);
}

// text = base scene.
NEQBRIDGE_HOST_ENTRY endBlendFile(char* text, double, char*) {
    return finishBlend(text);
}

NEQBRIDGE_HOST_ENTRY clearUVString(char*, double, char*) {
    clearUVTileString();
    return kDone;
}

NEQBRIDGE_HOST_ENTRY ClearNameSet(char*, double, char*) {
    NameSetClear();
    return kDone;
}

// text: the proposed name; out: receives the unique name. The host passes both; a null
// text is still read as the empty name (and reserved), and a null out only skips the
// copy, rather than crashing the host.
NEQBRIDGE_HOST_ENTRY CheckName(char* text, double, char* out) {
    return guardedEntry([&] {
        const std::unique_ptr<char[]> unique(NameCheck(text));
        if (!unique) return kFailed;
        if (out != nullptr) neq::api::copyToHost(out, unique.get());
        return kDone;
    });
}

// The folder listing: OpenFolder, then GetFile until -3, then CloseFolder, all over the
// one directory stream kept in `folder` between calls.
NEQBRIDGE_HOST_ENTRY OpenFolder(char* text, double, char*) {
    return guardedEntry([&] {
        // A stream that is already open is overwritten, not closed: host scripts that
        // forget CloseFolder leave it open for good. A null path is a folder that
        // cannot be opened, so `folder` ends up null as after any failed open.
        folder = text ? ::opendir(text) : nullptr;
        return folder ? kDone : kFailed;
    });
}

NEQBRIDGE_HOST_ENTRY GetFile(char*, double, char* out) {
    return guardedEntry([&] {
        // With nowhere to put the name, no entry is read, so none is lost.
        if (folder == nullptr || out == nullptr) return kFailed;
        const dirent* entry = ::readdir(folder);
        // At the end the stream stays open until CloseFolder.
        if (entry == nullptr) return neq::api::kNoMoreFiles;
        neq::api::copyToHost(out, entry->d_name);
        return kDone;
    });
}

NEQBRIDGE_HOST_ENTRY CloseFolder(char*, double, char*) {
    return guardedEntry([&] {
        if (folder == nullptr) return kFailed;
        ::closedir(folder);
        folder = nullptr;
        return kDone;
    });
}

NEQBRIDGE_HOST_ENTRY SetFolder(char* text, double, char*) {
    return guardedEntry([&] { return text && ::chdir(text) == 0 ? kDone : kFailed; });
}

NEQBRIDGE_HOST_ENTRY FileDelete(char* text, double, char*) {
    return guardedEntry([&] { return text ? static_cast<float>(std::remove(text)) : kFailed; });
}

// Success is 1 here, and failure 0, where every other entry uses 0 for success; host
// scripts test for it.
NEQBRIDGE_HOST_ENTRY GetPublicFolder(char*, double, char* out) {
    return guardedEntry([&] {
        char* path = getSharedFolder();
        if (path == nullptr) return kDone;
        // The host learns of a null out only from the 0 result; nothing is copied then.
        if (out != nullptr) neq::api::copyToHost(out, path);
        delete[] path;
        return out != nullptr ? neq::api::kFound : kDone;
    });
}

NEQBRIDGE_HOST_ENTRY CreateFolder(char* text, double, char*) {
    return guardedEntry([&] { return createFolder(text) ? kDone : kFailed; });
}

// text = source file, out = destination file (read as a path, not written to).
NEQBRIDGE_HOST_ENTRY AddFile(char* text, double, char* out) {
    return guardedEntry([&] {
        if (text == nullptr || out == nullptr) return kDone; // success by long-standing contract
        return appendWithRepeatedLastByte(text, out);
    });
}

// A Maya ASCII scene is welded, a NeQ file is not (that merge was never written and
// reports failure).
NEQBRIDGE_HOST_ENTRY NeQMergeUVs(char* text, double, char*) {
    return guardedEntry([&] {
        const VDString path(VDString(text).getValidFilePath());
        if (!VDDiskServer::fileExists(path)) return kFailed;
        bool merged = false;
        if (path.endsWith(".ma", true))
            merged = VDUVMergeAlgo::mergeUVsInMayaFile(path);
        else if (path.endsWith(".NeQ", true))
            merged = VDUVMergeAlgo::mergeUVsInNeQFile(path);
        return merged ? kDone : kFailed;
    });
}
