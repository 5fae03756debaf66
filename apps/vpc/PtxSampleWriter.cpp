#include "PtxSampleWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "SampleFlight.h"
#include "TextLine.h"

namespace vpc {

namespace {

constexpr double areaPerPoint = 0.1;
constexpr double pi = 3.14159265358979323846;
/// Where the scanner stands, and how it is turned against the landscape: by the angle whose
/// cosine and sine these are.
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

}  // namespace

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

void PtxSampleWriter::Write(OutputFile& file) {
    WriteHeader(file);
    for (unsigned long long column = 0; column < columns_; ++column) {
        const unsigned long long filled = PointsInColumn(column);
        for (unsigned long long row = 0; row < rows_; ++row) {
            CheckInterrupt(column * rows_ + row);
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

void PtxSampleWriter::WriteHeader(OutputFile& file) const {
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

void PtxSampleWriter::WriteCell(OutputFile& file, unsigned long long column, double distanceShare) {
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

}  // namespace vpc
