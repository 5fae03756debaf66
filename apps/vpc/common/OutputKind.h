#pragma once

#include <string>

namespace vpc {

/// What a file is, by its content and not by its name.
enum class FileKind {
    empty,
    tree,
    las,
    ply,
    png,
    pts,
    ptx,
    /// Lines of numbers with blanks between, as .xyz files have.
    pointLines,
    /// Lines of numbers with commas between.
    csv,
    other,
};

/// Judges a file by its first bytes. What is not there or cannot be read is `other`.
FileKind kindOfFile(const std::string& path);

/// Throws CommandError where there is a regular file of that name already that is neither empty nor
/// of `kind`: it may be dear to somebody. With `force` it may be replaced. (What is no regular file
/// never is: see ReplacementFile.)
void requireReplaceable(const std::string& output, FileKind kind, bool force);

/// Throws CommandError where `output` is the very file `input`, under whatever name. `whatInputIs`
/// follows "is", as "the tree file itself".
void requireOtherFile(const std::string& output, const std::string& input,
                      const std::string& whatInputIs);

}  // namespace vpc
