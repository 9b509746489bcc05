#include "args.h"
#include "command.h"
#include "files.h"

#include "foundation/vd_config_parser.h"
#include "foundation/vd_disk_server.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace neq::cli {
namespace {

// A key that the file's line syntax can hold: one line, no "=", no blanks at its ends.
void requireKey(const std::string& key) {
    if (key.empty()) throw UsageError("KEY is empty");
    if (key.find_first_of("=\n\r") != std::string::npos)
        throw UsageError("KEY '" + key + "' holds '=' or a line end");
    if (std::strchr(" \t", key.front()) || std::strchr(" \t", key.back()))
        throw UsageError("KEY '" + key + "' starts or ends with a blank");
}

int get(const std::string& file, const std::string& key) {
    const std::string path = libraryPath(file);
    requireInputFile(file);
    bool found = false;
    const VDString value = VDGenericConfigFileParser::findTokenInConfigFile(
        VDString(path.c_str()), VDString(key.c_str()), &found);
    if (!found) throw Failure("no key '" + key + "' in " + quoted(file));
    std::printf("%s\n", value.c_str());
    return kExitOk;
}

int set(const std::string& file, const std::string& key, const std::string& value) {
    if (value.find_first_of("\n\r") != std::string::npos)
        throw UsageError("VALUE must be one line");
    if (file == "-") throw UsageError("FILE cannot be '-': the file is changed in place");
    const VDString path(libraryPath(file).c_str());
    if (VDDiskServer::folderExists(path)) throw Failure(quoted(file) + " is a folder, not a file");
    bool found = false;
    errno = 0;
    if (!VDGenericConfigFileParser::replaceTokenInConfigFile(path, VDString(key.c_str()),
                                                             VDString(value.c_str()), &found))
        throw Failure("cannot write " + quoted(file) + ": " + reasonOf(errno));
    status(std::string(found ? "replaced" : "added") + " '" + key + "' in " + quoted(file));
    return kExitOk;
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kConfigCommand, args);
    parsed.requirePositionals(1, 4);
    const std::vector<std::string>& p = parsed.positional;
    if (p[0] == "get") {
        parsed.requirePositionals(3, 3);
        requireKey(p[2]);
        return get(p[1], p[2]);
    }
    if (p[0] == "set") {
        parsed.requirePositionals(4, 4);
        requireKey(p[2]);
        return set(p[1], p[2], p[3]);
    }
    throw UsageError("unknown action '" + p[0] + "' (get or set)");
}

} // namespace

const Command kConfigCommand = {
    "config",
    "read or change one KEY = value entry of a configuration file",
    "get FILE KEY | set FILE KEY VALUE",
    "get prints the value of the first line of FILE whose key is KEY, case ignored, "
    "without one pair of enclosing double quotes; it fails when there is none. set "
    "makes \"KEY = VALUE\" (KEY in capitals, VALUE as given) the first line of FILE and "
    "leaves out every other line of that key; FILE is created when missing (its folder "
    "is not) and replaced through a temporary file, keeping its permissions.",
    {{"get|set", "the action"},
     {"FILE", "configuration file of KEY = value lines"},
     {"KEY", "the entry's key"},
     {"VALUE", "for set: the value, written as given (add quotes yourself)"}},
    {},
    run,
};

} // namespace neq::cli
