#include "support/ScanFiles.h"

#include <cmath>
#include <locale>
#include <random>
#include <sstream>

#include "support/LasBuilder.h"
#include "support/TempFolder.h"

namespace vpc::test {

namespace {

/// A text whose numbers come back as the very same doubles, whatever the locale.
std::ostringstream numberText() {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(17);
    return text;
}

}  // namespace

std::vector<PointRecord> makeCloud(const Cloud& cloud) {
    std::mt19937_64 engine(cloud.seed);
    std::uniform_real_distribution<double> unit(0, 1);
    std::uniform_int_distribution<unsigned> colour(0, cloud.largestColour);
    std::vector<PointRecord> points(cloud.points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        PointRecord& p = points[i];
        p.x = 100 * unit(engine), p.y = 70 * unit(engine), p.z = 40 * unit(engine);
        const double spread = i % 3 == 0 ? 0.5 : 1e-3;
        switch (cloud.shape) {
            case CloudShape::Uniform:
                break;
            case CloudShape::Clusters:
                p.x = 50.0 * static_cast<double>(i % 5) + spread * p.x;
                p.y = 30.0 * static_cast<double>(i % 3) + spread * p.y;
                p.z *= spread;
                break;
            case CloudShape::Flat:
                p.z = -3.25;
                break;
            case CloudShape::Line:
                p.x = -7, p.y = 0.1;
                break;
            case CloudShape::Duplicates:
                if (i % 4 != 0) p = points[i / 4 * 4];
                break;
            case CloudShape::FarAway:
                p.x += 5e6, p.y -= 6e6, p.z *= 1e-4;
                break;
            case CloudShape::Corner:
                p.y /= 0.7, p.z /= 0.4;
                if (i % 3 == 0) p.x /= 4, p.y /= 4;
        }
        p.red = static_cast<std::uint16_t>(colour(engine));
        p.green = static_cast<std::uint16_t>(colour(engine));
        p.blue = static_cast<std::uint16_t>(colour(engine));
        p.intensity = 4000 * unit(engine) - 2000;
    }
    return points;
}

std::vector<PointRecord> writeLas(const std::filesystem::path& path, const LasLayout& layout,
                                  const std::vector<PointRecord>& points, int sourceIndex) {
    LasBuilder file;
    file.versionMinor = layout.minorVersion;
    file.format = layout.format;
    file.recordLength = LasBuilder::lengthOfFormat(layout.format) + layout.extraBytes;
    file.scale.fill(layout.scale);
    file.offset.fill(layout.offset);
    file.gap = lasGap;
    /// Rounds a value to the grid; gives the steps from its origin.
    const auto toGrid = [&](double& value) {
        const long steps = std::lround((value - layout.offset) / layout.scale);
        value = static_cast<double>(steps) * layout.scale + layout.offset;
        return static_cast<std::int32_t>(steps);
    };
    std::vector<PointRecord> delivered = points;
    for (PointRecord& p : delivered) {
        const auto intensity = static_cast<std::int16_t>(std::lround(p.intensity));
        const auto grey = static_cast<std::uint16_t>(intensity);
        file.points.push_back(
            {toGrid(p.x), toGrid(p.y), toGrid(p.z), grey, p.red, p.green, p.blue});
        if (LasBuilder::colourOffset(layout.format) == 0) p.red = p.green = p.blue = grey;
        p.intensity = intensity;
        p.scannerDistance = 1;
        p.sourceIndex = sourceIndex;
    }
    writeBytes(path, file.bytes());
    return delivered;
}

std::vector<PointRecord> writePts(const std::filesystem::path& path, int columns,
                                  const std::vector<std::vector<PointRecord>>& blocks,
                                  int sourceIndex) {
    std::ostringstream file = numberText();
    std::vector<PointRecord> delivered;
    for (const auto& block : blocks) {
        file << block.size() << "\n";
        for (PointRecord p : block) {
            file << p.x << " " << p.y << " " << p.z;
            if (columns == 4 || columns == 7) file << " " << p.intensity;
            if (columns >= 6) file << " " << p.red << " " << p.green << " " << p.blue;
            file << "\r\n";
            if (columns < 6) p.red = p.green = p.blue = 0;
            if (columns == 3) p.intensity = 0;
            if (columns == 6) p.intensity = (p.red + p.green + p.blue) / 3.0;
            p.scannerDistance = 1;
            p.sourceIndex = sourceIndex;
            delivered.push_back(p);
        }
    }
    writeBytes(path, file.str());
    return delivered;
}

std::vector<PointRecord> writePtx(const std::filesystem::path& path,
                                  const std::vector<PtxScan>& scans, int sourceIndex) {
    std::ostringstream file = numberText();
    std::vector<PointRecord> delivered;
    for (const PtxScan& scan : scans) {
        const auto& m = scan.transform;
        file << 1 << "\n" << scan.points.size() << "\n";
        file << "1.5 2.5 3.5\n1 0 0\n0 1 0\n0 0 1\n";
        for (std::size_t row = 0; row < 4; ++row)
            file << m[3 * row] << " " << m[3 * row + 1] << " " << m[3 * row + 2]
                 << (row == 3 ? " 1\n" : " 0\n");
        for (std::size_t i = 0; i < scan.points.size(); ++i) {
            PointRecord p = scan.points[i];
            const bool isEmpty = scan.emptyEvery != 0 && i % scan.emptyEvery == 0;
            if (isEmpty) p.x = p.y = p.z = 0;
            file << p.x << " " << p.y << " " << p.z << " " << p.intensity;
            if (scan.hasColour) file << " " << p.red << " " << p.green << " " << p.blue;
            file << "\n";
            if (isEmpty) continue;
            if (!scan.hasColour) p.red = p.green = p.blue = 0;
            const bool isIdentity = m == PtxScan().transform;
            p.scannerDistance = isIdentity ? 1.0 : std::sqrt(p.x * p.x + p.y * p.y + p.z * p.z);
            const double x = p.x, y = p.y, z = p.z;
            p.x = x * m[0] + y * m[3] + z * m[6] + m[9];
            p.y = x * m[1] + y * m[4] + z * m[7] + m[10];
            p.z = x * m[2] + y * m[5] + z * m[8] + m[11];
            p.sourceIndex = sourceIndex;
            delivered.push_back(p);
        }
    }
    writeBytes(path, file.str());
    return delivered;
}

}  // namespace vpc::test
