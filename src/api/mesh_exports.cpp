#include "api/mesh_exports.h"

#include "api/host_entry.h"
#include "api/module_state.h"
#include "meshfile/face_ids.h"
#include "meshfile/obj_export.h"
#include "meshfile/rgb_block.h"

float writeOBJfromNeq(const char* inPath, char* outPath) {
    return neq::api::guardedEntry(
        [&] { return neq::meshfile::exportObj(inPath, outPath, faceID).hostResult(); });
}

float GetFaceIDsNeq(const char* path, double level) {
    return neq::api::guardedEntry([&] { return neq::meshfile::loadFaceIds(path, level, faceID); });
}

float ReadVertColorNeq(const char* path, char* outPath) {
    return neq::api::guardedEntry(
        [&] { return neq::meshfile::exportColours(path, outPath).hostResult(); });
}
