// Checks neq::formatFloatG against snprintf("%g") for every one of the 2^32 float bit
// patterns (or a range of them). Not part of CTest: it takes minutes. Usage:
//
//   number_format_exhaustive [--threads N] [--to-chars] [--ints] [FIRST LAST]
//
// FIRST and LAST are bit patterns (decimal or 0x hex), both included; the default is
// all of them. --to-chars checks std::to_chars(general, 6) against snprintf as well;
// --ints checks neq::formatInt against snprintf("%d") instead, for the patterns taken
// as 32-bit integers.
// Prints the first mismatches and exits 1 when there is any.

#include "foundation/number_format.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr std::uint64_t kChunkSize = 1 << 22;
constexpr int kMaxReported = 20;

struct Options {
    unsigned threads = 0;
    bool checkToChars = false;
    bool checkInts = false;
    std::uint64_t first = 0;
    std::uint64_t last = 0xFFFFFFFFu;
};

struct Shared {
    std::atomic<std::uint64_t> nextChunk{0};
    std::atomic<std::uint64_t> mismatches{0};
    std::atomic<std::uint64_t> chunksDone{0};
    std::mutex reportLock;
};

float floatFromBits(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

bool sameText(const char* begin, const char* end, const char* expected, int expectedSize) {
    return end - begin == expectedSize &&
           std::memcmp(begin, expected, static_cast<std::size_t>(expectedSize)) == 0;
}

void report(Shared& shared, const char* what, std::uint32_t bits, const char* begin,
            const char* end, const char* expected) {
    if (shared.mismatches.fetch_add(1) >= kMaxReported) return;
    std::lock_guard<std::mutex> lock(shared.reportLock);
    std::printf("MISMATCH %s 0x%08x: got \"%.*s\", printf \"%s\"\n", what, bits,
                static_cast<int>(end - begin), begin, expected);
}

void checkFloat(Shared& shared, std::uint32_t bits, bool alsoToChars) {
    const float value = floatFromBits(bits);
    char expected[64];
    const int expectedSize =
        std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
    char got[neq::kMaxFloatGChars];
    const char* gotEnd = neq::formatFloatG(got, value);
    if (!sameText(got, gotEnd, expected, expectedSize))
        report(shared, "formatFloatG", bits, got, gotEnd, expected);
    // to_chars spells NaN without printf's sign; only other values are compared.
    if (alsoToChars && value == value) {
        char viaToChars[64];
        const char* toCharsEnd =
            std::to_chars(viaToChars, viaToChars + sizeof viaToChars, static_cast<double>(value),
                          std::chars_format::general, 6)
                .ptr;
        if (!sameText(viaToChars, toCharsEnd, expected, expectedSize))
            report(shared, "to_chars", bits, viaToChars, toCharsEnd, expected);
    }
}

void checkInt(Shared& shared, std::uint32_t bits) {
    const auto value = static_cast<std::int32_t>(bits);
    char expected[32];
    const int expectedSize = std::snprintf(expected, sizeof expected, "%d", value);
    char got[neq::kMaxIntChars];
    const char* gotEnd = neq::formatInt(got, value);
    if (!sameText(got, gotEnd, expected, expectedSize))
        report(shared, "formatInt", bits, got, gotEnd, expected);
}

void checkRange(const Options& options, Shared& shared, std::uint64_t begin, std::uint64_t end) {
    for (std::uint64_t i = begin; i < end; ++i) {
        if (options.checkInts)
            checkInt(shared, static_cast<std::uint32_t>(i));
        else
            checkFloat(shared, static_cast<std::uint32_t>(i), options.checkToChars);
    }
}

void worker(const Options& options, Shared& shared, std::uint64_t chunkCount) {
    for (;;) {
        const std::uint64_t chunk = shared.nextChunk.fetch_add(1);
        if (chunk >= chunkCount) return;
        const std::uint64_t begin = options.first + chunk * kChunkSize;
        const std::uint64_t end = std::min(begin + kChunkSize, options.last + 1);
        checkRange(options, shared, begin, end);
        const std::uint64_t done = shared.chunksDone.fetch_add(1) + 1;
        if (done % 64 == 0 || done == chunkCount) {
            std::lock_guard<std::mutex> lock(shared.reportLock);
            std::printf("%llu of %llu chunks done\n", static_cast<unsigned long long>(done),
                        static_cast<unsigned long long>(chunkCount));
            std::fflush(stdout);
        }
    }
}

bool parseNumber(const char* text, std::uint64_t& value) {
    char* end = nullptr;
    value = std::strtoull(text, &end, 0);
    return end != text && *end == '\0' && value <= 0xFFFFFFFFu;
}

bool parseOptions(int argc, char** argv, Options& options) {
    std::vector<const char*> positional;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--to-chars") == 0) {
            options.checkToChars = true;
        } else if (std::strcmp(argv[i], "--ints") == 0) {
            options.checkInts = true;
        } else if (std::strcmp(argv[i], "--threads") == 0 && i + 1 < argc) {
            options.threads = static_cast<unsigned>(std::atoi(argv[++i]));
        } else {
            positional.push_back(argv[i]);
        }
    }
    if (positional.empty()) return true;
    return positional.size() == 2 && parseNumber(positional[0], options.first) &&
           parseNumber(positional[1], options.last) && options.first <= options.last;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parseOptions(argc, argv, options)) {
        std::fprintf(
            stderr,
            "usage: number_format_exhaustive [--threads N] [--to-chars] [--ints] [FIRST LAST]\n");
        return 2;
    }
    if (options.threads == 0) options.threads = std::max(1u, std::thread::hardware_concurrency());
    const std::uint64_t total = options.last - options.first + 1;
    const std::uint64_t chunkCount = (total + kChunkSize - 1) / kChunkSize;
    std::printf("checking %llu bit patterns 0x%08llx..0x%08llx on %u threads%s\n",
                static_cast<unsigned long long>(total),
                static_cast<unsigned long long>(options.first),
                static_cast<unsigned long long>(options.last), options.threads,
                options.checkInts      ? ", taken as integers"
                : options.checkToChars ? ", taken as floats (and std::to_chars)"
                                       : ", taken as floats");

    const auto start = std::chrono::steady_clock::now();
    Shared shared;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < options.threads; ++i)
        threads.emplace_back(worker, std::cref(options), std::ref(shared), chunkCount);
    for (std::thread& thread : threads)
        thread.join();
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    const std::uint64_t mismatches = shared.mismatches.load();
    std::printf("%llu mismatches in %llu values, %.0f s\n",
                static_cast<unsigned long long>(mismatches), static_cast<unsigned long long>(total),
                seconds);
    return mismatches == 0 ? 0 : 1;
}
