// readGltf on arbitrary bytes: .glb and .gltf (with embedded buffers) alike. Side files
// are looked for in the scratch folder, where there are none.

#include "fuzz_input_file.h"
#include "fuzz_interchange.h"

namespace {

std::string embeddedGltf(const neq::interchange::Mesh& mesh) {
    return neq::interchange::writeGltf(mesh, "", nullptr);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    neq::fuzz::writeSeeds(".glb", neq::interchange::writeGlb);
    neq::fuzz::writeSeeds(".gltf", embeddedGltf);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string name = neq::fuzz::scratchPath("fuzz_interchange_gltf", ".gltf");
    neq::fuzz::readAndWriteBack(
        data, size, [](std::string_view bytes) { return neq::interchange::readGltf(bytes, name); });
    return 0;
}
