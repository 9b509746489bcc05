#include "command.h"

#include "platform/directories.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace neq::cli {
namespace {

using HostEntry = float (*)(char* text, double number, char* out);

constexpr std::size_t kOutBufferSize = 64 * 1024;
const char kNullArgument[] = "--null";
const char kCallSeparator[] = "--";

// The fifteen names the host calls; what each takes and returns is in kHelp.
const char* const kEntryNames[] = {
    "Version",    "addBlendFile",    "endBlendFile", "clearUVString", "ClearNameSet",
    "CheckName",  "OpenFolder",      "GetFile",      "CloseFolder",   "SetFolder",
    "FileDelete", "GetPublicFolder", "CreateFolder", "AddFile",       "NeQMergeUVs",
};

const char kHelp[] =
    "usage: neqbridge call ENTRY [TEXT [OUT-IN]] [-- ENTRY [TEXT [OUT-IN]]]...\n"
    "\n"
    "Loads the shared library and calls one of its host entries exactly as the host\n"
    "application does:\n"
    "\n"
    "    float ENTRY(char* text, double number, char* out)\n"
    "\n"
    "text is TEXT (a null pointer when TEXT is omitted), number is 0 (no entry reads\n"
    "it), and out is a 64 KiB buffer that starts out holding OUT-IN (empty when\n"
    "omitted): AddFile and addBlendFile read out as an input path. Write --null in\n"
    "place of TEXT or OUT-IN to pass a null pointer there.\n"
    "\n"
    "Each call prints one line: the float result (printf %g), then, when the output\n"
    "buffer holds text afterwards, a tab and that text.\n"
    "\n"
    "Every run of neqbridge is a new process, and the library's state between calls\n"
    "(the open folder, the name registry, the shared name list) starts empty in each.\n"
    "Separate several calls with -- to make them one after another in one process.\n"
    "\n"
    "The library loaded is $NEQBRIDGE_LIBRARY when set, otherwise " NEQBRIDGE_LIBRARY_FILE "\n"
    "in the folder of this tool.\n"
    "\n"
    "entries (arguments; results):\n"
    "  Version          no arguments; 4.09\n"
    "  addBlendFile     TEXT target scene, OUT-IN base scene; 0, -9, -1760, -2760, -3760\n"
    "  endBlendFile     TEXT base scene; 0, -9, -2760, -3760\n"
    "  clearUVString    no arguments; 0\n"
    "  ClearNameSet     no arguments; 0\n"
    "  CheckName        TEXT name; out gets the unique name; 0\n"
    "  OpenFolder       TEXT folder; 0, -1\n"
    "  GetFile          out gets the next entry name; 0, -1 no folder open, -3 no more\n"
    "  CloseFolder      no arguments; 0, -1 no folder open\n"
    "  SetFolder        TEXT folder becomes the working directory; 0, -1\n"
    "  FileDelete       TEXT file; 0, -1\n"
    "  GetPublicFolder  out gets the users folder; 1 (success), 0\n"
    "  CreateFolder     TEXT folder (parent must exist); 0, -1\n"
    "  AddFile          TEXT source appended to OUT-IN destination, then the source's\n"
    "                   last byte once more; 0, -1 source, -2 destination\n"
    "  NeQMergeUVs      TEXT .ma or .NeQ file; 0, -1\n"
    "\n"
    "examples:\n"
    "  neqbridge call Version\n"
    "  neqbridge call OpenFolder /tmp -- GetFile -- GetFile -- GetFile -- CloseFolder\n"
    "  neqbridge call AddFile extra.txt notes.txt\n"
    "  neqbridge call ClearNameSet -- CheckName pCube1 -- CheckName pCube1\n"
    "  neqbridge call GetPublicFolder -- GetPublicFolder --null --null\n"
    "\n"
    "Exit status: 0 when every call was made, whatever the results; 1 when the\n"
    "library or an entry in it cannot be loaded; 2 for a wrong command line or an\n"
    "entry name that is not one of the fifteen.\n";

struct PlannedCall {
    std::string entry;
    std::optional<std::string> text;  // nullopt: a null pointer
    std::optional<std::string> outIn; // nullopt: a null pointer
    HostEntry function = nullptr;
};

bool isKnownEntry(const std::string& name) {
    for (const char* entryName : kEntryNames)
        if (name == entryName) return true;
    return false;
}

std::string entryList() {
    std::string list;
    for (const char* entryName : kEntryNames)
        list += std::string("\n  ") + entryName;
    return list;
}

std::optional<std::string> pointerArgument(const std::string& word) {
    if (word == kNullArgument) return std::nullopt;
    return word;
}

// Splits the arguments at each "--" into calls. Returns the exit code of a usage
// error, or kExitOk.
int planCalls(const std::vector<std::string>& args, std::vector<PlannedCall>& calls) {
    std::vector<std::vector<std::string>> groups(1);
    for (const std::string& arg : args) {
        if (arg == kCallSeparator) {
            groups.emplace_back();
        } else {
            groups.back().push_back(arg);
        }
    }
    for (const std::vector<std::string>& group : groups) {
        if (group.empty()) return usageError(kCallCommand, "an ENTRY name is missing");
        if (group.size() > 3) return usageError(kCallCommand, "too many arguments for " + group[0]);
        if (!isKnownEntry(group[0])) {
            printError("unknown entry '" + group[0] + "'; the entries are:" + entryList());
            return kExitUsage;
        }
        PlannedCall call;
        call.entry = group[0];
        call.outIn = std::string();
        if (group.size() > 1) call.text = pointerArgument(group[1]);
        if (group.size() > 2) call.outIn = pointerArgument(group[2]);
        if (call.outIn && call.outIn->size() >= kOutBufferSize)
            return usageError(kCallCommand, "OUT-IN is longer than the 64 KiB output buffer");
        calls.push_back(std::move(call));
    }
    return kExitOk;
}

std::string libraryPath() {
    const char* override = std::getenv("NEQBRIDGE_LIBRARY");
    if (override != nullptr && *override != '\0') return override;
    const std::string folder = neq::platform::executableDirectory();
    // Without the tool's folder, dlopen's own search is the best remaining guess.
    if (folder.empty()) return NEQBRIDGE_LIBRARY_FILE;
    return (folder == "/" ? folder : folder + "/") + NEQBRIDGE_LIBRARY_FILE;
}

void makeCall(const PlannedCall& call) {
    std::string text = call.text.value_or(std::string());
    std::vector<char> out(kOutBufferSize, '\0');
    if (call.outIn) std::memcpy(out.data(), call.outIn->data(), call.outIn->size());
    char* outPointer = call.outIn ? out.data() : nullptr;
    const float result = call.function(call.text ? text.data() : nullptr, 0.0, outPointer);
    std::printf("%g", static_cast<double>(result));
    if (outPointer != nullptr && outPointer[0] != '\0') std::printf("\t%s", outPointer);
    std::putchar('\n');
    std::fflush(stdout); // what was printed survives an entry that crashes the next call
}

int run(const std::vector<std::string>& args) {
    std::vector<PlannedCall> calls;
    if (const int planError = planCalls(args, calls); planError != kExitOk) return planError;

    const std::string path = libraryPath();
    // Kept loaded until the process ends: its state must outlive every call.
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        printError("cannot load the library " + path + ": " + ::dlerror());
        return kExitFailed;
    }
    for (PlannedCall& call : calls) {
        call.function = reinterpret_cast<HostEntry>(::dlsym(library, call.entry.c_str()));
        if (call.function == nullptr) {
            printError("the library " + path + " has no entry " + call.entry);
            return kExitFailed;
        }
    }
    for (const PlannedCall& call : calls)
        makeCall(call);
    return kExitOk;
}

} // namespace

const Command kCallCommand = {"call", "call a host entry of the shared library, as the host does",
                              kHelp, run};

} // namespace neq::cli
