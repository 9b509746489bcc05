// The host's own operations, as the tool runs them: each function here is the library
// call the matching `neqbridge` command makes, with its result codes turned into
// exceptions. Paths arrive absolute and free of ':' (the package checks them), since the
// library's disk layer reads a path the host's way.

#include "bindings.h"

#include "api/host_entry.h"
#include "bridge/vd_neq.h"
#include "bridge/vd_neq_app.h"
#include "foundation/vd_config_parser.h"
#include "meshfile/face_ids.h"
#include "meshfile/groups.h"
#include "meshfile/obj_export.h"
#include "meshfile/uv_tiles.h"
#include "uvmerge/maya_file_rewrite.h"

#include <pybind11/stl.h>

#include <cerrno>
#include <memory>
#include <mutex>
#include <optional>

namespace neq::python {
namespace {

using ReleasedGil = py::call_guard<py::gil_scoped_release>;

// The name list the blend exports share is module state: one assembly at a time.
std::mutex blendMutex;

// The errno of the failed call, or EIO when the call left none.
int lastError() {
    return errno != 0 ? errno : EIO;
}

[[noreturn]] void failWithoutBlock(const std::string& path, const char* block) {
    throw BadFile(path, "offset 32", std::string("no ") + block + " block");
}

py::dict objExport(const std::string& base, const std::string& subdivided, const std::string& out,
                   int level) {
    std::vector<std::uint32_t> faceIds;
    errno = 0;
    if (meshfile::loadFaceIds(base.c_str(), level, faceIds).status ==
        meshfile::ReadStatus::CannotOpen)
        throw PathError(base, lastError());
    if (faceIds.empty()) throw BadFile(base, "offset 32", "no face records in the first block");
    meshfile::ExportOutcome outcome;
    {
        py::gil_scoped_release released;
        errno = 0;
        outcome = meshfile::exportObj(subdivided.c_str(), out.c_str(), faceIds);
    }
    switch (outcome.status) {
    case meshfile::ExportStatus::Written:
        break;
    case meshfile::ExportStatus::CannotOpenInput:
        throw PathError(subdivided, lastError());
    case meshfile::ExportStatus::TagMismatch: {
        const meshfile::TagMismatch& m = outcome.mismatch;
        throw BadFile(subdivided, m.offset ? "offset " + std::to_string(*m.offset) : "offset 32",
                      std::string("expected the ") + meshfile::blockKindName(m.expected) +
                          " block, found " + meshfile::describeFoundTag(m.found));
    }
    default:
        throw PathError(out, lastError());
    }
    py::dict counts;
    counts["vertices"] = outcome.vertices;
    counts["colours"] = outcome.colours;
    counts["faces"] = outcome.faces;
    counts["face_groups"] = outcome.faceGroups;
    return counts;
}

std::vector<std::string> uvTiles(const std::string& path) {
    meshfile::UvTileScan scan;
    errno = 0;
    const meshfile::ReadStatus status = meshfile::listUvTiles(path.c_str(), scan).status;
    if (status == meshfile::ReadStatus::CannotOpen) throw PathError(path, lastError());
    if (status == meshfile::ReadStatus::NoBlock) failWithoutBlock(path, "UV");
    std::vector<std::string> names;
    for (const meshfile::UV_tile& tile : scan.tiles)
        names.push_back(tile.name);
    return names;
}

std::vector<std::string> splitUvTiles(const std::string& path, const std::string& base) {
    std::vector<std::string> names;
    errno = 0;
    const meshfile::ReadOutcome result = meshfile::splitUvTiles(path.c_str(), base.c_str(), names);
    if (result.status == meshfile::ReadStatus::CannotOpen) throw PathError(path, lastError());
    if (result.status == meshfile::ReadStatus::NoBlock) failWithoutBlock(path, "UV");
    const std::string stem = meshfile::uvTileFileStem(base);
    if (result.status == meshfile::ReadStatus::CannotWrite)
        throw PathError(meshfile::uvTileFilePath(stem, result.count), lastError());
    std::vector<std::string> files;
    for (std::size_t k = 0; k < names.size(); ++k)
        files.push_back(meshfile::uvTileFilePath(stem, k));
    return files;
}

std::size_t groupCount(const std::string& path) {
    errno = 0;
    const meshfile::ReadOutcome result = meshfile::countGroupsInFile(path.c_str());
    if (result.status == meshfile::ReadStatus::CannotOpen) throw PathError(path, lastError());
    if (result.status == meshfile::ReadStatus::NoBlock) failWithoutBlock(path, "group");
    return result.count;
}

// "line 12: reason" splits into where and reason; a refusal of the whole file is at 0.
[[noreturn]] void failRefusedScene(const std::string& scene, const std::string& refusal) {
    const std::size_t colon = refusal.find(": ");
    if (refusal.rfind("line ", 0) == 0 && colon != std::string::npos)
        throw BadFile(scene, refusal.substr(0, colon), refusal.substr(colon + 2));
    throw BadFile(scene, "offset 0", refusal);
}

py::dict weldUvs(const std::string& scene, const std::optional<std::string>& out) {
    uvmerge::MayaFileWeld weld;
    int error = 0;
    {
        py::gil_scoped_release released;
        errno = 0;
        weld = uvmerge::weldMayaFile(scene.c_str(), out ? out->c_str() : nullptr);
        error = lastError();
    }
    using Failure = uvmerge::MayaFileWeld::Failure;
    if (weld.failure == Failure::read) throw PathError(scene, error);
    if (weld.failure == Failure::refused) failRefusedScene(scene, weld.reason);
    if (weld.failure == Failure::write) throw PathError(out ? *out : scene, error);
    py::dict counts;
    counts["uvs_before"] = weld.rewrite.uvsBefore;
    counts["uvs_after"] = weld.rewrite.uvsAfter;
    counts["faces"] = weld.rewrite.faces;
    counts["triangles"] = weld.rewrite.triangles;
    return counts;
}

[[noreturn]] void failBlendStep(float code, const std::string& base, const std::string& target,
                                int error) {
    if (code == api::kCannotOpenInput) throw PathError(target, error);
    if (code == api::kBaseUnreadable || code == api::kBaseUnwritable) throw PathError(base, error);
    throw std::bad_alloc();
}

void blendScene(const std::string& base, const std::vector<std::string>& targets) {
    const std::lock_guard<std::mutex> lock(blendMutex);
    std::string basePath = base; // the export takes the path as mutable text
    clearUVTileString();
    for (const std::string& target : targets) {
        errno = 0;
        const float code = addBlend(target.c_str(), basePath.data());
        if (code != api::kDone) failBlendStep(code, base, target, lastError());
    }
    errno = 0;
    const float code = finishBlend(basePath.c_str());
    if (code != api::kDone) failBlendStep(code, base, "", lastError());
}

// A fresh registry per call, as `neqbridge name` starts from an empty one.
std::vector<std::string> uniqueNames(std::vector<std::string> names) {
    NameSetClear();
    std::vector<std::string> unique;
    for (std::string& name : names) {
        const std::unique_ptr<char[]> checked(NameCheck(name.data()));
        unique.emplace_back(checked.get());
    }
    return unique;
}

std::optional<std::string> configGet(const std::string& path, const std::string& key) {
    bool found = false;
    const VDString value = VDGenericConfigFileParser::findTokenInConfigFile(
        VDString(path.c_str()), VDString(key.c_str()), &found);
    if (!found) return std::nullopt;
    return std::string(value.c_str());
}

bool configSet(const std::string& path, const std::string& key, const std::string& value) {
    bool found = false;
    errno = 0;
    if (!VDGenericConfigFileParser::replaceTokenInConfigFile(
            VDString(path.c_str()), VDString(key.c_str()), VDString(value.c_str()), &found))
        throw PathError(path, lastError());
    return found;
}

py::dict appRecord(const std::string& path) {
    VDNeQAppParser parser;
    errno = 0;
    if (!parser.parseFile(path.c_str())) {
        if (errno != 0) throw PathError(path, errno);
        throw BadFile(path, "offset 0", "the file is empty");
    }
    py::dict record;
    record["name"] = parser.m_name.c_str();
    record["version"] = parser.m_version;
    record["extension"] = parser.m_extension.c_str();
    record["template"] = parser.m_template.c_str();
    record["locate_command"] = parser.m_locateCommand.c_str();
    record["init_command"] = parser.m_initCommand.c_str();
    record["edit_command"] = parser.m_editCommand.c_str();
    py::list flags;
    for (const bridge::AppKey& key : bridge::kAppKeys)
        if (key.flag != 0 && (parser.m_flags & key.flag) != 0) flags.append(key.key);
    record["flags"] = flags;
    return record;
}

py::dict sharedFolders() {
    py::dict folders;
    folders["public"] = VDNeQ::s_publicFolder.c_str();
    folders["host"] = VDNeQ::s_NeQBrushFolder.c_str();
    folders["applications"] = VDNeQ::s_NeQAppsFolder.c_str();
    folders["projects"] = VDNeQ::s_NeQProjectsFolder.c_str();
    folders["default_project"] = VDNeQ::s_NeQDefaultProjectFolder.c_str();
    return folders;
}

const char kConfigFile[] = "NeQ_Config.txt";

std::string hostConfigFile() {
    return VDNeQ::getClayvoFile(VDString(kConfigFile)).c_str();
}

std::string appConfigFile(const std::string& app) {
    return VDNeQ::getAppFile(VDString(app.c_str()), VDString(kConfigFile)).c_str();
}

std::optional<std::string> readPathEntry(const std::string& configFile) {
    bool found = false;
    const VDString path = bridge::readPathEntry(VDString(configFile.c_str()), &found);
    if (!found) return std::nullopt;
    return std::string(path.c_str());
}

void writePathEntry(const std::string& configFile, const std::string& path) {
    errno = 0;
    if (!bridge::writePathEntry(VDString(configFile.c_str()), VDString(path.c_str())))
        throw PathError(configFile, lastError());
}

} // namespace

void bindHostOperations(py::module_& m) {
    m.def("obj_export", objExport);
    m.def("uv_tiles", uvTiles, ReleasedGil());
    m.def("split_uv_tiles", splitUvTiles, ReleasedGil());
    m.def("group_count", groupCount, ReleasedGil());
    m.def("weld_uvs", weldUvs);
    m.def("blend_scene", blendScene, ReleasedGil());
    m.def("unique_names", uniqueNames);
    m.def("config_get", configGet, ReleasedGil());
    m.def("config_set", configSet, ReleasedGil());
    m.def("app_record", appRecord);
    m.def("shared_folders", sharedFolders);
    m.def("host_config_file", hostConfigFile);
    m.def("app_config_file", appConfigFile);
    m.def("read_path_entry", readPathEntry, ReleasedGil());
    m.def("write_path_entry", writePathEntry, ReleasedGil());
}

} // namespace neq::python
