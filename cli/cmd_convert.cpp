#include "args.h"
#include "command.h"
#include "files.h"
#include "mesh_input.h"

#include "interchange/mesh.h"

#include <string>

namespace neq::cli {
namespace {

interchange::Transform transformOf(const ParsedArgs& parsed) {
    interchange::Transform transform;
    if (const std::optional<std::string> up = parsed.value("--up")) {
        if (*up != "y" && *up != "z") throw UsageError("--up must be y or z, not '" + *up + "'");
        transform.switchYZ = *up == "z";
    }
    transform.flipX = parsed.has("--flip-x");
    transform.flipY = parsed.has("--flip-y");
    transform.flipZ = parsed.has("--flip-z");
    transform.flipNormals = parsed.has("--flip-normals");
    transform.keepGroups = !parsed.has("--no-groups");
    transform.keepColors = !parsed.has("--no-colors");
    transform.keepUvs = !parsed.has("--no-uvs");
    return transform;
}

OutputKind kindOf(interchange::Format format) {
    switch (format) {
    case interchange::Format::neq:
        return OutputKind::neqMesh;
    case interchange::Format::obj:
        return OutputKind::objText;
    case interchange::Format::glb:
        return OutputKind::glbMesh;
    case interchange::Format::gltf:
        break;
    }
    return OutputKind::gltfText;
}

std::string countOf(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kConvertCommand, args);
    parsed.requirePositionals(2, 2);
    const std::string& inPath = parsed.positional[0];
    const std::string& outPath = parsed.positional[1];
    formatOrUsageError(inPath);
    const interchange::Format outFormat = formatOrUsageError(outPath);
    const interchange::Transform transform = transformOf(parsed);
    interchange::WriteOptions options;
    options.gltfSideBuffer = parsed.has("--side-buffer");
    if (options.gltfSideBuffer && outFormat != interchange::Format::gltf)
        throw UsageError("--side-buffer applies to a .gltf output only");
    refuseOutputNamingAnInput(outPath, {inPath});
    if (options.gltfSideBuffer)
        refuseOutputNamingAnInput(interchange::sideBufferPath(outPath), {inPath});
    refuseOutputOfAnotherKind(outPath, kindOf(outFormat), parsed.has("--force"));

    interchange::ReadReport report;
    interchange::Mesh mesh = readMeshOrFail(inPath, &report);
    if (interchange::formatOfPath(inPath) != interchange::Format::neq ||
        outFormat != interchange::Format::neq)
        mesh.neqHeader.fill(0);
    interchange::apply(mesh, transform);
    try {
        interchange::writeMeshFile(outPath, mesh, options);
    } catch (const interchange::FileError& error) {
        throw Failure("cannot write output " + quoted(error.path()) + ": " +
                      std::string(error.what()).substr(error.path().size() + 2));
    } catch (const std::invalid_argument& error) {
        throw Failure("cannot write output " + quoted(outPath) + ": " + error.what());
    }
    if (report.splitPolygons)
        status("split " + countOf(report.splitPolygons, "polygon", "polygons") +
               " of more than four corners into triangles");
    if (report.skippedStatements)
        status("skipped " + countOf(report.skippedStatements, "statement", "statements") +
               " that a mesh does not keep");
    status("wrote " + outPath + ": " + countOf(mesh.vertexCount(), "vertex", "vertices") + ", " +
           countOf(mesh.faceCount(), "face", "faces"));
    return kExitOk;
}

} // namespace

const Command kConvertCommand = {
    "convert",
    "convert a mesh between NeQ, OBJ and glTF",
    "IN OUT [--up y|z] [--flip-x] [--flip-y] [--flip-z] [--flip-normals] [--no-groups] "
    "[--no-colors] [--no-uvs] [--side-buffer] [--force]",
    "Reads the mesh IN and writes it to OUT, each in the format its extension names: .NeQ, "
    ".obj, .glb or .gltf. Positions, faces (triangles and quads), UVs, vertex colours and "
    "polygroups are kept: OBJ carries colours after the position and polygroups as groups "
    "\"polygroup_<id>\"; glTF splits vertices where UVs differ, makes quads two triangles "
    "and polygroups one primitive each, and records the original faces so that reading it "
    "back gives them again. OBJ polygons of more than four corners are split into "
    "triangles. A NeQ input's header goes to a NeQ output. The options transform the mesh "
    "on the way, flips first, then the axis switch, then the winding.",
    {{"IN", "the mesh to read (.NeQ, .obj, .glb, .gltf)"},
     {"OUT", "the mesh to write; created, or replaced once it is complete"}},
    {{"--up", "AXIS", "z switches the Y and Z axes; y (the default) keeps them"},
     {"--flip-x", nullptr, "negate X"},
     {"--flip-y", nullptr, "negate Y"},
     {"--flip-z", nullptr, "negate Z"},
     {"--flip-normals", nullptr, "reverse the winding of every face"},
     {"--no-groups", nullptr, "leave the polygroups out"},
     {"--no-colors", nullptr, "leave the vertex colours out"},
     {"--no-uvs", nullptr, "leave the UVs out"},
     {"--side-buffer", nullptr, "a .gltf output keeps its data in OUT's name with .bin"},
     {"--force", nullptr, "replace OUT even when it is not a file of OUT's format"}},
    run,
};

} // namespace neq::cli
