#include "vpc/unit/ScanUnit.h"

#include <cmath>

#include "core/util/DisplayText.h"
#include "vpc/unit/LasProjection.h"
#include "vpc/unit/ProjDatabase.h"

namespace vpc {

namespace {

/// The GeoTIFF keys that have to do with units.
enum GeoKey : int {
    modelType = 1024,
    geographicSystem = 2048,
    projectedSystem = 3072,
    projectedUnit = 3076,
    projectedUnitLength = 3077,
    verticalSystem = 4096,
    verticalUnit = 4099
};
constexpr int geographicModel = 2;
/// The value of a key that leaves it to other keys to say what is meant.
constexpr int userDefined = 32767;

constexpr const char* byKeys = "its GeoTIFF keys";
constexpr const char* byWkt = "its WKT";

std::string byCode(int code) {
    return "its system EPSG:" + std::to_string(code);
}

/// Collects what the parts of a LAS file say, the part to go by first.
class Statements {
public:
    Statements(const LasProjection& las, ProjDatabase& database, ScanUnit& result)
        : las_(las), database_(database), result_(result) {}

    void Collect() {
        if (las_.PrefersWkt()) CollectWkt();
        CollectKeys();
        if (!las_.PrefersWkt()) CollectWkt();
    }

private:
    using Unit = std::optional<CoordinateUnit>;

    static void Add(std::vector<ScanUnit::Statement>& statements, const Unit& unit,
                    const std::string& source) {
        if (unit) statements.push_back({*unit, source});
    }
    void AddHorizontal(const Unit& unit, const std::string& source) {
        Add(result_.horizontal, unit, source);
        if (!unit) result_.unknown = source;
    }
    void Add(const SystemUnits& units, const std::string& source) {
        AddHorizontal(units.horizontal, source);
        Add(result_.vertical, units.vertical, source);
    }

    void CollectWkt() {
        if (!las_.Wkt().empty()) Add(database_.SystemOfWkt(las_.Wkt()), byWkt);
    }

    void CollectKeys() {
        if (las_.Code(projectedUnit) || las_.Number(projectedUnitLength))
            AddHorizontal(LinearUnit(), byKeys);
        if (const auto code = SystemCode(projectedSystem))
            Add(database_.SystemOfCode(*code), byCode(*code));
        if (IsGeographic()) Add(result_.horizontal, CoordinateUnit{"degree", 0.0}, byKeys);
        if (const auto code = las_.Code(verticalUnit))
            Add(result_.vertical, database_.UnitOfCode(*code), byKeys);
        if (const auto code = SystemCode(verticalSystem))
            Add(result_.vertical, database_.SystemOfCode(*code).vertical, byCode(*code));
    }

    Unit LinearUnit() const {
        const auto code = las_.Code(projectedUnit);
        if (code && *code != userDefined) return database_.UnitOfCode(*code);
        const auto length = las_.Number(projectedUnitLength);
        if (!length || !std::isfinite(*length) || *length <= 0.0) return std::nullopt;
        return CoordinateUnit{DisplayText::Exact(*length) + " m", *length};
    }

    std::optional<int> SystemCode(GeoKey key) const {
        const auto code = las_.Code(key);
        return code == userDefined ? std::nullopt : code;
    }

    /// Without a model, a file that names a geographic system and nothing projected is one.
    bool IsGeographic() const {
        if (const auto model = las_.Code(modelType)) return *model == geographicModel;
        return las_.Code(geographicSystem) && !las_.Code(projectedSystem) &&
               !las_.Code(projectedUnit);
    }

    const LasProjection& las_;
    ProjDatabase& database_;
    ScanUnit& result_;
};

}  // namespace

ScanUnit ScanUnit::Read(const std::string& file, ProjDatabase& database) {
    const LasProjection las = LasProjection::Read(file);
    ScanUnit unit;
    unit.largestCoordinate = las.LargestCoordinate();
    Statements(las, database, unit).Collect();
    return unit;
}

}  // namespace vpc
