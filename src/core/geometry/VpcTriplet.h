#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <utility>

#include <wx/string.h>

/// Three values of one type, such as a step down the tree or one list for each axis.
template <class T>
class VpcTriplet {
public:
    T first{};
    T second{};
    T third{};

    VpcTriplet() = default;
    VpcTriplet(T a, T b, T c) : first(std::move(a)), second(std::move(b)), third(std::move(c)) {}

    bool operator==(const VpcTriplet&) const = default;

    /// "-first-second-third--". The width is part of the interface, but numbers are never padded.
    wxString ToString([[maybe_unused]] unsigned long long width)
        const requires std::same_as<T, unsigned long long> {
        std::string text;
        for (const unsigned long long number : {first, second, third}) {
            text += '-';
            text += std::to_string(number);
        }
        return wxString::FromAscii((text += "--").c_str());
    }
};
