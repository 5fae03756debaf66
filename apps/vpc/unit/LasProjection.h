#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace vpc {

/// What a LAS file says about the system of its coordinates, as it stands in the file: the values
/// of its GeoTIFF keys and its WKT text. They come from the variable-length records before the
/// points and, from version 1.4 on, from those behind them.
class LasProjection {
public:
    /// Reads a file, whose name is in the system's encoding. What is damaged or cannot be read is
    /// left out; a file that is no LAS file says nothing.
    static LasProjection Read(const std::string& file);

    /// The value of a key that holds a short integer; nothing where the file does not give it, or
    /// gives it as undefined (0).
    std::optional<int> Code(int key) const;
    /// The value of a key that holds a number.
    std::optional<double> Number(int key) const;
    /// Empty where there is none.
    const std::string& Wkt() const { return wkt_; }
    /// Whether the header says that the WKT text counts and not the keys.
    bool PrefersWkt() const { return prefersWkt_; }
    /// The largest easting or northing that the header's bounds name, as a positive number; 0 where
    /// they name none.
    double LargestCoordinate() const { return largestCoordinate_; }

private:
    class Reader;

    std::map<int, int> codes_;
    std::map<int, double> numbers_;
    std::string wkt_;
    bool prefersWkt_ = false;
    double largestCoordinate_ = 0.0;
};

}  // namespace vpc
