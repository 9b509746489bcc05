#pragma once

// VDDiskServer: static services over the file system and the desktop's process
// services. Every path argument first goes through VDString::getValidFilePath, so
// host-style paths with a volume prefix before a ":" are accepted. Failures are
// reported only through results (false, null, 0 or empty strings).

#include "foundation/export.h"
#include "foundation/vd_array.h"
#include "foundation/vd_string.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// Identifies a running application. The desktop tools this library talks through
// report a process by its process id, which getRunningProcess puts in lowLongOfPSN.
struct ProcessSerialNumber {
    std::uint32_t highLongOfPSN = 0;
    std::uint32_t lowLongOfPSN = 0;
};

class NEQBRIDGE_API VDDiskServer {
  public:
    // The null stream: what fileOpen returns when nothing could be opened.
    static std::FILE* const s_invalidFile;

    // --- files and folders -----------------------------------------------------------
    // fopen of the valid path, except that it never waits on a FIFO and that a mode that
    // reads opens regular files only (a folder, FIFO or device gives s_invalidFile).
    static std::FILE* fileOpen(const VDString& path, const VDString& mode);
    // Bytes from the start to the end of the stream (the position is kept); 0 for null.
    static long long fileSize(std::FILE* file);
    // Accessible and not a folder / accessible and a folder.
    static bool fileExists(const VDString& path);
    static bool folderExists(const VDString& path);
    // The permission bits (with set-id and sticky bits); 0 when the path cannot be
    // examined.
    static unsigned short getMode(const VDString& path);
    static bool setMode(const VDString& path, unsigned short mode);
    static bool renameFile(const VDString& from, const VDString& to);
    // Removes a file, or an empty folder: both are the same removal.
    static bool deleteFile(const VDString& path);
    static bool deleteFolder(const VDString& path);
    // Makes path the current working folder.
    static bool openFolder(const VDString& path);
    // The current working folder; empty when it does not fit in 511 characters.
    static VDString getCurrentPath();
    // Always "/Applications".
    static VDString getApplicationFolder();
    static VDString getApplicationX86Folder(bool);

    // --- names -----------------------------------------------------------------------
    // These work on the text alone, nothing is looked up on disk. The three that take
    // a path first drop a volume prefix, as every path argument does.

    // Keeps the text up to and including the last "/"; without one, path becomes
    // empty. Always true.
    static bool extractPathFromFilename(VDString& path);
    // The same, and fileName receives what was cut off: the text after the last "/"
    // (all of it when there is none). Always true.
    static bool extractPathFromFilename(VDString& path, VDString& fileName);
    // Drops everything up to and including the last "/" or "\". Always true.
    static bool removePathFromFilename(VDString& path);
    // Whether name ends with ext, case-sensitively; a "." is put in front of an ext
    // that lacks one.
    static bool fileNameHasExtension(const VDString& name, const VDString& ext);
    // Appends ext (its "." added when missing) unless name already ends with it; true
    // when it appended.
    static bool makeFilenameWithExt(VDString& name, const VDString& ext);
    // The inverse: removes ext (its "." added when missing) from the end of name when
    // name ends with it, case-sensitively; true when it removed it.
    static bool makeFilenameWithoutExt(VDString& name, const VDString& ext);

    // --- small text files, copies, listings ----------------------------------------
    // A regular file of at most 4096 bytes, whole. Anything else (a folder, a FIFO, a
    // device) fails at once without blocking. On failure out is emptied.
    static bool readFileAsString(const VDString& path, VDString& out);
    // Creates or truncates the file first, then refuses an empty text or one longer
    // than 4096 bytes (leaving the file empty); true when every byte was written.
    static bool writeFileFromString(const VDString& path, const VDString& text);
    // Copies a regular file in 1 MiB blocks. When the destination cannot be created,
    // its folder is made writable for the attempt and given its mode back afterwards.
    // A partial destination is removed.
    static bool copyFile(const VDString& from, const VDString& to);
    // Appends folder + "/" + name of every entry matching filter, descending into
    // sub-folders while depth > 0, the last one listed first. stopLevels >= 1 stops
    // at the first level that has a hit. True when anything was found.
    static bool searchFileList(VDArray<VDString>& found, const VDString& filter,
                               const VDString& folder, int depth, int stopLevels);
    // Removes a folder with its entries, or the entries matching a wildcard last
    // component ("folder/*.tmp"). Entries of sub-folders are joined to the starting
    // folder, so recursion reaches one level only. The last flag is ignored.
    static bool deleteDirectory(const VDString& path, bool recursive, bool);

    // --- other applications ----------------------------------------------------------
    // These start programs directly with argument vectors (no shell ever sees a path
    // or an argument) and wait for them: "sh", "open" and "osascript" are looked up
    // on PATH, and where they are missing the operations fail.

    // Whether the application bundle at appPath is running; psn receives its process
    // id. Every running process is looked at, whatever psn held.
    static bool getRunningProcess(const VDString& appPath, ProcessSerialNumber& psn);
    // "open -a APP FILE": starts the application when needed and brings it forward.
    static bool openFileInApplication(const VDString& appPath, const VDString& filePath);
    // Starts or brings forward the application, then sends it an event of the core
    // class with this four-character id, the text as its direct object.
    static bool sendAppleEventToApplication(const VDString& appPath, unsigned int eventId,
                                            const VDString& text);
    // Starts or brings forward the application, then types the key (low 16 bits of
    // keyCode) with the modifiers: 0x02 control, 0x04 option, 0x01 shift, 0x08 command.
    static bool sendKeyEventToApplication(const VDString& appPath, int keyCode, int modifiers);
    // "osascript -e SCRIPT"; always true.
    static bool runAppleScript(const VDString& script);
    // "sh PATH [ARGS]" for a ".sh" path, "open -a PATH [--args ARGS]" for an ".app",
    // else "PATH [ARGS]"; args is one argument. True when it exits with status 0.
    static bool launchApplication(const VDString& path, const VDString& args);
    // The same three forms with any number of arguments, each handed over as it is. With
    // `wait` the result is launchApplication's; without, the program is left running and
    // the result is whether it started (the caller reaps it, or ends first).
    static bool launchApplication(const VDString& path, const std::vector<std::string>& args,
                                  bool wait);
    // The same three forms run as a shell line with administrator rights through
    // osascript, the path and args quoted inside the script.
    static bool launchApplicationAsAdmin(const VDString& path, const VDString& args);
};

// Wildcard match of a file name: "*" any run (also none), "?" one character,
// ASCII case ignored. False when either is empty.
NEQBRIDGE_API bool fileNameMatchFilter(const VDString& name, const VDString& filter);
// The same match on the bytes as they are (case counts); null reads as empty.
NEQBRIDGE_API bool fileNameMatchFilterRec(const char* name, const char* filter);
