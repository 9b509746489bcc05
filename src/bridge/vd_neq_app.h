#pragma once

// VDNeQApp: the record of one target application of the NeQ bridge, as its description
// file (KEY value lines, read by VDNeQAppParser) gives it.

#include "foundation/export.h"
#include "foundation/vd_string.h"

#include <cstdint>

class NEQBRIDGE_API VDNeQApp {
  public:
    // Bits of m_flags, one per flag key of the description file.
    enum Flag : std::uint32_t {
        kImportFlipX = 0x00000001,
        kImportFlipY = 0x00000002,
        kImportFlipZ = 0x00000004,
        kExportFlipX = 0x00000008,
        kExportFlipY = 0x00000010,
        kExportFlipZ = 0x00000020,
        kImportSwitchYZ = 0x00000040,
        kExportSwitchYZ = 0x00000080,
        kImportFlipNormals = 0x00000100,
        kExportFlipNormals = 0x00000200,
        kImportPolyGroups = 0x00000400,
        kImportMatAsGroups = 0x00000800,
        kGroupNSidedPolys = 0x00001000,
        kNormalMapFlipX = 0x00002000,
        kNormalMapFlipY = 0x00004000,
        kNormalMapFlipZ = 0x00008000,
        kNormalMapFlipXY = 0x00010000,
        kNormalMapFlipVert = 0x00020000,
        kImportMFlipX = 0x00040000,
        kImportMFlipY = 0x00080000,
        kImportMFlipZ = 0x00100000,
        kImportMSwitchYZ = 0x00200000,
        kExportMFlipX = 0x00400000,
        kExportMFlipY = 0x00800000,
        kExportMFlipZ = 0x01000000,
        kExportMSwitchYZ = 0x02000000,
    };

    // Every string empty, version 1, no flag.
    void clear();

    // Filled by the code that owns the record (no key of the file sets it).
    VDString m_id;
    VDString m_name;            // NAME
    VDString m_extension;       // EXTENSION
    VDString m_template;        // TAMPLATE (so spelled in the files)
    VDString m_locateCommand;   // LOCATE_COMMAND
    VDString m_initCommand;     // INIT_COMMAND
    VDString m_editCommand;     // EDIT_COMMAND
    std::int32_t m_version = 1; // NEQ_VERSION
    std::uint32_t m_flags = 0;  // the flag keys
};
