#include "io/PtsIO.h"

#include <algorithm>
#include <cerrno>

#include "core/geometry/VpcSimplePointTools.h"
#include "core/util/FileTools.h"
#include "core/util/VpcColorTools.h"
#include "io/TextFileWriter.h"

VpcPoint3D* PtsIO::initializeRead(wxString path) {
    BeginFile(path);
    numberOfPoints = 0;
    hasMoreBlocks = false;
    // If the text begins with no count, it still delivers one point.
    pointsRemaining = 1;
    if (!OpenStream()) {
        tokensPerLine = static_cast<long long>(FileTools::CountTokensOnLine(path, 1));
        return pointBuffer;
    }
    // The values are counted through the same handle, so that a read error is noticed.
    tokensPerLine = static_cast<long long>(FileTools::CountTokensOnLine(stream.get(), 1));
    // Unlike rewind, fseek keeps the stream's error state.
    if (std::ferror(stream.get()) != 0 || std::fseek(stream.get(), 0, SEEK_SET) != 0)
        FailReading(errno);
    if (InitializeView() && ReaderOfLayout() == nullptr) NoteUnreadableLayout();
    RequireReadable();
    return pointBuffer;
}

/// Notes the file's second line. A text that ends with its first one only lacks points.
void PtsIO::NoteUnreadableLayout() {
    const std::string_view ahead = scanner_.Peek(vpc::TextScanner::maxPeek);
    std::size_t second = std::min(ahead.find_first_of("\r\n"), ahead.size());
    second += ahead.substr(second, 2) == "\r\n" ? 2 : 1;
    const unsigned long long position = scanner_.Position() + second;
    if (!scanner_.SkipWhiteSpace()) return;
    account_.Note(ScanFault::Kind::UnreadableLayout, position);
    // A blank line holds nothing to be looked for.
    if (tokensPerLine == 0) account_.faults.back().line = 2;
}

bool PtsIO::InitializeView() {
    hasMoreBlocks = false;
    blockPointCount = 0;
    batchIndex = 0;
    account_.valuesPerPoint = static_cast<unsigned long long>(tokensPerLine);
    const bool hasText = scanner_.SkipWhiteSpace();
    const unsigned long long start = scanner_.Position();
    unsigned long long count = 0;
    if (!scanner_.ScanUnsigned(count) || count == 0) {
        NoteNoCount(hasText, start);
        return false;
    }
    CheckCount(count);
    account_.claimedPoints += count;
    if (!scanner_.EndsLine()) account_.Note(ScanFault::Kind::OddCount, start);
    blockPointCount = count;
    hasMoreBlocks = true;
    numberOfBatches = BatchesOf(count);
    pointsRead = 0;
    pointsRemaining = count;
    return true;
}

unsigned long long PtsIO::nextPointBatch() {
    if (stream == nullptr) {
        pointsRemaining = 0;
        return 0;
    }
    const unsigned long long n = std::min(pointsRemaining, batchCapacity);
    if (const PointReader addPoint = ReaderOfLayout()) {
        ReadPoints(addPoint, n);
    } else {
        DeliverBufferAsItIs(n);
    }
    pointsRemaining -= n;
    if (pointsRemaining == 0) InitializeView();
    // Counts on after a following block's count, too, so that its points only widen the extent.
    ++batchIndex;
    RequireReadable();
    return n;
}

PtsIO::PointReader PtsIO::ReaderOfLayout() const {
    switch (tokensPerLine) {
        case 3:
            return &PtsIO::AddPoint3Tokens;
        case 4:
            return &PtsIO::AddPoint4Tokens;
        case 6:
            return &PtsIO::AddPoint6Tokens;
        case 7:
            return &PtsIO::AddPoint7Tokens;
        default:
            return nullptr;
    }
}

void PtsIO::ReadPoints(PointReader addPoint, unsigned long long count) {
    for (unsigned long long i = 0; i < count; ++i) {
        VpcPoint3D& point = pointBuffer[i];
        (this->*addPoint)(point);
        if (i == 0 && batchIndex == 0) InitializeExtent(point.x, point.y, point.z);
    }
}

void PtsIO::DeliverBufferAsItIs(unsigned long long count) {
    pointsWithoutValues += count;
    for (unsigned long long i = 0; i < count; ++i) {
        const VpcPoint3D& point = pointBuffer[i];
        if (!VpcNumMathTools::AreCoordinates(point.x, point.y, point.z)) ++nonFinitePoints;
        if (i == 0 && batchIndex == 0) InitializeExtent(point.x, point.y, point.z);
        UpdateExtent(point.x, point.y, point.z);
    }
}

/// Reads the next values of the text, up to the first that is no number; the others are 0. Line
/// ends are white space like any other, but a point that ends within a line is noted.
template <std::size_t count>
std::array<double, count> PtsIO::ScanValues() {
    std::array<double, count> values{};
    const std::size_t scanned = scanner_.ScanDoubles(values.data(), count);
    if (scanned != count)
        NoteMissingValues(scanned);
    else if (!scanner_.EndsLine())
        NoteOddLine();
    return values;
}

void PtsIO::AddPoint3Tokens(VpcPoint3D& point) {
    const auto v = ScanValues<3>();
    setPointValues(point, v[0], v[1], v[2], 0, 0, 0, 0, scanIndex, 1.0);
}

void PtsIO::AddPoint4Tokens(VpcPoint3D& point) {
    const auto v = ScanValues<4>();
    setPointValues(point, v[0], v[1], v[2], 0, 0, 0, v[3], scanIndex, 1.0);
}

void PtsIO::AddPoint6Tokens(VpcPoint3D& point) {
    const auto v = ScanValues<6>();
    const double intensity = (v[3] + v[4] + v[5]) / 3.0;
    setPointValues(point, v[0], v[1], v[2], v[3], v[4], v[5], intensity, scanIndex, 1.0);
}

void PtsIO::AddPoint7Tokens(VpcPoint3D& point) {
    const auto v = ScanValues<7>();
    setPointValues(point, v[0], v[1], v[2], v[4], v[5], v[6], v[3], scanIndex, 1.0);
}

void PtsIO::Write(std::vector<VpcPoint3D> points, wxString path, bool colorByElevation) {
    vpc::writeBestEffort(
        path, [&](vpc::TextFileWriter& file) { WriteTo(file, points, colorByElevation); });
}

void PtsIO::WriteTo(vpc::TextFileWriter& file, const std::vector<VpcPoint3D>& points,
                    bool colorByElevation) {
    file << static_cast<unsigned long long>(points.size()) << "\n";
    VpcPoint3D low, high;
    if (colorByElevation) VpcSimplePointTools::DeterminePointsMinMaxPoints(points, low, high);
    for (const VpcPoint3D& p : points) {
        file << p.x << " " << p.y << " " << p.z << " ";
        if (colorByElevation) {
            double red = 0, green = 0, blue = 0;
            VpcColorTools::ApplyColorScheme(p.z, low.z, high.z, VPC_ColorScheme_Spectrum, red,
                                            green, blue);
            file << (p.z - low.z) * 255.0 / (high.z - low.z) << " ";
            file << red << " " << green << " " << blue << "\n";
        } else {
            file << static_cast<unsigned long long>(p.red) << " "
                 << static_cast<unsigned long long>(p.green) << " "
                 << static_cast<unsigned long long>(p.blue) << "\n";
        }
    }
}
