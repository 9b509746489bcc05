#include "bridge/path_entry.h"

#include "foundation/vd_config_parser.h"

namespace neq::bridge {
namespace {

const char kPathKey[] = "PATH";

} // namespace

VDString readPathEntry(const VDString& configFile, bool* found) {
    if (configFile.length() == 0) { // no such file: see path_entry.h
        if (found) *found = false;
        return VDString();
    }
    // The lookup already drops one pair of quotes; unquoted() drops a second pair only.
    return VDGenericConfigFileParser::findTokenInConfigFile(configFile, VDString(kPathKey), found)
        .unquoted();
}

bool writePathEntry(const VDString& configFile, const VDString& path) {
    if (configFile.length() == 0) return false;
    return VDGenericConfigFileParser::replaceTokenInConfigFile(configFile, VDString(kPathKey),
                                                               path.quoted(), nullptr);
}

} // namespace neq::bridge
