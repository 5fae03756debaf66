#include "io/PtxIO.h"

#include <algorithm>
#include <cmath>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcSimplePointTools.h"
#include "core/util/VpcColorTools.h"
#include "io/TextFileWriter.h"

namespace {

constexpr std::array<double, 12> identity{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
constexpr std::size_t valuesWithoutColour = 4;
constexpr std::size_t valuesWithColour = 7;

/// 256 if any colour is greater than 256, otherwise 1. The readers' 16-bit test has another limit;
/// the difference is deliberate.
double colourDivisorOf(const std::vector<VpcPoint3D>& points) {
    const bool wide = std::any_of(points.begin(), points.end(), [](const VpcPoint3D& p) {
        return p.red > 256 || p.green > 256 || p.blue > 256;
    });
    return wide ? 256.0 : 1.0;
}

}  // namespace

VpcPoint3D* PtxIO::initializeRead(wxString path) {
    BeginFile(path);
    hasMoreScans = false;
    pointsInBatch = 0;
    pointsRemaining = 1;
    if (OpenStream()) InitializeView();
    RequireReadable();
    return pointBuffer;
}

bool PtxIO::InitializeView() {
    hasMoreScans = false;
    const bool hasText = scanner_.SkipWhiteSpace();
    const unsigned long long start = scanner_.Position();
    if (!ScanGridSize()) {
        NoteNoCount(hasText, start);
    } else {
        CheckCount(scanPointCount);
        account_.claimedPoints += scanPointCount;
        if (!scanner_.EndsLine()) account_.Note(ScanFault::Kind::OddCount, start);
        ScanPose();
        hasNoColour_ = ValuesOnNextLine() == valuesWithoutColour;
        account_.valuesPerPoint = hasNoColour_ ? valuesWithoutColour : valuesWithColour;
        hasMoreScans = true;
        isIdentity = IsIdentityTransform();
        numberOfBatches = BatchesOf(scanPointCount);
        pointsRead = 0;
        pointsRemaining = scanPointCount;
    }
    batchIndex = 0;
    return hasMoreScans;
}

/// Reads columns and rows; false if there are none, or more cells than 64 bits can count.
bool PtxIO::ScanGridSize() {
    scanPointCount = 0;
    unsigned long long columns = 0, rows = 0;
    const bool hasColumns = scanner_.ScanUnsigned(columns);
    const bool hasRows = scanner_.ScanUnsigned(rows);
    if (!hasColumns || !hasRows) return false;
    if (__builtin_mul_overflow(columns, rows, &scanPointCount)) scanPointCount = 0;
    return scanPointCount != 0;
}

/// Reads the scanner's position and axes, which are not used, and the registration matrix.
void PtxIO::ScanPose() {
    std::array<double, 3> unused{};
    for (int row = 0; row < 4; ++row)
        if (scanner_.ScanDoubles(unused.data(), unused.size()) != unused.size())
            NoteUnreadableValue();
    for (std::size_t row = 0; row < 4; ++row) {
        double* const target = &transform[3 * row];
        std::array<double, 4> values{target[0], target[1], target[2], 0};
        if (scanner_.ScanDoubles(values.data(), values.size()) != values.size())
            NoteUnreadableValue();
        std::copy_n(values.begin(), 3, target);
    }
}

/// Counts the values on the first line ahead that is not blank, up to one more than a line
/// without colour has; consumes the white space before it.
std::size_t PtxIO::ValuesOnNextLine() {
    if (!scanner_.SkipWhiteSpace()) return 0;
    std::size_t values = 0;
    bool inValue = false;
    for (const char c : scanner_.Peek(vpc::TextScanner::maxPeek)) {
        if (c == '\n' || c == '\r' || values > valuesWithoutColour) break;
        const bool blank = c == ' ' || c == '\t' || c == '\v' || c == '\f';
        if (!blank && !inValue) ++values;
        inValue = !blank;
    }
    return values;
}

bool PtxIO::IsIdentityTransform() const {
    return transform == identity;
}

PtxIO::Line PtxIO::ScanLine() {
    Line line;
    const std::size_t scanned = scanner_.ScanDoubles(line.values.data(), line.values.size());
    if (scanned < line.values.size()) {
        NoteMissingValues(scanned);
        return line;
    }
    if (!hasNoColour_)
        for (int& channel : line.colour)
            if (!scanner_.ScanInt(channel)) {
                NoteMissingValues(scanned);
                return line;
            }
    if (!scanner_.EndsLine()) NoteOddLine();
    return line;
}

unsigned long long PtxIO::ReadPointValues(bool skipEmpty) {
    const Line line = ScanLine();
    const auto& [px, py, pz, intensity] = line.values;
    if (skipEmpty && px == 0 && py == 0 && pz == 0) return 0;
    const auto& m = transform;
    const double x = px * m[0] + py * m[3] + pz * m[6] + m[9];
    const double y = px * m[1] + py * m[4] + pz * m[7] + m[10];
    const double z = px * m[2] + py * m[5] + pz * m[8] + m[11];
    const double distance = isIdentity ? 1.0 : std::sqrt(px * px + py * py + pz * pz);
    if (pointsInBatch == 0 && batchIndex == 0) InitializeExtent(x, y, z);
    setPointValues(pointBuffer[pointsInBatch], x, y, z, line.colour[0], line.colour[1],
                   line.colour[2], intensity, scanIndex, distance);
    ++pointsInBatch;
    return 1;
}

unsigned long long PtxIO::nextPointBatch() {
    if (!hasMoreScans) {
        if (pointsRemaining == 0) return pointsInBatch;
        // Nothing could be read from this file, so the caller's loop ends here.
        pointsRemaining = pointsInBatch = 0;
        return 0;
    }
    const unsigned long long n = std::min(pointsRemaining, batchCapacity);
    pointsInBatch = 0;
    for (unsigned long long i = 0; i < n; ++i) ReadPointValues(true);
    pointsRemaining -= n;
    if (pointsRemaining == 0) InitializeView();
    // Counts on after a following scan's header, too, so that its points only widen the extent.
    ++batchIndex;
    RequireReadable();
    return pointsInBatch;
}

void PtxIO::Write(std::vector<VpcPoint3D>& points, wxString path, VpcStylizationType stylization) {
    vpc::writeBestEffort(path,
                         [&](vpc::TextFileWriter& file) { WriteTo(file, points, stylization); });
}

void PtxIO::WriteTo(vpc::TextFileWriter& file, const std::vector<VpcPoint3D>& points,
                    VpcStylizationType stylization) {
    file << static_cast<unsigned long long>(points.size()) << "\n";
    file << "1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
    VpcPoint3D low, high;
    VpcSimplePointTools::DeterminePointsMinMaxPoints(points, low, high);
    const VpcBoundingBoxAxisAligned box(low, high);
    const double colourDivisor = colourDivisorOf(points);
    const double intensityDivisor = 3.0 * colourDivisor * 256.0;
    const bool showsElevation =
        stylization == VPC_Stylization_ELEVATION || stylization == VPC_Stylization_INTENSITY;
    const auto rounded = [](double channel) -> unsigned long long {
        return ToUint16(channel + 0.5);
    };
    for (const VpcPoint3D& p : points) {
        double red = p.red / colourDivisor;
        double green = p.green / colourDivisor;
        double blue = p.blue / colourDivisor;
        if (showsElevation)
            VpcColorTools::ApplyColorScheme(p.z, box.minPoint.z, box.maxPoint.z,
                                            VPC_ColorScheme_Spectrum, red, green, blue);
        file << p.x << " " << p.y << " " << p.z << " ";
        file << (red + green + blue) / intensityDivisor << " ";
        file << rounded(red) << " " << rounded(green) << " " << rounded(blue) << "\n";
    }
}
