#include "bridge/vd_neq_app.h"

void VDNeQApp::clear() {
    *this = VDNeQApp();
}

using P = VDGenericConfigFileParser;

namespace {

void setString(void* app, VDString VDNeQApp::*field, const char* value) {
    if (app) static_cast<VDNeQApp*>(app)->*field = P::paramToString(value);
}

// Sets the bit when the value is true ("No", "0", "False", "#f" are false), else clears it.
void setFlag(void* app, std::uint32_t bit, const char* value) {
    if (app == nullptr) return;
    std::uint32_t& flags = static_cast<VDNeQApp*>(app)->m_flags;
    flags = P::paramToBool(value) ? (flags | bit) : (flags & ~bit);
}

} // namespace

// clang-format off
void VDNeQAppParser::parseName(const char* v, void* a) { setString(a, &VDNeQApp::m_name, v); }
void VDNeQAppParser::parseExt(const char* v, void* a) { setString(a, &VDNeQApp::m_extension, v); }
void VDNeQAppParser::parseTamplate(const char* v, void* a) { setString(a, &VDNeQApp::m_template, v); }
void VDNeQAppParser::parseLocateCommand(const char* v, void* a) { setString(a, &VDNeQApp::m_locateCommand, v); }
void VDNeQAppParser::parseInitCommand(const char* v, void* a) { setString(a, &VDNeQApp::m_initCommand, v); }
void VDNeQAppParser::parseEditCommand(const char* v, void* a) { setString(a, &VDNeQApp::m_editCommand, v); }
void VDNeQAppParser::parseIFlipX(const char* v, void* a) { setFlag(a, kImportFlipX, v); }
void VDNeQAppParser::parseIFlipY(const char* v, void* a) { setFlag(a, kImportFlipY, v); }
void VDNeQAppParser::parseIFlipZ(const char* v, void* a) { setFlag(a, kImportFlipZ, v); }
void VDNeQAppParser::parseEFlipX(const char* v, void* a) { setFlag(a, kExportFlipX, v); }
void VDNeQAppParser::parseEFlipY(const char* v, void* a) { setFlag(a, kExportFlipY, v); }
void VDNeQAppParser::parseEFlipZ(const char* v, void* a) { setFlag(a, kExportFlipZ, v); }
void VDNeQAppParser::parseISwitchYZ(const char* v, void* a) { setFlag(a, kImportSwitchYZ, v); }
void VDNeQAppParser::parseESwitchYZ(const char* v, void* a) { setFlag(a, kExportSwitchYZ, v); }
void VDNeQAppParser::parseIFlipN(const char* v, void* a) { setFlag(a, kImportFlipNormals, v); }
void VDNeQAppParser::parseEFlipN(const char* v, void* a) { setFlag(a, kExportFlipNormals, v); }
void VDNeQAppParser::parseIPolyGroups(const char* v, void* a) { setFlag(a, kImportPolyGroups, v); }
void VDNeQAppParser::parseIMatAsGroups(const char* v, void* a) { setFlag(a, kImportMatAsGroups, v); }
void VDNeQAppParser::parseGroupNSidedPolys(const char* v, void* a) { setFlag(a, kGroupNSidedPolys, v); }
void VDNeQAppParser::parseNFlipX(const char* v, void* a) { setFlag(a, kNormalMapFlipX, v); }
void VDNeQAppParser::parseNFlipY(const char* v, void* a) { setFlag(a, kNormalMapFlipY, v); }
void VDNeQAppParser::parseNFlipZ(const char* v, void* a) { setFlag(a, kNormalMapFlipZ, v); }
void VDNeQAppParser::parseNFlipXY(const char* v, void* a) { setFlag(a, kNormalMapFlipXY, v); }
void VDNeQAppParser::parseNFlipVert(const char* v, void* a) { setFlag(a, kNormalMapFlipVert, v); }
void VDNeQAppParser::parseIMFlipX(const char* v, void* a) { setFlag(a, kImportMFlipX, v); }
void VDNeQAppParser::parseIMFlipY(const char* v, void* a) { setFlag(a, kImportMFlipY, v); }
void VDNeQAppParser::parseIMFlipZ(const char* v, void* a) { setFlag(a, kImportMFlipZ, v); }
void VDNeQAppParser::parseIMSwitchYZ(const char* v, void* a) { setFlag(a, kImportMSwitchYZ, v); }
void VDNeQAppParser::parseEMFlipX(const char* v, void* a) { setFlag(a, kExportMFlipX, v); }
void VDNeQAppParser::parseEMFlipY(const char* v, void* a) { setFlag(a, kExportMFlipY, v); }
void VDNeQAppParser::parseEMFlipZ(const char* v, void* a) { setFlag(a, kExportMFlipZ, v); }
void VDNeQAppParser::parseEMSwitchYZ(const char* v, void* a) { setFlag(a, kExportMSwitchYZ, v); }
// clang-format on

void VDNeQAppParser::parseNeQVersion(const char* value, void* app) {
    if (app) static_cast<VDNeQApp*>(app)->m_version = P::paramToInt(value);
}

namespace neq::bridge {

// The order is the file format's: the parser tries the last key first, so a key that is
// a prefix of another (NORMAL_MAP_FLIP_X of NORMAL_MAP_FLIP_XY) must come before it.
const AppKey kAppKeys[kAppKeyCount] = {
    {"NAME", VDNeQAppParser::parseName, 0},
    {"NEQ_VERSION", VDNeQAppParser::parseNeQVersion, 0},
    {"EXTENSION", VDNeQAppParser::parseExt, 0},
    {"TAMPLATE", VDNeQAppParser::parseTamplate, 0},
    {"LOCATE_COMMAND", VDNeQAppParser::parseLocateCommand, 0},
    {"INIT_COMMAND", VDNeQAppParser::parseInitCommand, 0},
    {"EDIT_COMMAND", VDNeQAppParser::parseEditCommand, 0},
    {"IMPORT_FLIP_X", VDNeQAppParser::parseIFlipX, VDNeQApp::kImportFlipX},
    {"IMPORT_FLIP_Y", VDNeQAppParser::parseIFlipY, VDNeQApp::kImportFlipY},
    {"IMPORT_FLIP_Z", VDNeQAppParser::parseIFlipZ, VDNeQApp::kImportFlipZ},
    {"EXPORT_FLIP_X", VDNeQAppParser::parseEFlipX, VDNeQApp::kExportFlipX},
    {"EXPORT_FLIP_Y", VDNeQAppParser::parseEFlipY, VDNeQApp::kExportFlipY},
    {"EXPORT_FLIP_Z", VDNeQAppParser::parseEFlipZ, VDNeQApp::kExportFlipZ},
    {"IMPORT_SWITCH_YZ", VDNeQAppParser::parseISwitchYZ, VDNeQApp::kImportSwitchYZ},
    {"EXPORT_SWITCH_YZ", VDNeQAppParser::parseESwitchYZ, VDNeQApp::kExportSwitchYZ},
    {"IMPORT_FLIP_NORMALS", VDNeQAppParser::parseIFlipN, VDNeQApp::kImportFlipNormals},
    {"EXPORT_FLIP_NORMALS", VDNeQAppParser::parseEFlipN, VDNeQApp::kExportFlipNormals},
    {"IMPORT_POLYGROUPS", VDNeQAppParser::parseIPolyGroups, VDNeQApp::kImportPolyGroups},
    {"IMPORT_MAT_AS_GROUPS", VDNeQAppParser::parseIMatAsGroups, VDNeQApp::kImportMatAsGroups},
    {"GROUP_NSIDED_POLYS", VDNeQAppParser::parseGroupNSidedPolys, VDNeQApp::kGroupNSidedPolys},
    {"NORMAL_MAP_FLIP_X", VDNeQAppParser::parseNFlipX, VDNeQApp::kNormalMapFlipX},
    {"NORMAL_MAP_FLIP_Y", VDNeQAppParser::parseNFlipY, VDNeQApp::kNormalMapFlipY},
    {"NORMAL_MAP_FLIP_Z", VDNeQAppParser::parseNFlipZ, VDNeQApp::kNormalMapFlipZ},
    {"NORMAL_MAP_FLIP_XY", VDNeQAppParser::parseNFlipXY, VDNeQApp::kNormalMapFlipXY},
    {"NORMAL_MAP_FLIP_VERT", VDNeQAppParser::parseNFlipVert, VDNeQApp::kNormalMapFlipVert},
    {"IMPORT_MFLIP_X", VDNeQAppParser::parseIMFlipX, VDNeQApp::kImportMFlipX},
    {"IMPORT_MFLIP_Y", VDNeQAppParser::parseIMFlipY, VDNeQApp::kImportMFlipY},
    {"IMPORT_MFLIP_Z", VDNeQAppParser::parseIMFlipZ, VDNeQApp::kImportMFlipZ},
    {"IMPORT_MSWITCH_YZ", VDNeQAppParser::parseIMSwitchYZ, VDNeQApp::kImportMSwitchYZ},
    {"EXPORT_MFLIP_X", VDNeQAppParser::parseEMFlipX, VDNeQApp::kExportMFlipX},
    {"EXPORT_MFLIP_Y", VDNeQAppParser::parseEMFlipY, VDNeQApp::kExportMFlipY},
    {"EXPORT_MFLIP_Z", VDNeQAppParser::parseEMFlipZ, VDNeQApp::kExportMFlipZ},
    {"EXPORT_MSWITCH_YZ", VDNeQAppParser::parseEMSwitchYZ, VDNeQApp::kExportMSwitchYZ},
};

} // namespace neq::bridge

VDNeQAppParser& VDNeQAppParser::operator=(const VDNeQAppParser& other) {
    if (this != &other) {
        clear();
        VDNeQApp::operator=(other);
    }
    return *this;
}

void VDNeQAppParser::buildParser() {
    for (const neq::bridge::AppKey& key : neq::bridge::kAppKeys)
        m_parser.addToken(key.key, key.handler);
}

bool VDNeQAppParser::parseFile(const char* path) {
    clear();
    return m_parser.parseFile(path, static_cast<VDNeQApp*>(this));
}
