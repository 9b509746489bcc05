#include "recording_tools.h"

#include <cstdlib>
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
    const std::string log = fileExists(path) ? readFile(path) : "";
    std::vector<std::string> fields;
    for (std::size_t start = 0; start < log.size();) {
        const std::size_t end = log.find('\0', start);
        if (end == std::string::npos) throw std::runtime_error("unterminated call record");
        fields.push_back(log.substr(start, end - start));
        start = end + 1;
    }
    std::vector<std::vector<std::string>> calls;
    for (std::size_t i = 0; i < fields.size();) {
        const std::size_t count = std::stoul(fields.at(i + 1));
        if (i + 2 + count > fields.size()) throw std::runtime_error("truncated call record");
        calls.emplace_back(1, fields[i]);
        calls.back().insert(calls.back().end(), fields.begin() + i + 2,
                            fields.begin() + i + 2 + count);
        i += 2 + count;
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
