#include "vpc/sample/SampleGenerator.h"

#include <algorithm>
#include <cmath>

namespace vpc {

namespace {

/// What a cell's value is used for.
enum Purpose : std::uint64_t {
    hills,
    knolls,
    bumps,
    town,
    wood,
    field,
    houseHere,
    houseWidth,
    houseDepth,
    houseHeight,
    houseRoof,
    treeHere,
    treeX,
    treeY,
    treeRadius,
    treeHeight,
    purposes
};

constexpr double blockLength = 120.0;
constexpr double streetWidth = 9.0;
constexpr double lotLength = 37.0;
constexpr double treeSpacing = 7.0;
/// The share of the places for trees that have one, in woods and elsewhere.
constexpr double mostTrees = 0.75;
constexpr double fewestTrees = 0.06;
constexpr double fieldLength = 80.0;
constexpr double wallThickness = 0.25;

std::uint64_t mixed(std::uint64_t value) {
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ULL;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebULL;
    return value ^ (value >> 31);
}

/// The number of the cell that `value` lies in. Places stay far within the integers' range, and
/// without std::floor the compiler can keep this in line.
std::int64_t cellOf(double value, double length) {
    const double cells = value / length;
    const auto whole = static_cast<std::int64_t>(cells);
    return static_cast<double>(whole) > cells ? whole - 1 : whole;
}

/// The part of `value` beyond the last multiple of `length`.
double within(double value, double length) {
    return value - static_cast<double>(cellOf(value, length)) * length;
}

bool isStreet(double x, double y) {
    return within(x, blockLength) < streetWidth || within(y, blockLength) < streetWidth;
}

std::uint16_t channel(double value) {
    return static_cast<std::uint16_t>(std::clamp(value, 0.0, 65535.0));
}

}  // namespace

SampleScene::SampleScene(std::uint64_t seed) {
    static_assert(purposes == keyCount);
    for (std::uint64_t what = 0; what < purposes; ++what) keys_[what] = mixed(seed + what);
}

SamplePoint SampleScene::Hit(double x, double y, SampleRandom& random) const {
    SamplePoint point;
    point.x = x;
    point.y = y;
    if (HitHouse(point, random) || HitTree(point, random)) return point;
    HitGround(point, random);
    return point;
}

double SampleScene::Ground(double x, double y) const {
    return 250.0 + 45.0 * Noise(x, y, 420.0, hills) + 9.0 * Noise(x, y, 95.0, knolls) +
           0.6 * Noise(x, y, 11.0, bumps);
}

bool SampleScene::HitHouse(SamplePoint& point, SampleRandom& random) const {
    if (isStreet(point.x, point.y)) return false;
    // Lots are counted within their block, three to a side, between the streets.
    const double inBlockX = within(point.x, blockLength) - streetWidth;
    const double inBlockY = within(point.y, blockLength) - streetWidth;
    const std::int64_t lotX = cellOf(point.x, blockLength) * 3 + cellOf(inBlockX, lotLength);
    const std::int64_t lotY = cellOf(point.y, blockLength) * 3 + cellOf(inBlockY, lotLength);
    if (CellValue(lotX, lotY, houseHere) > 0.6) return false;
    const double halfWidth = 6.0 + 8.0 * CellValue(lotX, lotY, houseWidth);
    const double halfDepth = 5.0 + 6.0 * CellValue(lotX, lotY, houseDepth);
    const double offsetX = within(inBlockX, lotLength) - lotLength / 2;
    const double offsetY = within(inBlockY, lotLength) - lotLength / 2;
    const double fromSide = halfWidth - std::abs(offsetX);
    const double fromFront = halfDepth - std::abs(offsetY);
    // The costliest test comes last.
    if (fromSide < 0.0 || fromFront < 0.0 || !IsTown(point.x, point.y)) return false;
    const double base = Ground(point.x - offsetX, point.y - offsetY);
    const double eaves = 3.0 + 9.0 * CellValue(lotX, lotY, houseHeight);
    const double roof = CellValue(lotX, lotY, houseRoof);
    point.classification = SamplePoint::building;
    if (std::min(fromSide, fromFront) < wallThickness) {
        point.z = base + eaves * random.Unit();
        Paint(point, {52000, 49000, 43000}, 14000, random);
    } else if (roof < 0.7) {
        point.z = base + eaves + 0.5 * fromFront + 0.02 * random.Bell();
        Paint(point, {40000 + 8000 * roof, 19000, 14000}, 9000, random);
    } else {
        point.z = base + eaves + 0.02 * random.Bell();
        Paint(point, {30000, 30500, 31000}, 6000, random);
    }
    return true;
}

bool SampleScene::HitTree(SamplePoint& point, SampleRandom& random) const {
    if (isStreet(point.x, point.y)) return false;
    const std::int64_t cellX = cellOf(point.x, treeSpacing);
    const std::int64_t cellY = cellOf(point.y, treeSpacing);
    const double here = CellValue(cellX, cellY, treeHere);
    if (here > mostTrees) return false;
    const double radius = 1.5 + 1.9 * CellValue(cellX, cellY, treeRadius);
    const double freedom = treeSpacing - 2 * radius;
    const double centreX = radius + freedom * CellValue(cellX, cellY, treeX);
    const double centreY = radius + freedom * CellValue(cellX, cellY, treeY);
    const double dx = within(point.x, treeSpacing) - centreX;
    const double dy = within(point.y, treeSpacing) - centreY;
    const double share = (dx * dx + dy * dy) / (radius * radius);
    if (share >= 1.0 || here > TreeShare(point.x, point.y)) return false;
    // About every fourth shot finds its way through the leaves to the ground.
    if (random.Unit() < 0.25) return false;
    const double height = 5.0 + 13.0 * CellValue(cellX, cellY, treeHeight);
    const double depth = random.Unit();
    point.z = Ground(point.x, point.y) + height * (1.0 - 0.6 * share) - 2.0 * depth * depth;
    point.classification = SamplePoint::tree;
    Paint(point, {13000, 24000 + 6000 * depth, 9000}, 11000 - 5000 * depth, random);
    return true;
}

void SampleScene::HitGround(SamplePoint& point, SampleRandom& random) const {
    point.z = Ground(point.x, point.y) + 0.02 * random.Bell();
    if (isStreet(point.x, point.y)) {
        point.classification = SamplePoint::road;
        Paint(point, {21000, 21000, 22000}, 3500, random);
        return;
    }
    const double ripe =
        CellValue(cellOf(point.x, fieldLength), cellOf(point.y, fieldLength), field);
    Paint(point, {16000 + 22000 * ripe, 30000, 11000}, 15000 + 4000 * ripe, random);
}

double SampleScene::TreeShare(double x, double y) const {
    const bool inWood = Noise(x, y, 160.0, wood) > 0.6 && !IsTown(x, y);
    return inWood ? mostTrees : fewestTrees;
}

bool SampleScene::IsTown(double x, double y) const {
    return Noise(x, y, 500.0, town) > 0.45;
}

double SampleScene::CellValue(std::int64_t cellX, std::int64_t cellY, std::uint64_t what) const {
    const std::uint64_t place = static_cast<std::uint64_t>(cellX) * 0x9e3779b97f4a7c15ULL ^
                                static_cast<std::uint64_t>(cellY) * 0xc2b2ae3d27d4eb4fULL;
    return static_cast<double>(mixed(place + keys_[what]) >> 11) * 0x1p-53;
}

double SampleScene::Noise(double x, double y, double wavelength, std::uint64_t what) const {
    const std::int64_t cellX = cellOf(x, wavelength);
    const std::int64_t cellY = cellOf(y, wavelength);
    const auto smooth = [](double t) { return t * t * (3.0 - 2.0 * t); };
    const double tx = smooth(within(x, wavelength) / wavelength);
    const double ty = smooth(within(y, wavelength) / wavelength);
    const auto row = [&](std::int64_t cell) {
        const double left = CellValue(cellX, cell, what);
        return left + tx * (CellValue(cellX + 1, cell, what) - left);
    };
    const double low = row(cellY);
    return low + ty * (row(cellY + 1) - low);
}

void SampleScene::Paint(SamplePoint& point, const Colour& colour, double intensity,
                        SampleRandom& random) {
    const double light = 1.0 + 0.15 * random.Bell();
    point.red = channel(colour.red * light);
    point.green = channel(colour.green * light);
    point.blue = channel(colour.blue * light);
    point.intensity = static_cast<std::uint16_t>(
        std::clamp(intensity * (1.0 + 0.3 * random.Bell()), 0.0, 32767.0));
}

namespace {

constexpr double pointsPerSquareMetre = 10.0;
constexpr double stripWidth = 180.0;
/// Strips overlap, so that no gap opens between them.
constexpr double overlap = 1.1;

unsigned long long rounded(double value) {
    return static_cast<unsigned long long>(std::max(1.0, value + 0.5));
}

}  // namespace

SampleFlight::SampleFlight(unsigned long long points, std::uint64_t seed)
    : scene_(seed),
      random_(seed),
      side_(std::max(1.0, std::sqrt(static_cast<double>(points) / pointsPerSquareMetre))),
      strips_(static_cast<unsigned>(std::ceil(side_ / stripWidth))) {
    const double perStrip = static_cast<double>(points) / strips_;
    // Lines are as far apart as the points on a line.
    linesPerStrip_ = rounded(std::sqrt(perStrip * strips_ / overlap));
    pointsPerLine_ = rounded(std::ceil(perStrip / static_cast<double>(linesPerStrip_)) - 0.5);
}

SamplePoint SampleFlight::Next() {
    const double width = side_ / strips_;
    const double step = 2.0 / static_cast<double>(pointsPerLine_);
    const double place = (static_cast<double>(onLine_) + 0.5 + 0.4 * random_.Bell()) * step - 1.0;
    across_ = line_ % 2 == 0 ? place : -place;
    const double progress =
        (static_cast<double>(line_) +
         (static_cast<double>(onLine_) + random_.Unit()) / static_cast<double>(pointsPerLine_)) /
        static_cast<double>(linesPerStrip_);
    const double along = strip_ % 2 == 0 ? progress : 1.0 - progress;
    const double middle = (strip_ + 0.5) * width;
    const SamplePoint point = scene_.Hit(originX + middle + across_ * overlap * width / 2,
                                         originY + along * side_, random_);
    NextPlace();
    return point;
}

void SampleFlight::NextPlace() {
    ++done_;
    if (++onLine_ < pointsPerLine_) return;
    onLine_ = 0;
    if (++line_ < linesPerStrip_ || strip_ + 1 == strips_) return;
    line_ = 0;
    ++strip_;
}

}  // namespace vpc
