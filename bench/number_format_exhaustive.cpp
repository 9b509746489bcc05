// Checks neq::formatFloatG against snprintf("%g") for every float bit pattern in a range
// (all 2^32 by default), with --fixed5 neq::formatFloatFixed5 against snprintf("%.5f"),
// or with --ints neq::formatInt against snprintf("%d") for the patterns taken as 32-bit
// integers. Not part of CTest: it takes minutes. Usage:
//
//   number_format_exhaustive [--ints | --fixed5] [--threads N] [FIRST LAST]
//
// FIRST and LAST are bit patterns (decimal or 0x hex), both included. Prints the first
// mismatches and exits 1 when there is any.

#include "foundation/number_format.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

enum class Mode { floatG, fixed5, ints };

struct Run {
    Mode mode = Mode::floatG;
    unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    std::uint64_t first = 0, last = 0xFFFFFFFFu;
    std::atomic<std::uint64_t> mismatches{0};
};

// The text for one bit pattern from the library and from printf.
void formatBoth(Mode mode, std::uint32_t bits, std::string& got, char (&expected)[64]) {
    char text[std::max({neq::kMaxIntChars, neq::kMaxFloatGChars, neq::kMaxFloatFixed5Chars})];
    float value;
    std::memcpy(&value, &bits, sizeof value);
    switch (mode) {
    case Mode::ints:
        got.assign(text, neq::formatInt(text, static_cast<std::int32_t>(bits)));
        std::snprintf(expected, sizeof expected, "%d", static_cast<std::int32_t>(bits));
        break;
    case Mode::fixed5:
        got.assign(text, neq::formatFloatFixed5(text, value));
        std::snprintf(expected, sizeof expected, "%.5f", static_cast<double>(value));
        break;
    case Mode::floatG:
        got.assign(text, neq::formatFloatG(text, value));
        std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
        break;
    }
}

// Thread `index` checks every threads-th pattern, so the threads finish together.
void worker(Run& run, unsigned index) {
    std::string got;
    char expected[64];
    for (std::uint64_t bits = run.first + index; bits <= run.last; bits += run.threads) {
        formatBoth(run.mode, static_cast<std::uint32_t>(bits), got, expected);
        if (got != expected && run.mismatches++ < 20)
            std::printf("MISMATCH 0x%08llx: got \"%s\", printf \"%s\"\n",
                        static_cast<unsigned long long>(bits), got.c_str(), expected);
    }
}

bool parseBits(const char* text, std::uint64_t& value) {
    char* end = nullptr;
    value = std::strtoull(text, &end, 0);
    return end != text && *end == '\0' && value <= 0xFFFFFFFFu;
}

bool parseArgs(int argc, char** argv, Run& run) {
    std::vector<const char*> range;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--ints") == 0)
            run.mode = Mode::ints;
        else if (std::strcmp(argv[i], "--fixed5") == 0)
            run.mode = Mode::fixed5;
        else if (std::strcmp(argv[i], "--threads") == 0 && i + 1 < argc)
            run.threads = static_cast<unsigned>(std::max(1, std::atoi(argv[++i])));
        else
            range.push_back(argv[i]);
    }
    return range.empty() || (range.size() == 2 && parseBits(range[0], run.first) &&
                             parseBits(range[1], run.last) && run.first <= run.last);
}

} // namespace

int main(int argc, char** argv) {
    Run run;
    if (!parseArgs(argc, argv, run)) {
        std::fprintf(
            stderr,
            "usage: number_format_exhaustive [--ints | --fixed5] [--threads N] [FIRST LAST]\n");
        return 2;
    }
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < run.threads; ++i)
        threads.emplace_back(worker, std::ref(run), i);
    for (std::thread& thread : threads)
        thread.join();
    std::printf("%llu mismatches in 0x%08llx..0x%08llx\n",
                static_cast<unsigned long long>(run.mismatches.load()),
                static_cast<unsigned long long>(run.first),
                static_cast<unsigned long long>(run.last));
    return run.mismatches == 0 ? 0 : 1;
}
