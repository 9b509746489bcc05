#include "api/name_registry.h"

#include "support/case_table.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>

namespace neq::test {
namespace {

// fuzz_name_registry compares the resume points with the search from counter 1 at large.
TEST(NameRegistry, CopySuffixSequences) {
    for (const CaseRow& row : readCaseTable("api/copy_suffix_sequences.txt")) {
        std::set<std::string> issued;
        api::CopyCounterHints hints;
        std::size_t steps = 0;
        for (const std::string& step : row) {
            if (step[0] == '~') {
                steps -= issued.erase(step.substr(1));
                continue;
            }
            const std::string proposed = step.substr(0, step.find('>'));
            ++steps;
            EXPECT_EQ(api::reserveUniqueName(issued, hints,
                                             proposed == "(null)" ? nullptr : proposed.c_str())
                          .c_str(),
                      step.substr(step.find('>') + 1))
                << step;
        }
        EXPECT_EQ(issued.size(), steps);
    }
}

// Repeating one name used to cost a search over all its copies: 10,000 calls took 31 s.
TEST(NameRegistry, RepeatingOneNameCostsTheSameOnEveryCall) {
    std::set<std::string> issued;
    api::CopyCounterHints hints;
    const auto start = std::chrono::steady_clock::now();
    VDString last;
    for (int i = 0; i < 20000; ++i)
        last = api::reserveUniqueName(issued, hints, "Head");
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 2.0);
    EXPECT_STREQ(last.c_str(), "Head_copy19999");
}

} // namespace
} // namespace neq::test
