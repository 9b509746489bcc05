#include "args.h"

namespace neq::cli {

bool parseArgs(const std::vector<std::string>& args, const std::set<std::string>& valueOptions,
               const std::set<std::string>& flagOptions, ParsedArgs& parsed, std::string& error) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsEnded || arg.size() < 2 || arg[0] != '-' || arg == "-") {
            parsed.positional.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = arg.find('=');
        const std::string name = arg.substr(0, equals);
        if (valueOptions.count(name)) {
            if (equals != std::string::npos) {
                parsed.values[name] = arg.substr(equals + 1);
            } else if (i + 1 < args.size()) {
                parsed.values[name] = args[++i];
            } else {
                error = "option " + name + " needs a value";
                return false;
            }
        } else if (flagOptions.count(arg)) {
            parsed.flags.insert(arg);
        } else {
            error = "unknown option " + arg;
            return false;
        }
    }
    return true;
}

} // namespace neq::cli
