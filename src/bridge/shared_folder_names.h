#pragma once

// The names of the bridge's shared folder tree. They are fixed when the library loads:
// the public folder is NEQBRIDGE_PUBLIC_FOLDER when that is set and not empty, else
// the desktop's shared folder, and every other name follows from it.

#include "foundation/vd_string.h"

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
