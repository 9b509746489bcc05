#include "recording_tools.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace neq::test {

RecordingTools::RecordingTools() : path_("PATH", bin_.path()) {}

void RecordingTools::install(const std::string& tool, int status, const std::string& output) {
    // Shell built-ins only: nothing else is on PATH. Each call is recorded as the tool's
    // name, the argument count and the arguments, every one ended by a NUL byte, so
    // that any bytes the arguments hold come back exactly.
    installScript(tool, "{ printf '%s\\0%s\\0' " + shellQuoted(tool) +
                            " \"$#\"; for a in \"$@\"; do printf '%s\\0' \"$a\"; done; } >> " +
                            shellQuoted(log_.file("calls")) + "\nprintf '%s' " +
                            shellQuoted(output) + "\nexit " + std::to_string(status) + "\n");
}

void RecordingTools::installScript(const std::string& tool, const std::string& body) {
    writeShellScript(bin_.file(tool), body);
}

std::vector<std::vector<std::string>> RecordingTools::calls() const {
    const std::string path = log_.file("calls");
    std::istringstream log(fileExists(path) ? readFile(path) : "");
    std::vector<std::vector<std::string>> calls;
    for (std::string tool, count;
         std::getline(log, tool, '\0') && std::getline(log, count, '\0');) {
        calls.push_back({tool});
        for (unsigned long left = std::stoul(count); left > 0; --left) {
            std::string argument;
            if (!std::getline(log, argument, '\0'))
                throw std::runtime_error("truncated call record");
            calls.back().push_back(argument);
        }
    }
    return calls;
}

std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

} // namespace neq::test
