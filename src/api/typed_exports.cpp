// The functions exported under their own C++ names, outside the host's call family,
// grouped as the public header lists them. Each is a shell over one operation of the
// layers below; text handed back is new[]-allocated and owned by the caller.

#include "api/host_entry.h"
#include "api/module_state.h"
#include "blend/blend_scene.h"
#include "meshfile/face_ids.h"
#include "meshfile/groups.h"
#include "meshfile/obj_export.h"
#include "meshfile/rgb_block.h"
#include "meshfile/uv_tiles.h"
#include "platform/directories.h"
#include "platform/file_chooser.h"

#include <cstdio>
#include <memory>
#include <optional>

using neq::api::guardedEntry;
using neq::api::hostCode;

namespace {

std::uint8_t byte(char c) {
    return static_cast<std::uint8_t>(c);
}

} // namespace

// --- NeQ mesh files -------------------------------------------------------------------
// Each shell returns kFailed (-1) if the work below throws (memory exhausted);
// the host's scripts treat any negative result as a failure.

float GetFaceIDsNeq(const char* path, double level) {
    return guardedEntry([&] {
        return hostCode(neq::meshfile::loadFaceIds(path, level, faceID),
                        neq::api::kCannotOpenInput);
    });
}

float writeOBJfromNeq(const char* inPath, char* outPath) {
    return guardedEntry(
        [&] { return hostCode(neq::meshfile::exportObj(inPath, outPath, faceID)); });
}

float ReadVertColorNeq(const char* path, char* outPath) {
    return guardedEntry([&] { return hostCode(neq::meshfile::exportColours(path, outPath)); });
}

float GetUVTile(const char* path, char* buffer) {
    return guardedEntry([&] {
        neq::meshfile::UvTileScan scan;
        const neq::meshfile::ReadOutcome listed = neq::meshfile::listUvTiles(path, scan);
        // The buffer is written only on success; a null one is skipped rather than
        // crashing the host.
        if (listed.status == neq::meshfile::ReadStatus::Done && buffer != nullptr)
            neq::api::copyToHost(buffer, scan.lastTileName.c_str());
        return hostCode(listed, neq::api::kCountCannotOpen);
    });
}

float GetUVsFromNeQ(const char* path, char* base) {
    return guardedEntry([&] {
        return hostCode(neq::meshfile::splitUvTiles(path, base, UVTileStr),
                        neq::api::kCannotOpenInput);
    });
}

void getUVTileString(int index, char* buffer) {
    // The host only asks for indices it was given; anything else leaves the buffer
    // as it was rather than reading outside the list.
    if (index < 0 || static_cast<std::size_t>(index) >= UVTileStr.size()) return;
    neq::api::copyToHost(buffer, UVTileStr[static_cast<std::size_t>(index)].c_str());
}

void clearUVTileString() {
    UVTileStr.clear();
}

float GetUVGroup(const char* path) {
    return guardedEntry([&] {
        return hostCode(neq::meshfile::countGroupsInFile(path), neq::api::kCountCannotOpen);
    });
}

unsigned int readUnInt(char b0, char b1, char b2, char b3) {
    return neq::meshfile::assembleU32(byte(b0), byte(b1), byte(b2), byte(b3));
}

int readSignInt(char b0, char b1, char b2, char b3) {
    return neq::meshfile::assembleI32(byte(b0), byte(b1), byte(b2), byte(b3));
}

float readaFloat(char b0, char b1, char b2, char b3) {
    return neq::meshfile::assembleF32(byte(b0), byte(b1), byte(b2), byte(b3));
}

int readShort(char b0, char b1) {
    return neq::meshfile::assembleI16(byte(b0), byte(b1));
}

int readanInt(char b) {
    return byte(b);
}

// --- Blend-shape scenes ---------------------------------------------------------------
// Both record or read the shared name list UVTileStr; a null path gives -9, as the
// host entries do, before the name list or any file is touched.

float addBlend(const char* targetPath, char* basePath) {
    if (targetPath == nullptr || basePath == nullptr) return neq::api::kNullPath;
    return guardedEntry(
        [&] { return hostCode(neq::blend::addBlend(targetPath, basePath, UVTileStr)); });
}

float finishBlend(const char* basePath) {
    if (basePath == nullptr) return neq::api::kNullPath;
    return guardedEntry([&] { return hostCode(neq::blend::finishBlend(basePath, UVTileStr)); });
}

// --- Folders and files ----------------------------------------------------------------

// True when the last component of the path has no "." in it. Only the name is looked
// at, never the file system: "a/b" and "" are directories, "a/b.txt" and "z." are not.
// A null path reads as "".
bool IsDirectory(char* path) {
    if (path == nullptr) return true;
    for (std::size_t i = std::strlen(path); i-- > 0;) {
        if (path[i] == '.') return false;
        if (path[i] == '/' || path[i] == '\\') return true;
    }
    return true;
}

// Empties a folder of files, by names only. A "\" is appended to the path unless it
// already ends in one, so the folder opened is one whose name ends in a backslash.
// For every entry but "." and "..", the path followed by the entry's name is removed
// when IsDirectory takes it for a file. The two are joined without a "/", so with "/"
// as the separator the files removed are those named "folder\NAME" beside
// "folder\". False when the folder cannot be opened.
bool ClearFolder(std::string path) try {
    // A backslash, not "/": the folder's own name must end in one (or the caller
    // passes it already there). Host scripts rely on exactly this spelling.
    if (path.empty() || path.back() != '\\') path += '\\';
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(path.c_str()), ::closedir);
    if (stream == nullptr) return false;
    std::string entryPath;
    while (const dirent* entry = ::readdir(stream.get())) {
        // "." and ".." are skipped by name. Where they are listed first (as on macOS)
        // this is the same as skipping the first two entries; many Linux file systems
        // list them anywhere, and skipping by position would pass over real files.
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0) continue;
        // Built in a string sized to fit, so a long name cannot overrun anything.
        entryPath.assign(path).append(entry->d_name);
        if (!IsDirectory(entryPath.data())) std::remove(entryPath.c_str());
    }
    return true;
} catch (...) {
    return false; // only an allocation failure
}

// One directory whose parent exists; false on failure or for a null path.
bool createFolder(const char* path) {
    return neq::platform::makeDirectory(path);
}

char* getSharedFolder() try {
    const std::string folder = neq::platform::usersFolder();
    return folder.empty() ? nullptr : neq::api::newHostText(folder);
} catch (...) {
    return nullptr;
}

// The modal chooser for one .vws file with this title (null reads as ""): the chosen
// path, or null when the user cancels or no chooser is available.
char* runCocoaOpenFileBrowser(const char* title) try {
    const std::optional<std::string> chosen = neq::platform::chooseFile(title ? title : "");
    return chosen ? neq::api::newHostText(*chosen) : nullptr;
} catch (...) {
    return nullptr;
}
