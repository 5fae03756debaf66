#pragma once

#include <string>

namespace vpc {

/// What a file is, by its content and not by its name.
enum class OutputKind {
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
OutputKind kindOfExisting(const std::string& path);

/// Throws CommandError where there is a regular file of that name already that is neither empty nor
/// of `kind`: it may be dear to somebody. (What is no regular file is never replaced: see
/// ReplacementFile.)
void requireReplaceable(const std::string& output, OutputKind kind);
/// The same for an output whose name has to be that of its kind already: only what is known to be
/// of another kind stays, as a scan that was given a wrong name.
void requireNoOtherScan(const std::string& output, OutputKind kind);
/// Throws CommandError, which advises --force, where there is a file of that name already that is
/// not empty: whoever writes scans could write over somebody's only one.
void requireNoFile(const std::string& output);

/// Throws CommandError where `output` is the very file `input`, under whatever name. `whatInputIs`
/// follows "is", as "the tree file itself".
void requireOtherFile(const std::string& output, const std::string& input,
                      const std::string& whatInputIs);

}  // namespace vpc
