// readObj on arbitrary text.

#include "fuzz_interchange.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    neq::fuzz::writeSeeds(".obj", neq::interchange::writeObj);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    neq::fuzz::readAndWriteBack(data, size, [](std::string_view text) {
        return neq::interchange::readObj(text, "fuzz.obj");
    });
    return 0;
}
