#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace neq::cli {

struct ParsedArgs {
    std::vector<std::string> positional;
    std::map<std::string, std::string> values; // "--level 2" or "--level=2"
    std::set<std::string> flags;               // "--json"

    bool has(const std::string& flag) const { return flags.count(flag) != 0; }
};

// Splits arguments into positionals, options that take a value and plain flags.
// Returns false with a message for an unknown option or a missing value. A lone "--"
// ends option parsing.
bool parseArgs(const std::vector<std::string>& args, const std::set<std::string>& valueOptions,
               const std::set<std::string>& flagOptions, ParsedArgs& parsed, std::string& error);

} // namespace neq::cli
