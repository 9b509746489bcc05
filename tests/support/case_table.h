#pragma once

// Tables of test cases kept under tests/data: one case a line, its fields split by '|'.
// Blank lines and lines starting with '#' are skipped. Escapes: \n \r \t \0 \\ \| \xNN.

#include <string>
#include <vector>

namespace neq::test {

using CaseRow = std::vector<std::string>;

// The rows of tests/data/relativePath; throws on an unknown escape.
std::vector<CaseRow> readCaseTable(const std::string& relativePath);

// The parts of a field between separators; an empty field is one empty part.
std::vector<std::string> splitField(const std::string& field, char separator);

} // namespace neq::test
