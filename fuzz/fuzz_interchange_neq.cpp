// readNeq on arbitrary bytes.

#include "fuzz_interchange.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    neq::fuzz::writeSeeds(".NeQ", neq::interchange::writeNeq);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    neq::fuzz::readAndWriteBack(data, size, [](std::string_view bytes) {
        return neq::interchange::readNeq(bytes, "fuzz.NeQ");
    });
    return 0;
}
