// Assembling a blend-shape scene from many large target scenes, against the floor of
// simply concatenating the same files: the scene only grows at its end, so the two
// should cost about the same, and twice the targets twice the time.

#include "blend/blend_scene.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace neq::bench {
namespace {

constexpr int kMaxTargets = 50;
constexpr std::size_t kTargetBytes = 2 << 20;
const std::string kBaseText = "//Maya ASCII scene\ncreateNode transform -n \"Head\";\n";

// Writes `bytes` to the file, creating it; `mode` is O_TRUNC or O_APPEND.
bool writeWhole(const std::string& path, const std::string& bytes, int mode) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | mode, 0644);
    if (fd < 0) return false;
    const bool written =
        ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    return ::close(fd) == 0 && written;
}

// kMaxTargets target scenes of kTargetBytes each, in a folder removed at exit.
class TargetScenes {
  public:
    static const TargetScenes& get() {
        static const TargetScenes scenes;
        return scenes;
    }
    ~TargetScenes() {
        std::error_code ignored;
        if (!dir_.empty()) std::filesystem::remove_all(dir_, ignored);
    }

    std::string base() const { return dir_ + "/Head.ma"; }
    const std::string& target(int i) const { return targets_[static_cast<std::size_t>(i)]; }
    bool ready() const { return targets_.size() == kMaxTargets; }

  private:
    TargetScenes() {
        char pattern[] = "/tmp/neqbridge-blend-bench-XXXXXX";
        if (::mkdtemp(pattern) == nullptr) return;
        dir_ = pattern;
        std::string text;
        const std::string line = "\tsetAttr \".vt[0]\" -1.25 0.5 2.75;\n";
        while (text.size() + line.size() <= kTargetBytes)
            text += line;
        text.resize(kTargetBytes, '\n');
        for (int i = 0; i < kMaxTargets; ++i) {
            const std::string path = dir_ + "/Target" + std::to_string(i) + ".ma";
            if (!writeWhole(path, text, O_TRUNC)) return;
            targets_.push_back(path);
        }
    }

    std::string dir_;
    std::vector<std::string> targets_;
};

bool readWhole(const std::string& path, std::string& bytes) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat info {};
    bool read = ::fstat(fd, &info) == 0;
    if (read) {
        bytes.resize(static_cast<std::size_t>(info.st_size));
        read = ::read(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }
    ::close(fd);
    return read;
}

// Runs `assemble(scenes, targetCount)` once per iteration on a fresh base scene.
template <class Assemble> void runScenes(benchmark::State& state, Assemble assemble) {
    const TargetScenes& scenes = TargetScenes::get();
    if (!scenes.ready()) return state.SkipWithError("cannot write the target scenes");
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        writeWhole(scenes.base(), kBaseText, O_TRUNC);
        state.ResumeTiming();
        if (!assemble(scenes, count)) return state.SkipWithError("a step failed");
    }
    state.SetBytesProcessed(state.iterations() * count * static_cast<std::int64_t>(kTargetBytes));
}

// The library's way: addBlend per target, then finishBlend.
void BM_BlendScene(benchmark::State& state) {
    runScenes(state, [](const TargetScenes& scenes, int count) {
        std::vector<std::string> names;
        const std::string base = scenes.base();
        for (int i = 0; i < count; ++i)
            if (blend::addBlend(scenes.target(i).c_str(), base.c_str(), names) !=
                blend::BlendStatus::Done)
                return false;
        return blend::finishBlend(base.c_str(), names) == blend::BlendStatus::Done;
    });
}

// The floor: read each target whole and append it to the base, nothing more.
void BM_ConcatenateScenes(benchmark::State& state) {
    runScenes(state, [](const TargetScenes& scenes, int count) {
        std::string bytes;
        for (int i = 0; i < count; ++i)
            if (!readWhole(scenes.target(i), bytes) || !writeWhole(scenes.base(), bytes, O_APPEND))
                return false;
        return true;
    });
}

BENCHMARK(BM_BlendScene)->Arg(25)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ConcatenateScenes)->Arg(25)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace neq::bench
