#include "command.h"
#include "demo_steps.h"

#include "api/module_state.h"
#include "api/result_codes.h"
#include "neqbridge/neqbridge.hpp"
#include "tooling/neq_writer.h"
#include "tooling/sample_mesh.h"

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

void writeMeshFile(const DemoContext& context, const char* name, const meshfile::NeqBytes& bytes,
                   const std::string& what) {
    writeDemoFile(context.dir + name,
                  std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    statusf("  %-22s %7zu bytes  %s", name, bytes.size(), what.c_str());
}

// A host entry of the mesh exports failed on the demo's own files: say what its code
// means, the code as detail.
[[noreturn]] void failHostCall(const char* entry, float code, const std::string& input,
                               const std::string& output) {
    std::string text;
    if (code == api::kCannotOpenInput)
        text = "cannot open input " + quoted(input);
    else if (code == api::kCannotOpenOutput)
        text = "cannot create or write output " + quoted(output);
    else if (code == api::kNoBlock)
        text = "no face IDs were recorded before the OBJ export";
    else if (code == api::kFailed)
        text = "out of memory, or " + quoted(input) + " ends early";
    else
        text = "found block tag " + std::to_string(static_cast<long long>(code)) + " in " +
               quoted(input) + " where another block was expected";
    char detail[48];
    std::snprintf(detail, sizeof detail, " (%s returned %.0f)", entry, static_cast<double>(code));
    throw Failure(text + detail);
}

std::string countsOf(const meshfile::Mesh& mesh) {
    std::size_t triangles = 0;
    for (const auto& face : mesh.faces)
        triangles += face[3] < 0;
    std::string text = std::to_string(mesh.faces.size() - triangles) + " quads";
    if (triangles != 0) text += ", " + std::to_string(triangles) + " triangles";
    return text + ", " + std::to_string(mesh.vertices.size()) + " vertices";
}

void writeSampleFiles(DemoContext& context, const meshfile::Mesh& base,
                      const meshfile::Mesh& subdivided) {
    status("\n-- Sample mesh files");
    context.baseMeshPath = context.dir + "base.NeQ";
    context.subdividedPath = context.dir + "subdivided.NeQ";
    writeMeshFile(context, "base.NeQ", meshfile::buildNeqChain(base),
                  countsOf(base) + ", colours, UVs in 2 tiles, 3 groups");
    writeMeshFile(context, "base_faces.NeQ", meshfile::buildNeqFacesFirst(base),
                  "face block first, as the host's face ID reader takes it");
    writeMeshFile(context, "subdivided.NeQ", meshfile::buildNeqForObjExport(subdivided),
                  countsOf(subdivided) + ", in the OBJ export's layout");
    writeMeshFile(context, "subdivided_colors.NeQ", meshfile::buildNeqColoursFirst(subdivided),
                  "colour block first, as the host's colour export takes it");
}

// Fills the library's face IDs; returns their count.
long runFaceIds(const DemoContext& context) {
    const std::string path = context.dir + "base_faces.NeQ";
    const float result = GetFaceIDsNeq(path.c_str(), kSubdivisionLevel);
    if (result < 0) failHostCall("GetFaceIDsNeq", result, path, "");
    const auto faces = std::accumulate(faceID.begin(), faceID.end(), 0ull);
    statusf("  face IDs of base_faces.NeQ at level 1: its %g faces become %llu "
            "(4 per quad, 3 per triangle)",
            static_cast<double>(result), faces);
    return static_cast<long>(result);
}

// The host entries write their outputs themselves, straight to the path given: the demo
// shows them as the host calls them.
void runObjExport(const DemoContext& context, const meshfile::Mesh& subdivided, long groups) {
    std::string objPath = context.dir + "subdivided.obj";
    const float result = writeOBJfromNeq(context.subdividedPath.c_str(), objPath.data());
    if (result != 0.0f) failHostCall("writeOBJfromNeq", result, context.subdividedPath, objPath);
    statusf("  exported subdivided.NeQ as OBJ to subdivided.obj (%llu bytes): %zu vertices, "
            "colours, %ld face groups",
            fileSize(objPath), subdivided.vertices.size(), groups);
    status("    again: neqbridge obj base.NeQ subdivided.NeQ subdivided.obj");
}

void runColourExport(const DemoContext& context, const meshfile::Mesh& subdivided) {
    const std::string input = context.dir + "subdivided_colors.NeQ";
    std::string textPath = context.dir + "colors.txt";
    const float result = ReadVertColorNeq(input.c_str(), textPath.data());
    if (result != 0.0f) failHostCall("ReadVertColorNeq", result, input, textPath);
    statusf("  wrote the colours of subdivided_colors.NeQ to colors.txt (%llu bytes): %zu "
            "colours",
            fileSize(textPath), subdivided.colours.size());
    status("    again: neqbridge colors subdivided_colors.NeQ colors.txt");
}

} // namespace

void demoMeshSteps(DemoContext& context) {
    const meshfile::Mesh base = meshfile::makeSampleMesh();
    const meshfile::Mesh subdivided = meshfile::subdivideMesh(base);
    writeSampleFiles(context, base, subdivided);
    status("\n-- Face IDs, OBJ export and colours");
    const long groups = runFaceIds(context);
    runObjExport(context, subdivided, groups);
    runColourExport(context, subdivided);
}

} // namespace neq::cli
