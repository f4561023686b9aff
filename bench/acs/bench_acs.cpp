// How long a character file takes to load and how much memory it then holds, and the speed of its compression.
#include "bench/acs/drawn_character.h"
#include "companions/agent/acs/compression.h"
#include "companions/agent/acs/reader.h"
#include "companions/agent/acs/writer.h"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace agent::acs;

constexpr double megabyte = 1 << 20;
constexpr std::array<bench::Scale, 2> scales{{
    {128, 128, 450, 900, 16},  // a usual character
    {200, 187, 984, 2170, 30}, // as large as they are found
}};

std::string filePath(std::size_t scale) {
    return (std::filesystem::temp_directory_path() /
            ("bench_acs." + std::to_string(getpid()) + "." + std::to_string(scale) + ".acs"))
        .string();
}

// "VmRSS:" or "VmHWM:", in bytes.
double residentMemory(const std::string& line_start) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(line_start)) {
            return std::stod(line.substr(line_start.size())) * 1024;
        }
    }
    return 0;
}

// Runs `action` in a child process and returns what it gives, so that memory it used before or leaves behind does not
// blur later measurements.
template <typename Result, typename Action>
Result inChild(Action action) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        std::perror("pipe");
        std::exit(1);
    }
    const pid_t child = fork();
    if (child == 0) {
        const Result result = action();
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    close(ends[1]);
    Result result{};
    const bool complete = read(ends[0], &result, sizeof result) == sizeof result;
    close(ends[0]);
    int status = 0;
    if (child < 0 || !complete || waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "A measuring process failed.\n");
        std::exit(1);
    }
    return result;
}

struct Memory {
    double resident, peak; // bytes more than before
};

Memory memoryOfLoading(const std::string& path) {
    return inChild<Memory>([&path] {
        malloc_trim(0);
        const double before = residentMemory("VmRSS:");
        std::string error;
        const auto file = CharacterFile::load(path, error);
        for (std::size_t i = 0; i < file->imageCount(); ++i) {
            benchmark::DoNotOptimize(file->image(i)); // fills what is kept of images
        }
        return Memory{residentMemory("VmRSS:") - before, residentMemory("VmHWM:") - before};
    });
}

void load(benchmark::State& state) {
    const auto scale = static_cast<std::size_t>(state.range(0));
    const std::string path = filePath(scale);
    for (auto _ : state) {
        std::string error;
        auto file = CharacterFile::load(path, error);
        if (!file) {
            state.SkipWithError(error.c_str());
            return;
        }
        benchmark::DoNotOptimize(file);
    }
    const Memory memory = memoryOfLoading(path);
    state.counters["frames"] = static_cast<double>(scales[scale].frames);
    state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(path)) / megabyte;
    state.counters["memory_MB"] = memory.resident / megabyte;
    state.counters["peak_MB"] = memory.peak / megabyte;
}

void readWhole(benchmark::State& state) {
    std::string error;
    const auto bytes = readFile(filePath(static_cast<std::size_t>(state.range(0))), error);
    for (auto _ : state) {
        benchmark::DoNotOptimize(agent::acs::read(*bytes, error));
    }
}

std::vector<std::uint8_t> pixels() {
    std::vector<std::uint8_t> result;
    for (const Image& image : bench::drawnCharacter({200, 187, 16, 16, 0}).images) {
        result.insert(result.end(), image.pixels.begin(), image.pixels.end());
    }
    return result;
}

void compressPixels(benchmark::State& state) {
    const auto bytes = pixels();
    std::size_t size = 0;
    for (auto _ : state) {
        size = compress(bytes).size();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
    state.counters["ratio"] = static_cast<double>(bytes.size()) / static_cast<double>(size);
}

void decompressPixels(benchmark::State& state) {
    auto bytes = pixels();
    const auto stream = compress(bytes);
    for (auto _ : state) {
        benchmark::DoNotOptimize(decompress(stream, bytes));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void checkPixels(benchmark::State& state) {
    const auto bytes = pixels();
    const auto stream = compress(bytes);
    for (auto _ : state) {
        benchmark::DoNotOptimize(streamFault(stream, bytes.size()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

BENCHMARK(load)->DenseRange(0, 1)->Unit(benchmark::kMillisecond);
BENCHMARK(readWhole)->DenseRange(0, 1)->Unit(benchmark::kMillisecond);
BENCHMARK(compressPixels);
BENCHMARK(decompressPixels);
BENCHMARK(checkPixels);

} // namespace

int main(int argument_count, char** arguments) {
    benchmark::Initialize(&argument_count, arguments);
    if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) {
        return 1;
    }
    for (std::size_t i = 0; i < scales.size(); ++i) {
        const std::string path = filePath(i);
        const bool written = inChild<bool>([&path, i] {
            const auto bytes = agent::acs::write(bench::drawnCharacter(scales[i]));
            std::ofstream out(path, std::ios::binary);
            out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
            return static_cast<bool>(out.flush());
        });
        if (!written) {
            std::fprintf(stderr, "%s cannot be written.\n", path.c_str());
            return 1;
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    for (std::size_t i = 0; i < scales.size(); ++i) {
        std::filesystem::remove(filePath(i));
    }
    return 0;
}
