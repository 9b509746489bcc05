#pragma once

// The command line of one command, split by the command's declared options. Every
// method that finds the command line wrong throws UsageError (command.h).

#include "command.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace neq::cli {

class ParsedArgs {
  public:
    std::vector<std::string> positional;

    bool has(const std::string& flag) const { return flags_.count(flag) != 0; }
    // The value given last for the option, if any.
    std::optional<std::string> value(const std::string& option) const;

    // Requires between `least` and `most` positional arguments; "missing NAME" names
    // the first one absent, by the command's argument list.
    void requirePositionals(std::size_t least, std::size_t most) const;

    // The option's value as a whole number from `least` to `most`, or `fallback` when
    // the option is absent. `what` says what the number counts, for the message:
    // "--level must be a whole number of subdivision levels from 1 to 15, not '0'".
    long long integer(const std::string& option, long long fallback, long long least,
                      long long most, const std::string& what = "a whole number") const;

  private:
    friend ParsedArgs parseArgs(const Command& command, const std::vector<std::string>& args);
    const Command* command_ = nullptr;
    std::map<std::string, std::string> values_;
    std::set<std::string> flags_;
};

// Splits `args` by the command's options; -q/--quiet is taken here (see setQuiet).
// Throws UsageError for an unknown option or an option without its value.
ParsedArgs parseArgs(const Command& command, const std::vector<std::string>& args);

// Parses a whole decimal number ("-3", "+7", "12"); nullopt for anything else, including
// numbers outside the range of long long.
std::optional<long long> parseWholeNumber(const std::string& text);

} // namespace neq::cli
