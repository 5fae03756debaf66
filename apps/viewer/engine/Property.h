#pragma once

#include <string>
#include <variant>
#include <vector>

namespace vpc::viewer {

/// A line of the property palette, as the plug-in's extension tells it. Texts are UTF-8.
struct Property {
    using Value = std::variant<std::monostate, bool, long long, double, std::string>;

    // The ids of those that the viewer itself asks for.
    static constexpr int stylization = 3;
    static constexpr int colourScheme = 4;

    int id = 0;
    std::string name;
    std::string category;
    /// Empty where there is none to choose from; otherwise the value is a number among them.
    std::vector<std::string> choices;
    /// Nothing where the property has no value now.
    Value value;
    /// Whether the extension takes another value.
    bool canBeSet = false;
};

/// A value that a property is to have.
struct PropertyValue {
    int property = 0;
    Property::Value value;
};

}  // namespace vpc::viewer
