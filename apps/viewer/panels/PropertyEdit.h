#pragma once

#include "viewer/engine/Property.h"

namespace vpc::viewer {

/// A value that the user gives to a property.
struct PropertyEdit {
    Property property;
    Property::Value value;
};

}  // namespace vpc::viewer
