#include "support/case_table.h"

#include "support/temp_dir.h"

#include <sstream>
#include <stdexcept>

namespace neq::test {

std::vector<CaseRow> readCaseTable(const std::string& relativePath) {
    std::istringstream lines(readTestData(relativePath));
    std::vector<CaseRow> rows;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        CaseRow row(1);
        for (std::size_t i = 0; i < line.size(); ++i) {
            const char c = line[i];
            if (c == '|') {
                row.emplace_back();
                continue;
            }
            if (c != '\\' || i + 1 == line.size()) {
                row.back() += c;
                continue;
            }
            const char e = line[++i];
            const std::string plain = "nrt0\\|", meaning("\n\r\t\0\\|", 6);
            if (plain.find(e) != std::string::npos) {
                row.back() += meaning[plain.find(e)];
            } else if (e == 'x' && i + 2 < line.size()) {
                row.back() += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
                i += 2;
            } else {
                throw std::runtime_error(relativePath + ": unknown escape in " + line);
            }
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> splitField(const std::string& field, char separator) {
    std::vector<std::string> parts(1);
    for (char c : field)
        if (c == separator)
            parts.emplace_back();
        else
            parts.back().push_back(c);
    return parts;
}

} // namespace neq::test
