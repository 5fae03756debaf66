#include "vpc/sample/SampleWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "core/util/ReplacementFile.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/TextLine.h"
#include "vpc/sample/RecordShuffle.h"
#include "vpc/sample/SampleGenerator.h"

namespace vpc {

SampleWriter::SampleWriter(unsigned long long points, std::uint64_t seed)
    : points_(points), seed_(seed) {
    progress_.Begin("making points", points);
}

void SampleWriter::Step(unsigned long long points) {
    constexpr unsigned long long interval = 65536;
    if (points % interval != 0) return;
    Interrupt::Check();
    if (points != 0) progress_.Add(interval);
}

namespace {

// --- LAS -----------------------------------------------------------------------------------------

constexpr double scale = 0.001;
constexpr double stepsPerMetre = 1000.0;
constexpr std::array<double, 3> offsets = {SampleFlight::originX, SampleFlight::originY, 0.0};
constexpr std::uint16_t headerSize12 = 227;
constexpr std::uint16_t headerSize14 = 375;
constexpr double scanAngle = 20.0;

/// Packs values one after the other.
template <std::size_t size>
class Packer {
public:
    template <class T>
    void Put(T value) {
        std::memcpy(bytes_.data() + used_, &value, sizeof value);
        used_ += sizeof value;
    }
    void PutText(const char* text, std::size_t length) {
        std::memcpy(bytes_.data() + used_, text, std::min(length, std::strlen(text)));
        used_ += length;
    }
    void Skip(std::size_t count) { used_ += count; }
    const char* Data() const { return bytes_.data(); }
    std::size_t Size() const { return used_; }

private:
    std::array<char, size> bytes_{};
    std::size_t used_ = 0;
};

std::uint8_t byteOf(int value) {
    return static_cast<std::uint8_t>(value);
}

class LasSampleWriter : public SampleWriter {
public:
    LasSampleWriter(unsigned long long points, std::uint64_t seed, int format, SampleOrder order);
    void Write(ReplacementFile& file) override;

private:
    using Steps = std::array<std::int32_t, 3>;
    using Record = Packer<36>;

    std::uint16_t HeaderSize() const { return format7_ ? headerSize14 : headerSize12; }
    std::uint16_t RecordSize() const { return format7_ ? 36 : 34; }
    void WriteHeader(ReplacementFile& file) const;
    void WriteShuffled(ReplacementFile& file);
    /// Gives every point's record to `take`, in the order of the flight.
    template <class Take>
    void MakeRecords(const Take& take);
    Record RecordOf(const SamplePoint& point, const SampleFlight& flight);

    bool format7_;
    SampleOrder order_;
    Steps minimum_;
    Steps maximum_;
};

LasSampleWriter::LasSampleWriter(unsigned long long points, std::uint64_t seed, int format,
                                 SampleOrder order)
    : SampleWriter(points, seed), format7_(format == 7), order_(order) {
    minimum_.fill(std::numeric_limits<std::int32_t>::max());
    maximum_.fill(std::numeric_limits<std::int32_t>::min());
}

void LasSampleWriter::Write(ReplacementFile& file) {
    WriteHeader(file);
    if (order_ == SampleOrder::random) {
        WriteShuffled(file);
    } else {
        MakeRecords([&](const Record& record) { file.Write(record.Data(), record.Size()); });
    }
    // The bounds are known now, so the header is written once more.
    file.Rewind();
    WriteHeader(file);
}

void LasSampleWriter::WriteShuffled(ReplacementFile& file) {
    file.Rewind();  // so that the file is there with its header
    RecordShuffle shuffle(file.TemporaryName(), HeaderSize(), RecordSize(), Points(), Seed());
    MakeRecords([&](const Record& record) { shuffle.Add(record.Data()); });
    shuffle.Finish();
}

template <class Take>
void LasSampleWriter::MakeRecords(const Take& take) {
    SampleFlight flight(Points(), Seed());
    for (unsigned long long i = 0; i < Points(); ++i) {
        Step(i);
        const SamplePoint point = flight.Next();
        take(RecordOf(point, flight));
    }
}

void LasSampleWriter::WriteHeader(ReplacementFile& file) const {
    Packer<headerSize14> header;
    header.PutText("LASF", 4);
    header.Put(std::uint16_t{1});
    // Times are adjusted standard GPS; format 7 must name its coordinate system as WKT, if any.
    header.Put(static_cast<std::uint16_t>(format7_ ? 0x11 : 0x01));
    header.Skip(16);
    header.Put(std::uint8_t{1});
    header.Put(byteOf(format7_ ? 4 : 2));
    header.PutText("made-up landscape", 32);
    header.PutText("vpc sample", 32);
    header.Put(std::uint16_t{1});  // a fixed date, since every run is to give the same bytes
    header.Put(std::uint16_t{2026});
    header.Put(HeaderSize());
    header.Put(std::uint32_t{HeaderSize()});
    header.Put(std::uint32_t{0});
    header.Put(byteOf(format7_ ? 7 : 3));
    header.Put(RecordSize());
    const auto legacyPoints = static_cast<std::uint32_t>(format7_ ? 0 : Points());
    header.Put(legacyPoints);
    header.Put(legacyPoints);
    header.Skip(4 * sizeof(std::uint32_t));
    for (int axis = 0; axis < 3; ++axis) header.Put(scale);
    for (const double offset : offsets) header.Put(offset);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        header.Put(maximum_[axis] * scale + offsets[axis]);
        header.Put(minimum_[axis] * scale + offsets[axis]);
    }
    if (format7_) {
        header.Skip(sizeof(std::uint64_t) + sizeof(std::uint64_t) + sizeof(std::uint32_t));
        header.Put(std::uint64_t{Points()});
        header.Put(std::uint64_t{Points()});
        header.Skip(14 * sizeof(std::uint64_t));
    }
    file.Write(header.Data(), header.Size());
}

LasSampleWriter::Record LasSampleWriter::RecordOf(const SamplePoint& point,
                                                  const SampleFlight& flight) {
    Record record;
    const std::array<double, 3> place = {point.x, point.y, point.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto step = static_cast<std::int32_t>(
            std::floor((place[axis] - offsets[axis]) * stepsPerMetre + 0.5));
        minimum_[axis] = std::min(minimum_[axis], step);
        maximum_[axis] = std::max(maximum_[axis], step);
        record.Put(step);
    }
    record.Put(point.intensity);
    const int direction = flight.Forwards() ? 0x40 : 0;
    const double angle = flight.Across() * scanAngle;
    const auto strip = static_cast<std::uint16_t>(flight.Strip() + 1);
    // Every shot has one return, the first of one.
    if (format7_) {
        record.Put(byteOf(0x11));
        record.Put(byteOf(direction));
        record.Put(static_cast<std::uint8_t>(point.classification));
        record.Put(std::uint8_t{0});
        record.Put(static_cast<std::int16_t>(std::floor(angle / 0.006)));
    } else {
        record.Put(byteOf(0x09 | direction));
        record.Put(static_cast<std::uint8_t>(point.classification));
        record.Put(static_cast<std::int8_t>(std::floor(angle)));
        record.Put(std::uint8_t{0});
    }
    record.Put(strip);
    record.Put(flight.Time());
    record.Put(point.red);
    record.Put(point.green);
    record.Put(point.blue);
    return record;
}

// --- PTS -----------------------------------------------------------------------------------------

class PtsSampleWriter : public SampleWriter {
public:
    PtsSampleWriter(unsigned long long points, std::uint64_t seed) : SampleWriter(points, seed) {}
    void Write(ReplacementFile& file) override;
};

TextLine lineOf(const SamplePoint& point) {
    TextLine line;
    line.AddRounded(point.x);
    line.AddRounded(point.y);
    line.AddRounded(point.z);
    line.Add(point.intensity / 8 - 2048);  // scanners give -2048 to 2047
    for (const int channel : {point.red, point.green, point.blue}) line.Add(channel >> 8);
    line.End();
    return line;
}

void PtsSampleWriter::Write(ReplacementFile& file) {
    file.Write(std::to_string(Points()) + "\n");
    SampleFlight flight(Points(), Seed());
    for (unsigned long long i = 0; i < Points(); ++i) {
        Step(i);
        const TextLine line = lineOf(flight.Next());
        file.Write(line.Data(), line.Size());
    }
}

// --- PTX -----------------------------------------------------------------------------------------

constexpr double areaPerPoint = 0.1;
constexpr double pi = 3.14159265358979323846;
/// Where the scanner stands, and the cosine and sine of the angle by which it is turned against the
/// landscape.
constexpr double scannerX = SampleFlight::originX + 500.0;
constexpr double scannerY = SampleFlight::originY + 500.0;
constexpr double tripodHeight = 1.7;
constexpr double cosine = 0.8;
constexpr double sine = 0.6;
constexpr double nearest = 1.5;
constexpr const char* emptyCell = "0 0 0 0.5 0 0 0\n";

/// A unit vector for a part of the full turn, without trigonometric functions, whose last bits
/// differ between libraries.
std::array<double, 2> direction(double turn) {
    const double quarters = turn * 4.0;
    const double t = quarters - std::floor(quarters);
    const double a = (1.0 - t * t) / (1.0 + t * t);
    const double b = 2.0 * t / (1.0 + t * t);
    switch (static_cast<int>(quarters)) {
        case 0:
            return {a, b};
        case 1:
            return {-b, a};
        case 2:
            return {-a, -b};
        default:
            return {b, -a};
    }
}

class PtxSampleWriter : public SampleWriter {
public:
    PtxSampleWriter(unsigned long long points, std::uint64_t seed);
    void Write(ReplacementFile& file) override;

private:
    void WriteHeader(ReplacementFile& file) const;
    void WriteCell(ReplacementFile& file, unsigned long long column, double distanceShare);
    unsigned long long PointsInColumn(unsigned long long column) const;

    SampleScene scene_;
    SampleRandom random_;
    unsigned long long columns_;
    unsigned long long rows_;
    double reach_;
    double scannerZ_;
};

PtxSampleWriter::PtxSampleWriter(unsigned long long points, std::uint64_t seed)
    : SampleWriter(points, seed),
      scene_(seed),
      random_(seed),
      // About twice as many columns as rows, since a scanner sees all around but not all of below.
      columns_(static_cast<unsigned long long>(
          std::max(1.0, std::ceil(std::sqrt(2.0 * static_cast<double>(points)))))),
      reach_(nearest + std::sqrt(static_cast<double>(points) * areaPerPoint / pi)),
      scannerZ_(scene_.Ground(scannerX, scannerY) + tripodHeight) {
    const unsigned long long fullest = (points + columns_ - 1) / columns_;
    rows_ = fullest + fullest / 16 + 1;
}

unsigned long long PtxSampleWriter::PointsInColumn(unsigned long long column) const {
    return Points() / columns_ + (column < Points() % columns_ ? 1 : 0);
}

void PtxSampleWriter::Write(ReplacementFile& file) {
    WriteHeader(file);
    for (unsigned long long column = 0; column < columns_; ++column) {
        const unsigned long long filled = PointsInColumn(column);
        for (unsigned long long row = 0; row < rows_; ++row) {
            Step(column * rows_ + row);
            // Spreads the filled cells of a column evenly over its rows.
            if ((row + 1) * filled / rows_ > row * filled / rows_) {
                WriteCell(file, column,
                          (static_cast<double>(row) + random_.Unit()) / static_cast<double>(rows_));
            } else {
                file.Write(emptyCell);
            }
        }
    }
}

void PtxSampleWriter::WriteHeader(ReplacementFile& file) const {
    const auto fixed = [](double value) {
        TextLine line;
        line.AddRounded(value);
        return std::string(line.Data(), line.Size());
    };
    const std::string place = fixed(scannerX) + " " + fixed(scannerY) + " " + fixed(scannerZ_);
    const std::string axisX = fixed(cosine) + " " + fixed(sine) + " 0";
    const std::string axisY = fixed(-sine) + " " + fixed(cosine) + " 0";
    file.Write(std::to_string(columns_) + "\n" + std::to_string(rows_) + "\n");
    file.Write(place + "\n" + axisX + "\n" + axisY + "\n0 0 1\n");
    file.Write(axisX + " 0\n" + axisY + " 0\n0 0 1 0\n" + place + " 1\n");
}

void PtxSampleWriter::WriteCell(ReplacementFile& file, unsigned long long column,
                                double distanceShare) {
    const auto toward =
        direction((static_cast<double>(column) + 0.5) / static_cast<double>(columns_));
    const double distance =
        std::sqrt(nearest * nearest + (reach_ * reach_ - nearest * nearest) * distanceShare);
    const double dx = toward[0] * distance;
    const double dy = toward[1] * distance;
    const SamplePoint point = scene_.Hit(scannerX + dx, scannerY + dy, random_);
    // Back into the scanner's frame: the inverse of a rotation is its transpose.
    TextLine line;
    line.AddRounded(dx * cosine + dy * sine);
    line.AddRounded(dy * cosine - dx * sine);
    line.AddRounded(point.z - scannerZ_);
    line.AddThousandths(point.intensity * 1000LL / 32768);
    for (const int channel : {point.red, point.green, point.blue}) line.Add(channel >> 8);
    line.End();
    file.Write(line.Data(), line.Size());
}

}  // namespace

std::unique_ptr<SampleWriter> SampleWriter::Las(unsigned long long points, std::uint64_t seed,
                                                int format, SampleOrder order) {
    return std::make_unique<LasSampleWriter>(points, seed, format, order);
}

std::unique_ptr<SampleWriter> SampleWriter::Pts(unsigned long long points, std::uint64_t seed) {
    return std::make_unique<PtsSampleWriter>(points, seed);
}

std::unique_ptr<SampleWriter> SampleWriter::Ptx(unsigned long long points, std::uint64_t seed) {
    return std::make_unique<PtxSampleWriter>(points, seed);
}

}  // namespace vpc
