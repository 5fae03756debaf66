// The least work that turning a LAS scan into a point tree file can be: it moves the bytes that
// have to be moved and does nothing else. It reads the scan twice, writes 54 bytes a point to one
// temporary file, reads that back and writes 72 bytes a point as the result. With --direct there is
// no temporary file, as if the points could go to their places at once.
//
// Usage: vpc_floor [--direct] SCAN.las FOLDER. Prints the seconds that it took and removes its
// files.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::size_t blockSize = std::size_t{4} << 20;
constexpr unsigned long long nodeBytesPerPoint = 54;
constexpr unsigned long long resultBytesPerPoint = 72;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File open(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode));
    if (!file) throw std::runtime_error("cannot open " + path);
    // The blocks are large: a second buffer would only cost a second copy.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    return file;
}

void readAll(const std::string& path, std::vector<char>& block) {
    const File file = open(path, "rb");
    while (std::fread(block.data(), 1, block.size(), file.get()) == block.size()) {
    }
}

void writeAll(const std::string& path, unsigned long long bytes, const std::vector<char>& block) {
    File file = open(path, "wb");
    while (bytes > 0) {
        const std::size_t count =
            bytes < block.size() ? static_cast<std::size_t>(bytes) : block.size();
        if (std::fwrite(block.data(), 1, count, file.get()) != count)
            throw std::runtime_error("cannot write " + path);
        bytes -= count;
    }
    if (std::fclose(file.release()) != 0) throw std::runtime_error("cannot write " + path);
}

/// The number of points that follows from the file's size and the record length.
unsigned long long pointCount(const std::string& path) {
    char header[107] = {};
    const File file = open(path, "rb");
    if (std::fread(header, 1, sizeof header, file.get()) != sizeof header ||
        std::memcmp(header, "LASF", 4) != 0)
        throw std::runtime_error(path + " is no LAS file");
    std::uint32_t offset = 0;
    std::uint16_t length = 0;
    std::memcpy(&offset, header + 96, sizeof offset);
    std::memcpy(&length, header + 105, sizeof length);
    const auto size = std::filesystem::file_size(path);
    if (length == 0 || size < offset) throw std::runtime_error(path + " holds no points");
    return (size - offset) / length;
}

double moveBytes(const std::string& scan, const std::string& folder, bool direct) {
    const unsigned long long points = pointCount(scan);
    const std::string nodes = folder + "/floor.nodes";
    const std::string result = folder + "/floor.result";
    std::vector<char> block(blockSize, 'x');
    const auto start = std::chrono::steady_clock::now();
    readAll(scan, block);
    readAll(scan, block);
    if (!direct) {
        writeAll(nodes, points * nodeBytesPerPoint, block);
        readAll(nodes, block);
    }
    writeAll(result, points * resultBytesPerPoint, block);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::filesystem::remove(nodes);
    std::filesystem::remove(result);
    return took.count();
}

}  // namespace

int main(int argc, char** argv) {
    const bool direct = argc > 1 && std::strcmp(argv[1], "--direct") == 0;
    if (argc != (direct ? 4 : 3)) {
        std::fprintf(stderr, "usage: vpc_floor [--direct] SCAN.las FOLDER\n");
        return 2;
    }
    try {
        std::printf("%.6f\n", moveBytes(argv[argc - 2], argv[argc - 1], direct));
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "vpc_floor: %s\n", failure.what());
        return 1;
    }
}
