// The configuration-file readers on arbitrary bytes: a target application's description
// through VDNeQAppParser (every key registered), and the lookup of single entries.

#include "bridge/vd_neq_app.h"
#include "foundation/vd_config_parser.h"

#include "fuzz_input_file.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

const neq::fuzz::InputFile& input() {
    static const neq::fuzz::InputFile file(neq::fuzz::scratchPath("fuzz_config_parser", ".txt"));
    return file;
}

const char* const kSeeds[] = {
    "NAME \"Maya\"\nNEQ_VERSION 2\nIMPORT_FLIP_Y True\nNORMAL_MAP_FLIP_XY 1\n",
    "name: Blender\r\nEXTENSION = .obj\r\nTAMPLATE \"t.ma\"\r\nEXPORT_FLIP_X No\r\n",
    "PATH = \"/Applications/Clayvo.app\"\nOTHER = 2\n = continued\n",
    "  LOCATE_COMMAND\t=:\twhich app  \nINIT_COMMAND\nEDIT_COMMAND \"\nNEQ_VERSION 1e30\n",
    "= orphan\n\n\nPATH=\"\"x\"\"\nNAME unterminated",
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const char* seedDir = std::getenv("NEQBRIDGE_FUZZ_SEED_DIR");
    if (seedDir == nullptr) return 0;
    int n = 0;
    for (const char* seed : kSeeds) {
        const std::string path = std::string(seedDir) + "/seed" + std::to_string(n++) + ".txt";
        if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
            std::fputs(seed, file);
            std::fclose(file);
        }
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!input().write(data, size)) return 0;
    VDNeQAppParser app;
    app.parseFile(input().path());
    const VDString path(input().path());
    bool found = false;
    for (const char* token : {"PATH", "", "name"})
        VDGenericConfigFileParser::findTokenInConfigFile(path, VDString(token), &found);
    return 0;
}
