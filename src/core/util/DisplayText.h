#pragma once

#include <string>

namespace vpc {

/// Numbers as people like to read them, with a decimal point whatever the locale says.
class DisplayText {
public:
    /// The shortest text that reads back as the same value.
    static std::string Exact(double value);
    /// Three digits and the thousands' unit: "1.25 M", "310 k", "42".
    static std::string Short(double value);
    /// A number of bytes: "1.25 GB", "310 kB", "42 bytes".
    static std::string Bytes(unsigned long long bytes);
    /// A span of time: "42 s", "3:07 min", "1:02:05 h".
    static std::string Duration(double seconds);
};

}  // namespace vpc
