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

// Identifies a running application: the pair of numbers the desktop hands out.
struct ProcessSerialNumber {
    std::uint32_t highLongOfPSN = 0;
    std::uint32_t lowLongOfPSN = 0;
};

class NEQBRIDGE_API VDDiskServer {
  public:
    // The null stream: what fileOpen returns when nothing could be opened.
    static std::FILE* const s_invalidFile;

    // --- files and folders -----------------------------------------------------------
    static std::FILE* fileOpen(const VDString& path, const VDString& mode);
    // Bytes from the start to the end of the stream (the position is kept); 0 for null.
    static long long fileSize(std::FILE* file);
    // Accessible and not a folder / accessible and a folder.
    static bool fileExists(const VDString& path);
    static bool folderExists(const VDString& path);
    static unsigned short getMode(const VDString& path);
    static bool setMode(const VDString& path, unsigned short mode);
    static bool renameFile(const VDString& from, const VDString& to);
    static bool deleteFile(const VDString& path);
    static bool deleteFolder(const VDString& path);
    // Makes path the current working folder.
    static bool openFolder(const VDString& path);
    static VDString getCurrentPath();
    static VDString getApplicationFolder();
    static VDString getApplicationX86Folder(bool);

    // --- names -----------------------------------------------------------------------
    static bool extractPathFromFilename(VDString& path);
    static bool extractPathFromFilename(const VDString& path, VDString& fileName);
    static bool removePathFromFilename(VDString& path);
    static bool fileNameHasExtension(const VDString& name, const VDString& ext);
    static bool makeFilenameWithExt(VDString& name, const VDString& ext);
    static bool makeFilenameWithoutExt(VDString& name, const VDString& ext);

    // --- small text files, copies, listings ----------------------------------------
    static bool readFileAsString(const VDString& path, VDString& out);
    static bool writeFileFromString(const VDString& path, const VDString& text);
    static bool copyFile(const VDString& from, const VDString& to);
    static bool searchFileList(VDArray<VDString>& found, const VDString& filter,
                               const VDString& folder, int depth, int stopLevels);
    static bool deleteDirectory(const VDString& path, bool recursive, bool);

    // --- other applications ----------------------------------------------------------
    static bool getRunningProcess(const VDString& appPath, ProcessSerialNumber& psn);
    static bool openFileInApplication(const VDString& appPath, const VDString& filePath);
    static bool sendAppleEventToApplication(const VDString& appPath, unsigned int eventId,
                                            const VDString& text);
    static bool sendKeyEventToApplication(const VDString& appPath, int keyCode, int modifiers);
    static bool runAppleScript(const VDString& script);
    static bool launchApplication(const VDString& path, const VDString& args);
    static bool launchApplicationAsAdmin(const VDString& path, const VDString& args);
};

// Wildcard match of a file name: "*" any run (also none), "?" one character,
// ASCII case ignored. False when either is empty.
NEQBRIDGE_API bool fileNameMatchFilter(const VDString& name, const VDString& filter);
NEQBRIDGE_API bool fileNameMatchFilterRec(const char* name, const char* filter);
