// Workload: reading whole scans with the readers and nothing else. The benchmark makes the scans in
// the temporary folder and removes them at its end; they are in the system's cache while they are
// read. PTS: one block of seven columns, 1,000,000 points with millimetres and 8-bit colours (about
// 40 MB). PTX: one grid of as many cells, a tenth of them empty. Our reader reads each in batches
// of 100,000 points; the floor is a loop of fscanf with the same conversions, which keeps only a
// sum. LAS: format 3, 4,000,000 points, read by the pass that determines the bounding box.
//
// VPC_BENCH_POINTS sets another number of points for the text scans.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "LasHeader.h"
#include "core/util/FileHandle.h"
#include "io/FileIoFactory.h"

namespace {

long pointsInText() {
    const char* const wanted = std::getenv("VPC_BENCH_POINTS");
    return wanted == nullptr ? 1'000'000 : std::atol(wanted);
}

constexpr long pointsInLas = 4'000'000;

/// A scan in the temporary folder, removed when the program ends.
class Scan {
public:
    explicit Scan(const std::string& extension)
        : path_(std::filesystem::temp_directory_path() /
                ("vpc-readers-bench-" + std::to_string(getpid()) + extension)) {}
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;
    ~Scan() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    vpc::FileHandle open(const char* mode) const {
        vpc::FileHandle file(std::fopen(path_.c_str(), mode));
        if (file == nullptr) throw std::runtime_error("cannot open " + path_.string());
        return file;
    }
    wxString name() const { return wxString::FromUTF8(path_.string()); }
    auto bytes() const { return static_cast<std::int64_t>(std::filesystem::file_size(path_)); }

private:
    std::filesystem::path path_;
};

/// One line of the text scans.
class LineMaker {
public:
    void write(std::FILE* file, const char* intensityFormat) {
        const auto thousandth = [this](std::uint64_t range) {
            return static_cast<double>(engine_() % (range * 1000)) / 1000;
        };
        const auto channel = [this] { return static_cast<int>(engine_() % 256); };
        std::fprintf(file, "%.3f %.3f %.3f ", 484000 + thousandth(1000), -thousandth(5000),
                     thousandth(300));
        std::fprintf(file, intensityFormat, thousandth(2048));
        std::fprintf(file, " %d %d %d\n", channel(), channel(), channel());
    }

private:
    std::mt19937_64 engine_{1};
};

const Scan& ptsScan() {
    static const auto scan = [] {
        auto made = std::make_unique<Scan>(".pts");
        const vpc::FileHandle file = made->open("w");
        std::fprintf(file.get(), "%ld\n", pointsInText());
        LineMaker lines;
        for (long i = 0; i < pointsInText(); ++i) lines.write(file.get(), "%.0f");
        return made;
    }();
    return *scan;
}

const Scan& ptxScan() {
    static const auto scan = [] {
        auto made = std::make_unique<Scan>(".ptx");
        const vpc::FileHandle file = made->open("w");
        std::fprintf(file.get(), "%ld\n1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n", pointsInText());
        std::fprintf(file.get(), "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n");
        LineMaker lines;
        for (long i = 0; i < pointsInText(); ++i) {
            if (i % 10 == 9)
                std::fputs("0 0 0 0.5 0 0 0\n", file.get());
            else
                lines.write(file.get(), "%.6f");
        }
        return made;
    }();
    return *scan;
}

const Scan& lasScan() {
    static const auto scan = [] {
        auto made = std::make_unique<Scan>(".las");
        const vpc::FileHandle file = made->open("wb");
        const std::string header = lasHeader(pointsInLas);
        std::fwrite(header.data(), 1, header.size(), file.get());
        std::mt19937_64 engine(1);
        std::string record(34, '\0');
        for (long i = 0; i < pointsInLas; ++i) {
            for (std::size_t at = 0; at < 32; at += 8) put(record, at, engine());
            std::fwrite(record.data(), 1, record.size(), file.get());
        }
        return made;
    }();
    return *scan;
}

void readWithReader(benchmark::State& state, VpcDataFormat format, const Scan& scan) {
    const auto reader = FileIoFactory::Create(format, FileIoFactory::defaultBatchCapacity);
    unsigned long long points = 0;
    for (auto _ : state) {
        if (reader->initializeRead(scan.name()) == nullptr) state.SkipWithError("cannot read");
        while (reader->pointsRemaining != 0) points += reader->nextPointBatch();
        reader->closeRead();
    }
    benchmark::DoNotOptimize(reader->extentMin.x);
    state.SetItemsProcessed(static_cast<std::int64_t>(points));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * scan.bytes());
}

void BM_PtsReader(benchmark::State& state) {
    readWithReader(state, DataFormat_PTS, ptsScan());
}

void BM_PtxReader(benchmark::State& state) {
    readWithReader(state, DataFormat_PTX, ptxScan());
}

void BM_PtsFscanf(benchmark::State& state) {
    double sum = 0;
    for (auto _ : state) {
        const vpc::FileHandle file = ptsScan().open("r");
        unsigned long long count = 0;
        if (std::fscanf(file.get(), "%llu", &count) != 1) state.SkipWithError("no count");
        double v[7];
        for (; count != 0; --count) {
            std::memset(v, 0, sizeof v);
            if (std::fscanf(file.get(), "%lf %lf %lf %lf %lf %lf %lf", &v[0], &v[1], &v[2], &v[3],
                            &v[4], &v[5], &v[6]) != 7)
                state.SkipWithError("no point");
            sum += v[0] + v[6];
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * pointsInText());
}

void BM_PtxFscanf(benchmark::State& state) {
    double sum = 0;
    for (auto _ : state) {
        const vpc::FileHandle file = ptxScan().open("r");
        unsigned long long columns = 0, rows = 0;
        double v[4];
        if (std::fscanf(file.get(), "%llu %llu", &columns, &rows) != 2)
            state.SkipWithError("no size");
        for (int i = 0; i < 28; ++i)
            if (std::fscanf(file.get(), "%lf", &v[0]) != 1) state.SkipWithError("no pose");
        for (unsigned long long count = columns * rows; count != 0; --count) {
            int red = 0, green = 0, blue = 0;
            if (std::fscanf(file.get(), "%lf %lf %lf %lf %d %d %d", &v[0], &v[1], &v[2], &v[3],
                            &red, &green, &blue) != 7)
                state.SkipWithError("no point");
            sum += v[0] + blue;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * pointsInText());
}

void BM_LasPrepass(benchmark::State& state) {
    const Scan& scan = lasScan();
    for (auto _ : state) {
        VpcBoundingBoxAxisAligned box;
        wxString message;
        if (!FileIoFactory::DetermineMultipleBoundingBox({scan.name()}, DataFormat_LAS, box,
                                                         message))
            state.SkipWithError("cannot read");
        benchmark::DoNotOptimize(box);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * pointsInLas);
    state.counters["ns_per_point"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * pointsInLas * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(BM_PtsReader)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PtsFscanf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PtxReader)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PtxFscanf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LasPrepass)->Unit(benchmark::kMillisecond);

}  // namespace
