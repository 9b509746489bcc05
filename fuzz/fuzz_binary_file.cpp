// VDBinaryFile reading arbitrary bytes as each of its layouts, and as a mix of them.

#include "foundation/vd_binary_file.h"

#include "fuzz_input_file.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

const neq::fuzz::InputFile& input() {
    static const neq::fuzz::InputFile file(neq::fuzz::scratchPath("fuzz_binary_file", ".bin"));
    return file;
}

// Each reads one value of its layout.
template <class T> bool readOne(VDBinaryFile& file) {
    T value{};
    return file.read(value);
}

bool (*const kReaders[])(VDBinaryFile&) = {
    readOne<int>,
    readOne<float>,
    readOne<VDArray<int>>,
    readOne<VDArray<unsigned int>>,
    readOne<VDArray<VDVector2f>>,
    readOne<VDArray<VDVector3f>>,
    readOne<VDArray<unsigned short>>,
    readOne<VDArray<unsigned char>>,
    readOne<VDString>,
    readOne<VDBoolArray>,
};
constexpr std::size_t kReaderCount = sizeof kReaders / sizeof kReaders[0];
constexpr int kMostReads = 256;

// One file of every layout, so the fuzzer starts from well-formed counts and pads.
void writeSeed(const std::string& path) {
    VDBinaryFile out(VDString(path.c_str()), "wb");
    VDBoolArray bits(13, false);
    bits.set(4);
    out.write(7);
    out.write(0.5f);
    out.write(VDArray<int>{1, -2});
    out.write(VDArray<unsigned int>{3});
    out.write(VDArray<VDVector2f>{{0.25f, 1.0f}});
    out.write(VDArray<VDVector3f>{{1.0f, 2.0f, 3.0f}});
    out.write(VDArray<unsigned short>{5, 6, 7});
    out.write(VDArray<unsigned char>{8, 9});
    out.write(VDString("name"));
    out.write(bits);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (const char* seedDir = std::getenv("NEQBRIDGE_FUZZ_SEED_DIR"))
        writeSeed(std::string(seedDir) + "/seed0.bin");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!input().write(data, size)) return 0;
    const VDString path(input().path());
    for (auto read : kReaders) {
        VDBinaryFile file(path, "rb");
        for (int n = 0; n < kMostReads && read(file); ++n) {
        }
    }
    // The bytes themselves choose the order of a mixed read.
    VDBinaryFile file(path, "rb");
    for (std::size_t i = 0; i < size && i < kMostReads; ++i)
        if (!kReaders[data[i] % kReaderCount](file)) break;
    return 0;
}
