#include "core/geometry/VpcPoint3D.h"

#include <ostream>
#include <string>

#include "core/geometry/NumberText.h"

wxString VpcPoint3D::ToString(bool bracketed) const {
    const std::string tx = vpc::fixedText(x);
    const std::string ty = vpc::fixedText(y);
    const std::string tz = vpc::fixedText(z);
    const std::string text =
        bracketed ? " ( " + tx + ", " + ty + ", " + tz + " ) " : tx + "\t" + ty + "\t" + tz;
    return wxString::FromAscii(text.c_str());
}

std::ostream& operator<<(std::ostream& out, const VpcPoint3D& p) {
    return out << p.ToString(false).utf8_str();
}

std::wostream& operator<<(std::wostream& out, const VpcPoint3D& p) {
    return out << p.ToString(false).ToStdWstring();
}
