#pragma once

#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "io/FileParentIO.h"
#include "support/TempFolder.h"

namespace vpc::test {

/// Everything that a reader delivers from one file.
struct Delivered {
    bool opened = false;
    std::vector<VpcPoint3D> points;
    /// The number of points in each batch.
    std::vector<unsigned long long> batches;
};

/// Reads a file as every caller does. Stops after a number of batches that no test has, so that a
/// reader that never ends fails its test.
inline Delivered readAll(FileParentIO& reader, const std::filesystem::path& path) {
    Delivered result;
    result.opened = reader.initializeRead(toWx(path)) != nullptr;
    while (result.opened && reader.pointsRemaining != 0 && result.batches.size() < 10000) {
        const unsigned long long n = reader.nextPointBatch();
        result.batches.push_back(n);
        result.points.insert(result.points.end(), reader.pointBuffer, reader.pointBuffer + n);
    }
    if (result.opened) reader.closeRead();
    return result;
}

/// Values joined by blanks, with a decimal point whatever the locale is.
template <class... Values>
std::string joined(Values... values) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    const char* separator = "";
    ((text << separator << values, separator = " "), ...);
    return text.str();
}

/// A point's values in one line: coordinates, colour, intensity, source index, last value.
inline std::string describe(const VpcPoint3D& p) {
    return joined(p.x, p.y, p.z, '/', p.red, p.green, p.blue, '/', p.intensity, '/', p.sourceIndex,
                  '/', p.scannerDistance);
}

inline std::vector<std::string> describe(const std::vector<VpcPoint3D>& points) {
    std::vector<std::string> lines;
    for (const VpcPoint3D& p : points) lines.push_back(describe(p));
    return lines;
}

template <class Corner>
std::string describeBox(const Corner& low, const Corner& high) {
    return joined(low.x, low.y, low.z, '-', high.x, high.y, high.z);
}

inline std::string extentOf(const FileParentIO& reader) {
    return describeBox(reader.extentMin, reader.extentMax);
}

/// The extent of a reader that has read no point.
inline const std::string emptyExtent = "1e+65 1e+65 1e+65 - -1e+65 -1e+65 -1e+65";

}  // namespace vpc::test
