#include "io/LasPointCount.h"

#include <algorithm>

#include <wx/translation.h>

#include "io/LasIO.h"

namespace vpc {

LasPointCount::LasPointCount(const wxString& file, unsigned long long bytes) {
    LasIO reader(1);
    if (!reader.readHeader(file, true)) {
        const wxString why = wxString(reader.errorMessage).Trim(true).Trim(false);
        fault = wxString::Format(
            wxGetTranslation("cannot be used: %s (give a LAS file of version 1.0 to 1.4)"), why);
        return;
    }
    claimed = reader.numberOfPoints;
    const unsigned long long start = reader.offsetToPointData;
    const unsigned long long length = reader.pointDataRecordLength;
    const unsigned long long records = length == 0 || bytes < start ? 0 : (bytes - start) / length;
    held = std::min(records, claimed);
}

}  // namespace vpc
