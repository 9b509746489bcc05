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
    // Fixed when the library loads (see bridge/shared_folder_names.h).
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
