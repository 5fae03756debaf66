#pragma once

#include <string>

namespace vpc {

/// What a file is by its first bytes, whatever its name is.
struct FileKind {
    enum class Type {
        Las,
        Text,
        Tree,     ///< a point tree file, of any version
        Picture,  ///< a PNG file
        Foreign,  ///< something that other programs make points of
        Unknown
    };

    Type type = Type::Unknown;
    /// In words that may follow "is": "a LAS scan".
    std::string name;
    /// The command that makes a scan or a tree file of it; empty where there is none.
    std::string command;

    /// Throws IoError where the file cannot be read.
    static FileKind Of(const std::string& file);
};

}  // namespace vpc
