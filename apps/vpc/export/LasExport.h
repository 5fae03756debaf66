#pragma once

#include <string>
#include <vector>

#include "vpc/export/ExportOutput.h"
#include "vpc/export/ExportSource.h"
#include "vpc/export/LasAxis.h"

namespace vpc {

/// Writes points as a LAS file: 1.2 with point format 2, or 1.4 with format 7 where there are more
/// points than 1.2 can count. The point source id is the number of the scan that a point came from,
/// from 1 on; 0 where that is not known.
class LasExport {
public:
    /// Measures the points; throws what ExportSource::ForEach throws.
    /// \param unit the unit's code among DrawingUnits
    LasExport(ExportSource& source, unsigned long long unit);

    void Write(const ExportOutput& out);
    /// Whether the file says its unit: where it is metres or feet, but not in LAS 1.4, which would
    /// have to say it in WKT.
    bool NamesUnit() const;
    /// What the file does not hold exactly: sentences for the user.
    std::vector<std::string> Warnings() const;

    /// The largest number of points of a LAS 1.2 file.
    static constexpr unsigned long long mostPoints12 = 4294967295ULL;

private:
    void ChooseAxes();
    void MeasureIntensities(std::span<const VpcPoint3D> batch);
    std::string Header() const;
    std::string UnitRecord() const;
    void AppendRecord(std::string& records, const VpcPoint3D& p) const;

    ExportSource& source_;
    unsigned long long unit_;
    bool isLarge_;
    std::array<LasAxis, 3> axes_;
    double coordinateError_ = 0.0;
    double intensityError_ = 0.0;
    unsigned long long inexactIntensities_ = 0;
};

}  // namespace vpc
