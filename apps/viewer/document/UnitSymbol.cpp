#include "viewer/document/UnitSymbol.h"

#include "core/util/DrawingUnits.h"

namespace vpc::viewer {

std::string unitSymbol(const std::string& name) {
    const auto code = DrawingUnits::Parse(name);
    return code ? DrawingUnits::Symbol(*code) : name;
}

}  // namespace vpc::viewer
