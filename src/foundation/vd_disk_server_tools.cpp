#include "foundation/vd_disk_server_tools.h"

namespace neq::diskserver {

std::string operandPath(const VDString& path) {
    const std::string valid = path.getValidFilePath();
    return valid.empty() || valid.front() != '-' ? valid : "./" + valid;
}

std::vector<std::string> osascriptCommand(std::initializer_list<const char*> scriptLines,
                                          std::vector<std::string> arguments) {
    std::vector<std::string> command{"osascript"};
    for (const char* line : scriptLines) {
        command.emplace_back("-e");
        command.emplace_back(line);
    }
    for (std::string& argument : arguments)
        command.push_back(std::move(argument));
    return command;
}

} // namespace neq::diskserver
