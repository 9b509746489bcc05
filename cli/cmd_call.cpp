#include "command.h"

#include "platform/directories.h"

#include <dirent.h>
#include <dlfcn.h>
#include <limits.h>
#include <unistd.h>

#include <algorithm>
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

// The fifteen names the host calls; the command's help says what each takes.
const char* const kEntryNames[] = {
    "Version",    "addBlendFile",    "endBlendFile", "clearUVString", "ClearNameSet",
    "CheckName",  "OpenFolder",      "GetFile",      "CloseFolder",   "SetFolder",
    "FileDelete", "GetPublicFolder", "CreateFolder", "AddFile",       "NeQMergeUVs",
};

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

// The entries that read neither their text nor their output buffer.
bool takesNoArguments(const std::string& name) {
    return name == "Version" || name == "clearUVString" || name == "ClearNameSet";
}

std::string entryList() {
    std::string list;
    for (const char* entryName : kEntryNames)
        list += (list.empty() ? "" : ", ") + std::string(entryName);
    return list;
}

std::optional<std::string> pointerArgument(const std::string& word) {
    if (word == kNullArgument) return std::nullopt;
    return word;
}

// Options come before the first ENTRY: what follows is handed to the entries as it
// stands.
std::size_t takeLeadingOptions(const std::vector<std::string>& args) {
    std::size_t count = 0;
    for (; count < args.size() && args[count].size() > 1 && args[count][0] == '-' &&
           args[count] != kCallSeparator;
         ++count) {
        if (args[count] != "-q" && args[count] != "--quiet")
            throw UsageError("unknown option " + quoted(args[count]));
    }
    return count;
}

// Splits the arguments at each "--" into calls.
std::vector<PlannedCall> planCalls(const std::vector<std::string>& args) {
    std::vector<std::vector<std::string>> groups(1);
    for (std::size_t i = takeLeadingOptions(args); i < args.size(); ++i) {
        if (args[i] == kCallSeparator) {
            groups.emplace_back();
        } else {
            groups.back().push_back(args[i]);
        }
    }
    std::vector<PlannedCall> calls;
    for (const std::vector<std::string>& group : groups) {
        if (group.empty()) throw UsageError("missing ENTRY");
        if (group.size() > 3) throw UsageError("too many arguments for " + group[0]);
        if (!isKnownEntry(group[0]))
            throw UsageError("unknown entry " + quoted(group[0]) + "; the entries are " +
                             entryList());
        if (group.size() > 1 && takesNoArguments(group[0]))
            throw UsageError(group[0] + " takes no TEXT or OUT-IN, not " + quoted(group[1]));
        PlannedCall call;
        call.entry = group[0];
        call.outIn = std::string();
        if (group.size() > 1) call.text = pointerArgument(group[1]);
        if (group.size() > 2) call.outIn = pointerArgument(group[2]);
        if (call.outIn && call.outIn->size() >= kOutBufferSize)
            throw UsageError("OUT-IN is longer than the 64 KiB output buffer");
        calls.push_back(std::move(call));
    }
    return calls;
}

std::string libraryPath() {
    const char* override = std::getenv("NEQBRIDGE_LIBRARY");
    if (override != nullptr && *override != '\0') return override;
    const std::string folder = neq::platform::executableDirectory();
    // Without the tool's folder, dlopen's own search is the best remaining guess.
    if (folder.empty()) return NEQBRIDGE_LIBRARY_FILE;
    const std::string prefix = folder == "/" ? folder : folder + "/";
    // Beside the tool in a build folder; in the library folder once installed.
    const std::string beside = prefix + NEQBRIDGE_LIBRARY_FILE;
    const std::string installed = prefix + NEQBRIDGE_INSTALLED_LIBRARY;
    if (::access(beside.c_str(), F_OK) != 0 && ::access(installed.c_str(), F_OK) == 0)
        return installed;
    return beside;
}

// The most an entry can write into its output buffer, NUL included; the buffer is
// never smaller than that. CheckName writes its text (spaces and dashes replaced one
// for one) with at most "_copy" and a counter added.
std::size_t mostWritten(const PlannedCall& call) {
    constexpr std::size_t kLongestCopySuffix = sizeof "_copy" - 1 + 10; // 10: INT_MAX's digits
    if (call.entry == "CheckName") return call.text.value_or("").size() + kLongestCopySuffix + 1;
    if (call.entry == "GetFile") return sizeof(dirent::d_name);
    if (call.entry == "GetPublicFolder") return PATH_MAX;
    return 0; // the others write nothing there (AddFile and addBlendFile only read it)
}

void makeCall(const PlannedCall& call) {
    std::string text = call.text.value_or(std::string());
    std::vector<char> out(std::max(kOutBufferSize, mostWritten(call)), '\0');
    if (call.outIn) std::memcpy(out.data(), call.outIn->data(), call.outIn->size());
    char* outPointer = call.outIn ? out.data() : nullptr;
    const float result = call.function(call.text ? text.data() : nullptr, 0.0, outPointer);
    std::printf("%g", static_cast<double>(result));
    if (outPointer != nullptr && outPointer[0] != '\0') std::printf("\t%s", outPointer);
    std::putchar('\n');
    std::fflush(stdout); // what was printed survives an entry that crashes the next call
}

int run(const std::vector<std::string>& args) {
    std::vector<PlannedCall> calls = planCalls(args);
    const std::string path = libraryPath();
    // Kept loaded until the process ends: its state must outlive every call.
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        throw Failure("cannot load the library " + quoted(path) + ": " + ::dlerror());
    for (PlannedCall& call : calls) {
        call.function = reinterpret_cast<HostEntry>(::dlsym(library, call.entry.c_str()));
        if (call.function == nullptr)
            throw Failure("the library " + quoted(path) + " has no entry " + call.entry);
    }
    for (const PlannedCall& call : calls)
        makeCall(call);
    return kExitOk;
}

} // namespace

const Command kCallCommand = {
    "call",
    "call a host entry of the shared library, as the host does",
    "[-q] ENTRY [TEXT [OUT-IN]] [-- ENTRY [TEXT [OUT-IN]]]...",
    "Loads the shared library ($NEQBRIDGE_LIBRARY, or " NEQBRIDGE_LIBRARY_FILE " beside this "
    "tool, or " NEQBRIDGE_INSTALLED_LIBRARY " from there once installed) and calls host "
    "entries exactly as the host does: float ENTRY(char* text, "
    "double number, char* out), with text = TEXT (null when omitted), number = 0 and out "
    "a 64 KiB buffer that starts out holding OUT-IN (AddFile and addBlendFile read it as "
    "a path). Each call prints its result (printf %g) and, when the buffer then holds "
    "text, a tab and that text. Calls separated by \"--\" run one after another in one "
    "process, sharing the library's state (open folder, name registry, name list); every "
    "run of neqbridge starts with that state empty. Exit status 0 means every call was "
    "made, whatever the results. Entries: Version; addBlendFile TARGET BASE; "
    "endBlendFile BASE; clearUVString; ClearNameSet; CheckName NAME; OpenFolder FOLDER; "
    "GetFile; CloseFolder; SetFolder FOLDER; FileDelete FILE; GetPublicFolder; "
    "CreateFolder FOLDER; AddFile SOURCE DESTINATION; NeQMergeUVs FILE.",
    {{"ENTRY", "one of the fifteen host entry names"},
     {"TEXT", "the text argument; --null for a null pointer"},
     {"OUT-IN", "what the output buffer holds first; --null for a null pointer"}},
    {},
    run,
};

} // namespace neq::cli
