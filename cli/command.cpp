#include "command.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace neq::cli {
namespace {

const Command* runningCommand = nullptr;
bool quietMode = false;

const Option kQuietOption = {"-q, --quiet", nullptr,
                             "print no status lines (errors and warnings stay)"};
const Option kHelpOption = {"-h, --help", nullptr, "print this help"};

constexpr std::size_t kHelpWidth = 79;

// The paragraph as lines of at most kHelpWidth columns, broken at spaces; line breaks in
// the text count as spaces.
std::string wrapped(const std::string& paragraph) {
    std::string text;
    std::size_t lineStart = 0;
    std::size_t at = 0;
    while (at < paragraph.size()) {
        const std::size_t wordStart = paragraph.find_first_not_of(" \n", at);
        if (wordStart == std::string::npos) break;
        std::size_t wordEnd = paragraph.find_first_of(" \n", wordStart);
        if (wordEnd == std::string::npos) wordEnd = paragraph.size();
        const std::size_t length = wordEnd - wordStart;
        if (text.size() > lineStart && text.size() - lineStart + 1 + length > kHelpWidth) {
            text += '\n';
            lineStart = text.size();
        } else if (text.size() > lineStart) {
            text += ' ';
        }
        text.append(paragraph, wordStart, length);
        at = wordEnd;
    }
    return text + '\n';
}

std::string optionLabel(const Option& option) {
    return option.valueName ? std::string(option.name) + " " + option.valueName : option.name;
}

} // namespace

void setRunningCommand(const Command* command) {
    runningCommand = command;
}

void printError(const std::string& message) {
    const std::string prefix =
        runningCommand ? std::string("neqbridge ") + runningCommand->name : "neqbridge";
    std::fprintf(stderr, "%s: %s\n", prefix.c_str(), message.c_str());
}

void warn(const std::string& message) {
    printError("warning: " + message);
}

void status(const std::string& line) {
    if (!quietMode) std::fprintf(stderr, "%s\n", line.c_str());
}

void statusf(const char* format, ...) {
    if (quietMode) return;
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
}

void setQuiet(bool quiet) {
    quietMode = quiet;
}

bool isQuiet() {
    return quietMode;
}

std::string usageLine(const Command& command) {
    return std::string("usage: neqbridge ") + command.name + " " + command.usage;
}

int usageError(const Command& command, const std::string& message) {
    const Command* saved = runningCommand;
    runningCommand = &command;
    printError(message);
    runningCommand = saved;
    std::fprintf(stderr, "%s\n", usageLine(command).c_str());
    return kExitUsage;
}

std::string helpText(const Command& command) {
    std::vector<std::pair<std::string, const char*>> rows;
    for (const Argument& argument : command.arguments)
        rows.emplace_back(argument.name, argument.help);
    for (const Option& option : command.options)
        rows.emplace_back(optionLabel(option), option.help);
    for (const Option* option : {&kQuietOption, &kHelpOption})
        rows.emplace_back(optionLabel(*option), option->help);
    std::size_t width = 0;
    for (const auto& row : rows)
        width = std::max(width, row.first.size());

    std::string text = usageLine(command) + "\n\n" + wrapped(command.description) + "\n";
    for (const auto& [label, help] : rows)
        text += "  " + label + std::string(width - label.size() + 2, ' ') + help + "\n";
    return text;
}

std::string quoted(const std::string& path) {
    return "'" + path + "'";
}

std::string codeDetail(float code) {
    return " (code " + std::to_string(static_cast<long long>(code)) + ")";
}

} // namespace neq::cli
