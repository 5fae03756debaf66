#include "vpc/export/LasExport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/geometry/NumberText.h"
#include "core/util/DrawingUnits.h"
#include "vpc/export/BytePacker.h"
#include "vpc/export/LasAxisSearch.h"

namespace vpc {

namespace {

constexpr std::uint16_t headerSize12 = 227;
constexpr std::uint16_t headerSize14 = 375;
constexpr std::uint16_t recordSize2 = 26;
constexpr std::uint16_t recordSize7 = 36;
/// Coordinates on which scales and offsets are tried before all points are.
constexpr unsigned long long sampleSize = 8192;

/// The nearest intensity that a LAS reader gives.
std::int16_t lasIntensity(double intensity) {
    constexpr double least = std::numeric_limits<std::int16_t>::min();
    constexpr double most = std::numeric_limits<std::int16_t>::max();
    double nearest = std::round(intensity);
    nearest = nearest > least ? nearest : least;
    nearest = nearest < most ? nearest : most;
    return static_cast<std::int16_t>(nearest);
}

std::uint16_t sourceId(std::int32_t sourceIndex) {
    constexpr std::int32_t largest = std::numeric_limits<std::uint16_t>::max();
    const bool fits = sourceIndex >= 0 && sourceIndex < largest;
    return fits ? static_cast<std::uint16_t>(sourceIndex + 1) : std::uint16_t{0};
}

std::string errorText(double error) {
    return generalText(error, 3);
}

double coordinate(const VpcPoint3D& p, std::size_t axis) {
    return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
}

std::array<std::vector<double>, 3> sample(ExportSource& source) {
    const ExportSummary& summary = source.Summary();
    std::array<std::vector<double>, 3> values;
    for (std::size_t axis = 0; axis < 3; ++axis)
        values[axis] = {summary.low[axis], summary.high[axis]};
    const unsigned long long step = summary.points / sampleSize + 1;
    unsigned long long next = 0;
    unsigned long long index = 0;
    source.ForEach("looking at coordinates", [&](std::span<const VpcPoint3D> batch) {
        for (; next < index + batch.size(); next += step)
            for (std::size_t axis = 0; axis < 3; ++axis)
                values[axis].push_back(coordinate(batch[next - index], axis));
        index += batch.size();
    });
    return values;
}

}  // namespace

LasExport::LasExport(ExportSource& source, unsigned long long unit)
    : source_(source), unit_(unit), isLarge_(source.Summary().points > mostPoints12) {
    ChooseAxes();
}

void LasExport::ChooseAxes() {
    auto samples = sample(source_);
    std::vector<LasAxisSearch> searches;
    searches.reserve(samples.size());
    for (auto& values : samples) searches.emplace_back(std::move(values));
    std::vector<double> coordinates;
    bool firstPass = true;
    const auto open = [](const LasAxisSearch& search) { return search.NeedsPass(); };
    while (std::any_of(searches.begin(), searches.end(), open)) {
        source_.ForEach("choosing scales", [&](std::span<const VpcPoint3D> batch) {
            if (firstPass) MeasureIntensities(batch);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (!searches[axis].NeedsPass()) continue;
                coordinates.clear();
                for (const VpcPoint3D& p : batch) coordinates.push_back(coordinate(p, axis));
                searches[axis].Measure(coordinates);
            }
        });
        for (LasAxisSearch& search : searches)
            if (search.NeedsPass()) search.EndPass();
        firstPass = false;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        axes_[axis] = searches[axis].Best();
        coordinateError_ = std::max(coordinateError_, searches[axis].Error());
    }
}

void LasExport::MeasureIntensities(std::span<const VpcPoint3D> batch) {
    for (const VpcPoint3D& p : batch) {
        const double error = std::abs(lasIntensity(p.intensity) - p.intensity);
        if (error == 0.0) continue;
        ++inexactIntensities_;
        intensityError_ = std::max(intensityError_, error);
    }
}

std::vector<std::string> LasExport::Warnings() const {
    std::vector<std::string> warnings;
    if (coordinateError_ > 0.0)
        warnings.push_back(
            "the coordinates lie on no grid that LAS can hold, so they are off by up to " +
            errorText(coordinateError_) + "; the other formats keep them exactly");
    if (inexactIntensities_ > 0)
        warnings.push_back("LAS holds intensities as integers from -32768 to 32767, so those of " +
                           std::to_string(inexactIntensities_) + " points are off by up to " +
                           errorText(intensityError_) + "; the other formats keep them exactly");
    return warnings;
}

std::string LasExport::Header() const {
    const ExportSummary& summary = source_.Summary();
    const std::uint16_t size = isLarge_ ? headerSize14 : headerSize12;
    std::string header;
    BytePacker packer(header);
    packer.PutText("LASF", 4);
    packer.Put(std::uint16_t{0});
    // Format 7 must name its coordinate system as WKT, if any.
    packer.Put(static_cast<std::uint16_t>(isLarge_ ? 0x10 : 0));
    packer.PutZeros(16);
    packer.Put(std::uint8_t{1});
    packer.Put(static_cast<std::uint8_t>(isLarge_ ? 4 : 2));
    packer.PutText("EXTRACTION", 32);
    packer.PutText("vpc export", 32);
    packer.PutZeros(4);  // no date, since every run is to give the same bytes
    const std::string unit = UnitRecord();
    packer.Put(size);
    packer.Put(static_cast<std::uint32_t>(size + unit.size()));
    packer.Put(std::uint32_t{unit.empty() ? 0U : 1U});
    packer.Put(static_cast<std::uint8_t>(isLarge_ ? 7 : 2));
    packer.Put(isLarge_ ? recordSize7 : recordSize2);
    const auto points12 = static_cast<std::uint32_t>(isLarge_ ? 0 : summary.points);
    packer.Put(points12);
    packer.Put(points12);  // all are first returns
    packer.PutZeros(4 * sizeof(std::uint32_t));
    for (const LasAxis& axis : axes_) packer.Put(axis.scale);
    for (const LasAxis& axis : axes_) packer.Put(axis.offset);
    for (std::size_t i = 0; i < axes_.size(); ++i)
        for (const double end : {summary.high[i], summary.low[i]})
            packer.Put(axes_[i].Decode(axes_[i].Encode(end)));
    if (isLarge_) {
        packer.PutZeros(sizeof(std::uint64_t) + sizeof(std::uint64_t) + sizeof(std::uint32_t));
        packer.Put(std::uint64_t{summary.points});
        packer.Put(std::uint64_t{summary.points});
        packer.PutZeros(14 * sizeof(std::uint64_t));
    }
    return header + unit;
}

bool LasExport::NamesUnit() const {
    return !isLarge_ && (unit_ == DrawingUnits::metres || unit_ == DrawingUnits::feet);
}

/// The variable-length record that names the unit of all three axes; empty where none can.
std::string LasExport::UnitRecord() const {
    constexpr std::uint16_t keyDirectory = 34735;
    constexpr std::uint16_t linearUnits = 3076, verticalUnits = 4099, metre = 9001, foot = 9002;
    std::string record;
    if (!NamesUnit()) return record;
    const std::uint16_t unit = unit_ == DrawingUnits::feet ? foot : metre;
    const std::array<std::uint16_t, 12> keys = {
        1, 1, 0, 2, linearUnits, 0, 1, unit, verticalUnits, 0, 1, unit};
    BytePacker packer(record);
    packer.Put(std::uint16_t{0});
    packer.PutText("LASF_Projection", 16);
    packer.Put(keyDirectory);
    packer.Put(static_cast<std::uint16_t>(sizeof keys));
    packer.PutText("unit", 32);
    for (const std::uint16_t key : keys) packer.Put(key);
    return record;
}

void LasExport::AppendRecord(std::string& records, const VpcPoint3D& p) const {
    BytePacker packer(records);
    for (std::size_t i = 0; i < axes_.size(); ++i) packer.Put(axes_[i].Encode(coordinate(p, i)));
    packer.Put(lasIntensity(p.intensity));
    // The first return of one; then class, flags, angle and user data, of which nothing is known.
    packer.Put(static_cast<std::uint8_t>(isLarge_ ? 0x11 : 0x09));
    packer.PutZeros(isLarge_ ? 5 : 3);
    packer.Put(sourceId(p.sourceIndex));
    if (isLarge_) packer.Put(0.0);  // the time
    packer.Put(p.red);
    packer.Put(p.green);
    packer.Put(p.blue);
}

void LasExport::Write(const ExportOutput& out) {
    out(Header());
    std::string records;
    source_.ForEach("writing points", [&](std::span<const VpcPoint3D> batch) {
        records.clear();
        for (const VpcPoint3D& p : batch) AppendRecord(records, p);
        out(records);
    });
}

}  // namespace vpc
