#include "cmd_app.h"

#include "args.h"
#include "command.h"
#include "files.h"
#include "json_text.h"

#include "bridge/vd_neq_app.h"

#include "foundation/file_io.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

namespace neq::cli {

std::vector<std::string> setFlagKeys(const VDNeQApp& app) {
    std::vector<std::string> keys;
    for (const bridge::AppKey& key : bridge::kAppKeys)
        if (key.flag != 0 && (app.m_flags & key.flag) != 0) keys.push_back(key.key);
    return keys;
}

namespace {

// Whether a line of the description starts with one of the keys, case ignored.
bool holdsKnownKey(const std::string& text) {
    for (std::size_t start = 0; start < text.size();) {
        std::size_t end = text.find_first_of("\r\n", start);
        if (end == std::string::npos) end = text.size();
        for (const bridge::AppKey& key : bridge::kAppKeys) {
            const std::size_t length = std::strlen(key.key);
            if (end - start >= length && ::strncasecmp(text.data() + start, key.key, length) == 0)
                return true;
        }
        start = end + 1;
    }
    return false;
}

} // namespace

void readAppDescription(const std::string& path, VDNeQApp& app) {
    const std::string hostPath = libraryPath(path);
    requireInputFile(path);
    VDNeQAppParser parser;
    if (!parser.parseFile(hostPath.c_str())) throw Failure(quoted(path) + " is empty");
    app = parser;
    std::vector<std::uint8_t> bytes;
    readWholeFile(path.c_str(), bytes);
    const std::string text(bytes.begin(), bytes.end());
    if (!text.empty() && text.back() != '\n' && text.back() != '\r')
        warn("the last line of " + quoted(path) + " has no line end and is ignored");
    if (!holdsKnownKey(text))
        warn(quoted(path) + " holds none of the description's keys (NAME, NEQ_VERSION, "
                            "EXTENSION, ...); every field keeps its default");
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
