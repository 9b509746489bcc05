#include "command.h"
#include "demo_steps.h"

#include "api/mesh_exports.h"
#include "api/module_state.h"
#include "meshfile/neq_writer.h"
#include "meshfile/sample_mesh.h"

#include <sys/stat.h>

#include <cstdio>
#include <numeric>
#include <string>

namespace neq::cli {
namespace {

constexpr double kSubdivisionLevel = 1.0;

unsigned long long fileSize(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 ? static_cast<unsigned long long>(info.st_size) : 0;
}

bool writeMeshFile(const DemoContext& context, const char* name, const meshfile::NeqBytes& bytes,
                   const std::string& what) {
    const std::string path = context.dir + name;
    if (!meshfile::writeBytesToFile(path, bytes)) {
        printError("cannot write " + path);
        return false;
    }
    std::printf("  %-22s %7zu bytes  %s\n", name, bytes.size(), what.c_str());
    return true;
}

// What a failing code of the mesh exports means, for the user.
std::string describeCode(float code, const std::string& input, const std::string& output) {
    if (code == -1760.0f) return "cannot open input file " + input + " (code -1760)";
    if (code == -2.0f) return "cannot create or write " + output + " (code -2)";
    if (code == -18.0f) return "no face IDs were recorded before the OBJ export (code -18)";
    if (code == -1.0f) return "out of memory, or " + input + " ends early (code -1)";
    return "block tag " + std::to_string(static_cast<long long>(code)) + " found in " + input +
           " where another block was expected";
}

std::string countsOf(const meshfile::Mesh& mesh) {
    std::size_t triangles = 0;
    for (const auto& face : mesh.faces)
        triangles += face[3] < 0;
    std::string text = std::to_string(mesh.faces.size() - triangles) + " quads";
    if (triangles != 0) text += ", " + std::to_string(triangles) + " triangles";
    return text + ", " + std::to_string(mesh.vertices.size()) + " vertices";
}

bool writeSampleFiles(DemoContext& context, const meshfile::Mesh& base,
                      const meshfile::Mesh& subdivided) {
    std::printf("\n-- Sample mesh files\n");
    context.baseMeshPath = context.dir + "base.NeQ";
    context.subdividedPath = context.dir + "subdivided.NeQ";
    return writeMeshFile(context, "base.NeQ", meshfile::buildNeqChain(base),
                         countsOf(base) + ", colours, UVs in 2 tiles, 3 groups") &&
           writeMeshFile(context, "base_faces.NeQ", meshfile::buildNeqFacesFirst(base),
                         "face block first, for GetFaceIDsNeq") &&
           writeMeshFile(context, "subdivided.NeQ", meshfile::buildNeqForObjExport(subdivided),
                         countsOf(subdivided) + ", in the OBJ export's layout") &&
           writeMeshFile(context, "subdivided_colors.NeQ",
                         meshfile::buildNeqColoursFirst(subdivided),
                         "colour block first, for ReadVertColorNeq");
}

// Fills the library's face IDs; their count, or -1 after printing why not.
long runFaceIds(const DemoContext& context) {
    const std::string path = context.dir + "base_faces.NeQ";
    const float result = GetFaceIDsNeq(path.c_str(), kSubdivisionLevel);
    if (result < 0) {
        printError(describeCode(result, path, ""));
        return -1;
    }
    const auto faces = std::accumulate(faceID.begin(), faceID.end(), 0ull);
    std::printf("  GetFaceIDsNeq(base_faces.NeQ, 1) = %g: %llu subdivided faces "
                "(4 per quad, 3 per triangle)\n",
                static_cast<double>(result), faces);
    return static_cast<long>(result);
}

bool runObjExport(const DemoContext& context, const meshfile::Mesh& subdivided, long groups) {
    std::string objPath = context.dir + "subdivided.obj";
    const float result = writeOBJfromNeq(context.subdividedPath.c_str(), objPath.data());
    if (result != 0.0f) {
        printError(describeCode(result, context.subdividedPath, objPath));
        return false;
    }
    std::printf("  writeOBJfromNeq  -> subdivided.obj %6llu bytes: %zu vertices, RGB block, "
                "%ld #FaceID groups\n",
                fileSize(objPath), subdivided.vertices.size(), groups);
    return true;
}

bool runColourExport(const DemoContext& context, const meshfile::Mesh& subdivided) {
    const std::string input = context.dir + "subdivided_colors.NeQ";
    std::string textPath = context.dir + "colors.txt";
    const float result = ReadVertColorNeq(input.c_str(), textPath.data());
    if (result != 0.0f) {
        printError(describeCode(result, input, textPath));
        return false;
    }
    std::printf("  ReadVertColorNeq -> colors.txt     %6llu bytes: RGB block of %zu colours\n",
                fileSize(textPath), subdivided.colours.size());
    return true;
}

} // namespace

bool demoMeshSteps(DemoContext& context) {
    const meshfile::Mesh base = meshfile::makeSampleMesh();
    const meshfile::Mesh subdivided = meshfile::subdivideMesh(base);
    if (!writeSampleFiles(context, base, subdivided)) return false;
    std::printf("\n-- Face IDs, OBJ export and colours\n");
    const long groups = runFaceIds(context);
    return groups >= 0 && runObjExport(context, subdivided, groups) &&
           runColourExport(context, subdivided);
}

} // namespace neq::cli
