#pragma once

// VDNeQAppParser: reads a target application's description file into the record it
// is. Keys are matched ignoring case as line prefixes followed by any run of space,
// tab, ":" or "=", the newest registered key first (so NORMAL_MAP_FLIP_XY is tried
// before NORMAL_MAP_FLIP_X). Absent keys keep their defaults; a repeated key keeps its
// last value.

#include "bridge/vd_neq_app.h"
#include "foundation/export.h"
#include "foundation/vd_config_parser.h"

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
