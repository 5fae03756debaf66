#pragma once

#include <concepts>
#include <string>
#include <utility>

#include <wx/string.h>

/// Three values of one type: a step down the tree, or one list an axis.
template <class T>
class VpcTriplet {
public:
    T first{};
    T second{};
    T third{};

    VpcTriplet() = default;
    VpcTriplet(T a, T b, T c) : first(std::move(a)), second(std::move(b)), third(std::move(c)) {}

    bool operator==(const VpcTriplet&) const = default;

    /// "-first-second-third--". The width is part of the interface but numbers are never padded.
    wxString ToString([[maybe_unused]] unsigned long long width)
        const requires std::same_as<T, unsigned long long> {
        return wxString::FromAscii(("-" + std::to_string(first) + "-" + std::to_string(second) +
                                    "-" + std::to_string(third) + "--")
                                       .c_str());
    }
};
