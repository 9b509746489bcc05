#include "args.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace neq::cli {
namespace {

const Option* findOption(const Command& command, const std::string& name) {
    for (const Option& option : command.options)
        if (name == option.name) return &option;
    return nullptr;
}

bool isQuietFlag(const std::string& arg) {
    return arg == "-q" || arg == "--quiet";
}

// The name of a declared argument without the "..." of a repeated one.
std::string argumentName(const Command& command, std::size_t index) {
    if (command.arguments.empty()) return "argument";
    std::string name = command.arguments[std::min(index, command.arguments.size() - 1)].name;
    if (name.size() > 3 && name.compare(name.size() - 3, 3, "...") == 0)
        name.resize(name.size() - 3);
    return name;
}

} // namespace

std::optional<std::string> ParsedArgs::value(const std::string& option) const {
    const auto found = values_.find(option);
    if (found == values_.end()) return std::nullopt;
    return found->second;
}

void ParsedArgs::requirePositionals(std::size_t least, std::size_t most) const {
    if (positional.size() < least)
        throw UsageError("missing " + argumentName(*command_, positional.size()));
    if (positional.size() > most)
        throw UsageError("unexpected argument " + quoted(positional[most]));
}

long long ParsedArgs::integer(const std::string& option, long long fallback, long long least,
                              long long most, const std::string& what) const {
    const std::optional<std::string> text = value(option);
    if (!text) return fallback;
    const std::optional<long long> number = parseWholeNumber(*text);
    if (!number || *number < least || *number > most)
        throw UsageError(option + " must be " + what + " from " + std::to_string(least) + " to " +
                         std::to_string(most) + ", not " + quoted(*text));
    return *number;
}

std::optional<long long> parseWholeNumber(const std::string& text) {
    std::size_t digits = (!text.empty() && (text[0] == '-' || text[0] == '+')) ? 1 : 0;
    if (digits == text.size()) return std::nullopt;
    for (std::size_t i = digits; i < text.size(); ++i)
        if (text[i] < '0' || text[i] > '9') return std::nullopt;
    errno = 0;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    if (errno == ERANGE) return std::nullopt;
    return number;
}

ParsedArgs parseArgs(const Command& command, const std::vector<std::string>& args) {
    ParsedArgs parsed;
    parsed.command_ = &command;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
            parsed.positional.push_back(arg);
        } else if (arg == "--") {
            optionsEnded = true;
        } else if (isQuietFlag(arg)) {
            setQuiet(true);
        } else {
            const std::size_t equals = arg.find('=');
            const std::string name = arg.substr(0, equals);
            const Option* option = findOption(command, name);
            if (option == nullptr) throw UsageError("unknown option " + quoted(name));
            if (option->valueName == nullptr) {
                if (equals != std::string::npos)
                    throw UsageError("option " + name + " takes no value");
                parsed.flags_.insert(name);
            } else if (equals != std::string::npos) {
                parsed.values_[name] = arg.substr(equals + 1);
            } else if (i + 1 < args.size()) {
                parsed.values_[name] = args[++i];
            } else {
                throw UsageError("option " + name + " needs a value " + option->valueName);
            }
        }
    }
    return parsed;
}

} // namespace neq::cli
