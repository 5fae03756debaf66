#include "tree/construct/CompactBlock.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vpc::CompactBlock {

namespace {

constexpr unsigned wordSize = sizeof(std::uint64_t);
constexpr unsigned mostStride = recordSize + sizeof(RecordBlock::ArrivalOffset);
static_assert(mostStride < 64, "there is a bit for every byte of a record");
static_assert(PointFormat::smallest >= wordSize, "a record has at least one word");

std::uint64_t wordAt(const char* place) {
    std::uint64_t word;
    std::memcpy(&word, place, sizeof word);
    return word;
}

std::uint64_t allBytes(unsigned stride) {
    return (1ULL << stride) - 1;
}

/// The bits of the words' bytes that are not zero.
std::uint64_t bytesThatDiffer(std::uint64_t word) {
    std::uint64_t bits = 0;
    for (unsigned i = 0; i < sizeof word; ++i)
        bits |= static_cast<std::uint64_t>((word >> 8 * i & 0xff) != 0) << i;
    return bits;
}

/// The bits of the records' bytes that are not the same in all of them.
std::uint64_t varyingBytes(const RecordBlock& block) {
    std::uint64_t varying = 0;
    for (unsigned begin = 0; begin < block.stride; begin += wordSize) {
        // The last word ends with the record.
        const unsigned at = std::min(begin, block.stride - wordSize);
        const std::uint64_t first = wordAt(block.records + at);
        std::uint64_t different = 0;
        for (unsigned i = 1; i < block.count; ++i)
            different |= wordAt(block.Record(i) + at) ^ first;
        varying |= bytesThatDiffer(different) << at;
    }
    return varying;
}

/// Copies `count` units whose distances are `fromStep` and `toStep`.
template <class Unit>
void copyUnits(const char* from, unsigned fromStep, char* to, unsigned toStep, unsigned count) {
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(to + i * toStep, from + i * fromStep, sizeof(Unit));
}

void copyUnits(unsigned unit, const char* from, unsigned fromStep, char* to, unsigned toStep,
               unsigned count) {
    switch (unit) {
        case 8:
            return copyUnits<std::uint64_t>(from, fromStep, to, toStep, count);
        case 4:
            return copyUnits<std::uint32_t>(from, fromStep, to, toStep, count);
        case 2:
            return copyUnits<std::uint16_t>(from, fromStep, to, toStep, count);
        default:
            return copyUnits<char>(from, fromStep, to, toStep, count);
    }
}

/// Calls `visit` with the place and the size of each unit of bytes that vary: neighbours are taken
/// together.
template <class Visit>
void forEachUnit(std::uint64_t varying, const Visit& visit) {
    for (unsigned at = 0; varying >> at != 0;) {
        unsigned unit = wordSize;
        const auto allVary = [&] {
            const std::uint64_t bits = (1ULL << unit) - 1;
            return (varying >> at & bits) == bits;
        };
        while (unit != 0 && !allVary()) unit /= 2;
        if (unit != 0) visit(at, unit);
        at += std::max(unit, 1U);
    }
}

/// The bytes behind the header.
std::size_t bytesOf(const Header& header) {
    const std::size_t bytes =
        std::size_t{header.count} * static_cast<unsigned>(std::popcount(header.varying));
    return header.varying == allBytes(header.stride) ? bytes : bytes + header.stride;
}

bool isPossible(const Header& header, std::size_t bytesBehind) {
    return header.stride >= PointFormat::smallest && header.stride <= mostStride &&
           header.count != 0 && header.count <= RecordBlock::Capacity(header.stride) &&
           header.varying >> header.stride == 0 && bytesBehind >= bytesOf(header);
}

/// Copies a record behind itself, until there are `count` of them.
void repeat(char* records, unsigned stride, unsigned count) {
    for (unsigned done = 1; done < count;) {
        const unsigned more = std::min(done, count - done);
        std::memcpy(records + std::size_t{done} * stride, records, std::size_t{more} * stride);
        done += more;
    }
}

}  // namespace

char* Write(const RecordBlock& block, bool isCompact, char* to) {
    const std::uint64_t all = allBytes(block.stride);
    const Header header{isCompact ? varyingBytes(block) : all, block.firstArrival, block.format,
                        block.count, block.stride};
    std::memcpy(to, &header, sizeof header);
    to += sizeof header;
    if (header.varying == all) {
        std::memcpy(to, block.records, bytesOf(header));
        return to + bytesOf(header);
    }
    std::memcpy(to, block.records, block.stride);
    to += block.stride;
    forEachUnit(header.varying, [&](unsigned at, unsigned unit) {
        copyUnits(unit, block.records + at, block.stride, to, unit, block.count);
        to += std::size_t{unit} * block.count;
    });
    return to;
}

const char* Read(const char* from, const char* end, RecordBlock& block) {
    Header header;
    if (static_cast<std::size_t>(end - from) < sizeof header) return nullptr;
    std::memcpy(&header, from, sizeof header);
    from += sizeof header;
    if (!isPossible(header, static_cast<std::size_t>(end - from))) return nullptr;
    block.next = nullptr;
    block.firstArrival = header.firstArrival;
    block.format = header.format;
    block.count = header.count;
    block.stride = header.stride;
    if (header.varying == allBytes(header.stride)) {
        std::memcpy(block.records, from, bytesOf(header));
        return from + bytesOf(header);
    }
    std::memcpy(block.records, from, block.stride);
    from += block.stride;
    repeat(block.records, block.stride, block.count);
    forEachUnit(header.varying, [&](unsigned at, unsigned unit) {
        copyUnits(unit, from, unit, block.records + at, block.stride, block.count);
        from += std::size_t{unit} * block.count;
    });
    return from;
}

}  // namespace vpc::CompactBlock
