#pragma once

#include <stdexcept>
#include <string>

namespace vpc {

/// What is wrong with a scan; thrown where it is found.
class ScanFault : public std::runtime_error {
public:
    enum class Kind {
        Unusable,    ///< nothing helps but another file
        Incomplete,  ///< a part of it is missing or cannot be read; the rest can be used
        Empty        ///< there is no point in it
    };

    /// \param problem words that may follow the file's name: "is empty"
    /// \param remedy  what the user can do, besides what the program's options offer
    ScanFault(Kind kind, const std::string& problem, const std::string& remedy)
        : std::runtime_error(problem), kind_(kind), remedy_(remedy) {}

    Kind Which() const { return kind_; }
    std::string Problem() const { return what(); }
    const std::string& Remedy() const { return remedy_; }

private:
    Kind kind_;
    std::string remedy_;
};

}  // namespace vpc
