// Node records of the text layout of flow results: the reader of numbers against fscanf, both from a file
// that the system has in memory.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>

#include "base/TokenReader.h"

namespace {

constexpr int kColumns = 14;

/// A file of node records; the digits as the suite's solvers write them.
class RecordFile {
public:
    explicit RecordFile(int records)
        : path_(
              (std::filesystem::temp_directory_path() / ("qnl_bench_" + std::to_string(records))).string()) {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> value(-300.0, 300.0);
        std::FILE* file = std::fopen(path_.c_str(), "w");
        for (int i = 1; i <= records; ++i) {
            std::fprintf(file, "%d", i);
            for (int k = 0; k < kColumns; ++k) {
                std::fprintf(file, " %.6e", value(random));
            }
            std::fputc('\n', file);
        }
        std::fclose(file);
    }
    ~RecordFile() { std::filesystem::remove(path_); }

    const std::string& Path() const { return path_; }
    std::int64_t Bytes() const { return static_cast<std::int64_t>(std::filesystem::file_size(path_)); }

private:
    std::string path_;
};

void ReadWithTokenReader(benchmark::State& state) {
    const int records = static_cast<int>(state.range(0));
    const RecordFile file(records);
    for (auto _ : state) {
        std::optional<qnl::TokenReader> text = qnl::OpenText(file.Path());
        double sum = 0.0;
        for (int i = 0; i < records; ++i) {
            int id = 0;
            bool whole = text->ReadInt(id);
            for (int k = 0; k < kColumns; ++k) {
                double value = 0.0;
                whole = whole && text->ReadDouble(value);
                sum += value;
            }
            if (!whole) {
                state.SkipWithError("short record");
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * file.Bytes());
}

void ReadWithFscanf(benchmark::State& state) {
    const int records = static_cast<int>(state.range(0));
    const RecordFile records_file(records);
    for (auto _ : state) {
        std::FILE* file = std::fopen(records_file.Path().c_str(), "r");
        double sum = 0.0;
        for (int i = 0; i < records; ++i) {
            int id = 0;
            double v[kColumns];
            const int read =
                std::fscanf(file, "%d", &id) +
                std::fscanf(file, "%lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf", v, v + 1, v + 2,
                            v + 3, v + 4, v + 5, v + 6, v + 7, v + 8, v + 9, v + 10, v + 11, v + 12, v + 13);
            if (read != 1 + kColumns) {
                state.SkipWithError("short record");
            }
            for (const double value : v) {
                sum += value;
            }
        }
        std::fclose(file);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * records_file.Bytes());
}

}  // namespace

BENCHMARK(ReadWithTokenReader)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadWithFscanf)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
