#include "cmd_app.h"

#include "args.h"
#include "command.h"
#include "files.h"
#include "json_text.h"

#include "bridge/neq_app_keys.h"
#include "bridge/vd_neq_app_parser.h"

#include <cstdio>

namespace neq::cli {

std::vector<std::string> setFlagKeys(const VDNeQApp& app) {
    std::vector<std::string> keys;
    for (const bridge::AppKey& key : bridge::kAppKeys)
        if (key.flag != 0 && (app.m_flags & key.flag) != 0) keys.push_back(key.key);
    return keys;
}

void readAppDescription(const std::string& path, VDNeQApp& app) {
    requireInputFile(path);
    VDNeQAppParser parser;
    if (!parser.parseFile(path.c_str())) throw Failure(quoted(path) + " is empty");
    app = parser;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    const int last = file && std::fseek(file, -1, SEEK_END) == 0 ? std::fgetc(file) : EOF;
    if (file) std::fclose(file);
    if (last != '\n' && last != '\r')
        warn("the last line of " + quoted(path) + " has no line end and is ignored");
}

namespace {

// The record's text fields, by the names both outputs give them.
struct Field {
    const char* label;
    const char* jsonKey;
    VDString VDNeQApp::*member;
};
const Field kFields[] = {
    {"name", "name", &VDNeQApp::m_name},
    {"extension", "extension", &VDNeQApp::m_extension},
    {"template", "template", &VDNeQApp::m_template},
    {"locate command", "locateCommand", &VDNeQApp::m_locateCommand},
    {"init command", "initCommand", &VDNeQApp::m_initCommand},
    {"edit command", "editCommand", &VDNeQApp::m_editCommand},
};

void printText(const VDNeQApp& app) {
    for (const Field& field : kFields) {
        const VDString& text = app.*field.member;
        std::printf("%-15s %s\n", field.label, text.isEmpty() ? "-" : text.c_str());
    }
    std::printf("%-15s %d\n", "version", app.m_version);
    std::string flags;
    for (const std::string& key : setFlagKeys(app))
        flags += (flags.empty() ? "" : " ") + key;
    std::printf("%-15s %s\n", "flags", flags.empty() ? "none" : flags.c_str());
}

void printJson(const std::string& path, const VDNeQApp& app) {
    std::string out = "{\"file\":" + jsonString(path);
    for (const Field& field : kFields)
        out += ",\"" + std::string(field.jsonKey) + "\":" + jsonString((app.*field.member).c_str());
    out += ",\"version\":" + std::to_string(app.m_version) + ",\"flags\":{";
    bool first = true;
    for (const bridge::AppKey& key : bridge::kAppKeys) {
        if (key.flag == 0) continue;
        out += std::string(first ? "" : ",") + jsonString(key.key) + ":" +
               ((app.m_flags & key.flag) ? "true" : "false");
        first = false;
    }
    std::printf("%s}}\n", out.c_str());
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kAppCommand, args);
    parsed.requirePositionals(1, 1);
    const std::string& path = parsed.positional[0];
    VDNeQApp app;
    readAppDescription(path, app);
    if (parsed.has("--json"))
        printJson(path, app);
    else
        printText(app);
    return kExitOk;
}

} // namespace

const Command kAppCommand = {
    "app",
    "show the record a target application's description file gives",
    "FILE [--json]",
    "Reads FILE, a target application's description of KEY value lines (NAME, "
    "NEQ_VERSION, EXTENSION, TAMPLATE, the three commands and 26 flag keys), the way the "
    "bridge does, and prints the record: the text fields (\"-\" for an empty one), the "
    "version and the flags that are set, by key name. Keys are matched ignoring case as "
    "line prefixes; a last line without a line end is ignored.",
    {{"FILE", "target application description file"}},
    {{"--json", nullptr, "print the record as one JSON object, every flag by key name"}},
    run,
};

} // namespace neq::cli
