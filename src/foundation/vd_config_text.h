#pragma once

// Helpers shared by the configuration-file parser's readers and writer.

#include "foundation/vd_string.h"

#include <string>
#include <vector>

namespace neq::config {

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
inline bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// Reads the whole file (files::readRegularFile). False (bytes empty) when it cannot be
// opened for reading, is empty or is not a regular file.
bool readConfigFile(const VDString& path, std::vector<char>& bytes);

// Calls visit(lineBegin, lineEnd, nextLine) for each line of [begin, end): a line ends
// at "\n" or "\r" (or at end), and the next one starts after the run of terminators.
template <class Visit> void forEachLine(const char* begin, const char* end, Visit visit) {
    const char* line = begin;
    while (line < end) {
        const char* lineEnd = line;
        while (lineEnd < end && !isLineEnd(*lineEnd))
            ++lineEnd;
        const char* next = lineEnd;
        while (next < end && isLineEnd(*next))
            ++next;
        visit(line, lineEnd, next);
        line = next;
    }
}

// Replaces the file at path with bytes through a temporary file in the same folder and
// a rename (files::replaceFile), keeping the file's permission bits and any link; a
// device is written directly. False when the file could not be written, the file then
// left as it was: also when its folder takes no new file.
bool replaceFileContents(const char* path, const std::string& bytes);

} // namespace neq::config
