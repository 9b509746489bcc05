#pragma once

// VDNeQApp: the record of one target application of the NeQ bridge, as its description
// file (KEY value lines, read by VDNeQAppParser) gives it.

#include "foundation/export.h"
#include "foundation/vd_config_parser.h"
#include "foundation/vd_string.h"

#include <cstddef>
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

// The keys of a target application's description file, in registration order.

namespace neq::bridge {

struct AppKey {
    const char* key;
    VDGenericConfigFileToken::Handler handler;
    std::uint32_t flag; // the VDNeQApp flag bit it sets, 0 for the other keys
};

inline constexpr std::size_t kAppKeyCount = 33;
extern const AppKey kAppKeys[kAppKeyCount];

} // namespace neq::bridge

// VDNeQAppParser: reads a target application's description file into the record it
// is. Keys are matched ignoring case as line prefixes followed by any run of space,
// tab, ":" or "=", the newest registered key first (so NORMAL_MAP_FLIP_XY is tried
// before NORMAL_MAP_FLIP_X). Absent keys keep their defaults; a repeated key keeps its
// last value.

class NEQBRIDGE_API VDNeQAppParser : public VDNeQApp {
  public:
    VDNeQAppParser() { buildParser(); }
    // Copies the record; the copy gets a parser of its own.
    VDNeQAppParser(const VDNeQAppParser& other) : VDNeQApp(other) { buildParser(); }
    // Copies the record only; the parser stays as it is.
    VDNeQAppParser& operator=(const VDNeQAppParser& other);

    // Registers the 33 keys on the parser, in the file format's order.
    void buildParser();
    // Clears the record, then reads the file into it. True when the file was opened and
    // was not empty.
    bool parseFile(const char* path);

    // One handler per key; the context is the VDNeQApp to fill (null is ignored).
    static void parseName(const char* value, void* app);
    static void parseNeQVersion(const char* value, void* app);
    static void parseExt(const char* value, void* app);
    static void parseTamplate(const char* value, void* app);
    static void parseLocateCommand(const char* value, void* app);
    static void parseInitCommand(const char* value, void* app);
    static void parseEditCommand(const char* value, void* app);
    static void parseIFlipX(const char* value, void* app);
    static void parseIFlipY(const char* value, void* app);
    static void parseIFlipZ(const char* value, void* app);
    static void parseEFlipX(const char* value, void* app);
    static void parseEFlipY(const char* value, void* app);
    static void parseEFlipZ(const char* value, void* app);
    static void parseISwitchYZ(const char* value, void* app);
    static void parseESwitchYZ(const char* value, void* app);
    static void parseIFlipN(const char* value, void* app);
    static void parseEFlipN(const char* value, void* app);
    static void parseIPolyGroups(const char* value, void* app);
    static void parseIMatAsGroups(const char* value, void* app);
    static void parseGroupNSidedPolys(const char* value, void* app);
    static void parseNFlipX(const char* value, void* app);
    static void parseNFlipY(const char* value, void* app);
    static void parseNFlipZ(const char* value, void* app);
    static void parseNFlipXY(const char* value, void* app);
    static void parseNFlipVert(const char* value, void* app);
    static void parseIMFlipX(const char* value, void* app);
    static void parseIMFlipY(const char* value, void* app);
    static void parseIMFlipZ(const char* value, void* app);
    static void parseIMSwitchYZ(const char* value, void* app);
    static void parseEMFlipX(const char* value, void* app);
    static void parseEMFlipY(const char* value, void* app);
    static void parseEMFlipZ(const char* value, void* app);
    static void parseEMSwitchYZ(const char* value, void* app);

    const VDGenericConfigFileParser& getParser() const { return m_parser; }

  private:
    VDGenericConfigFileParser m_parser;
};
