#pragma once

// VDNeQ: where the NeQ bridge keeps its shared files, and the installed locations of
// Clayvo and of each target application recorded there. The tree, under the public
// folder:
//
//   NeQBrush/                 the host's files (NeQ_Config.txt holds its PATH)
//   NeQApps/<application>/    one folder per target application (its NeQ_Config.txt)
//   NeQProjects/Default/      the default project's files
//
// Paths are joined with exactly one "/". No folder is ever created here: with a folder
// missing, the writers fail and the readers find nothing.

#include "foundation/export.h"
#include "foundation/vd_string.h"

class NEQBRIDGE_API VDNeQ {
  public:
    // Fixed when the library loads (see SharedFolderNames below).
    static const VDString s_publicFolder;
    static const VDString s_folderSeparator;
    static const VDString s_NeQAppsFolder;
    static const VDString s_NeQBrushFolder;
    static const VDString s_NeQProjectsFolder;
    static const VDString s_NeQDefaultProjectFolder;

    // True when app is one plain folder name: not empty, not "." or "..", no "/" or
    // "\\". Any other app would lead out of NeQApps, so the application paths below are
    // empty for it, the readers find nothing and the writers fail.
    static bool isAppName(const VDString& app);

    static VDString getClayvoFile(const VDString& name);
    static VDString getAppFolder(const VDString& app);
    static VDString getAppFile(const VDString& app, const VDString& name);
    static VDString getDefaultProjectFile(const VDString& name);
    static VDString getApplicationFile();
    static VDString getObjectListFile();
    static VDString getProjectPathFile();
    static VDString getObjectPathFile();

    // The PATH entry of the host's NeQ_Config.txt, unquoted; empty when absent.
    static VDString getClayvoPath();
    // Writes it (quoted) as the first line of that file, creating the file if needed.
    static bool setClayvoPath(const VDString& path);
    // The same for a target application's folder; found (may be null) tells whether a
    // PATH line exists.
    static VDString readAppPath(const VDString& app, bool* found);
    static bool writeAppPath(const VDString& app, const VDString& path);
};

// The names of the bridge's shared folder tree. They are fixed when the library loads:
// the public folder is NEQBRIDGE_PUBLIC_FOLDER when that is set and not empty, else
// the desktop's shared folder, and every other name follows from it.

namespace neq::bridge {

inline constexpr char kDefaultPublicFolder[] = "/Users/Shared/Vandrel";
inline constexpr char kPublicFolderVariable[] = "NEQBRIDGE_PUBLIC_FOLDER";

struct SharedFolderNames {
    // The variable named the root folder (also as "//", "/tmp/.." or a link to "/"): the
    // tree would spread over the root itself, so it is refused and every name below is
    // empty, which the bridge treats as no folder at all.
    bool rootRefused = false;
    VDString publicFolder;
    VDString folderSeparator;
    VDString appsFolder;
    VDString brushFolder;
    VDString projectsFolder;
    VDString defaultProjectFolder;
};

// The names for a value of the variable (null or empty: the default folder). Trailing
// separators of the value are dropped, so "/srv/bridge/" gives "/srv/bridge"; a value
// that is the root is refused.
SharedFolderNames sharedFolderNamesFor(const char* variableValue);

// The names the library loaded with: computed from the environment on first use, which
// is during the library's static initialisation.
const SharedFolderNames& loadedSharedFolderNames();

} // namespace neq::bridge

// The PATH entry of a NeQ_Config.txt file: an installed location, stored quoted. An
// empty file path is the one the bridge gives where there is no file to use (a refused
// application name or public folder): nothing is found there and nothing written.

namespace neq::bridge {

// The entry's value without its quotes; empty when the file or the entry is missing.
// found, when given, tells whether a PATH line exists.
VDString readPathEntry(const VDString& configFile, bool* found);
// Writes "PATH = "path"" as the file's first line, creating the file (not its folder).
bool writePathEntry(const VDString& configFile, const VDString& path);

} // namespace neq::bridge
