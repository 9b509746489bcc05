#include "bridge/path_entry.h"

#include "foundation/vd_config_parser.h"

namespace neq::bridge {
namespace {

const char kPathKey[] = "PATH";

} // namespace

VDString readPathEntry(const VDString& configFile, bool* found) {
    // The lookup already drops one pair of quotes; unquoted() drops a second pair only.
    return VDGenericConfigFileParser::findTokenInConfigFile(configFile, VDString(kPathKey), found)
        .unquoted();
}

bool writePathEntry(const VDString& configFile, const VDString& path) {
    return VDGenericConfigFileParser::replaceTokenInConfigFile(configFile, VDString(kPathKey),
                                                               path.quoted(), nullptr);
}

} // namespace neq::bridge
