#include "foundation/file_name_extract.h"

#include "support/case_table.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace neq::test {
namespace {

TEST(FileNameExtract, EveryModeOnTypicalAndDegeneratePaths) {
    for (const CaseRow& row : readCaseTable("foundation/file_name_extract_cases.txt")) {
        const std::pair<int, std::string> expected[] = {{1, row[1]}, {2, row[2]}, {3, row[3]},
                                                        {4, row[4]}, {6, row[5]}, {-3, row[0]},
                                                        {0, row[0]}, {5, row[0]}, {7, row[0]}};
        for (const auto& [mode, text] : expected) {
            std::string path = row[0];
            if (text == "!")
                EXPECT_THROW(FileNameExtract(path, mode), std::out_of_range) << path;
            else
                EXPECT_EQ(FileNameExtract(path, mode), text) << path << " mode " << mode;
            EXPECT_EQ(path, row[0]);
        }
    }
}

} // namespace
} // namespace neq::test
