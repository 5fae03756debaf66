#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/util/VpcDefinitions.h"
#include "vpc/scan/ScanFault.h"
#include "vpc/scan/TextDialect.h"
#include "vpc/scan/TextScanCheck.h"

namespace vpc {

/// One scan of a run: what it is by its content, what is wrong with it, and the file from which the
/// library reads it. That is the scan itself where its name and its text are as the library wants
/// them; else a link or a cleaned copy, which this object removes at its end.
class ScanFile {
public:
    /// Looks at the file's beginning.
    ScanFile(const std::string& name, TextScanCheck::Rules rules);

    /// The name that the user knows.
    const std::string& Name() const { return name_; }
    VpcDataFormat Format() const { return format_; }
    unsigned long long Bytes() const { return bytes_; }
    bool IsText() const { return dialect_.has_value(); }
    /// Points that a LAS scan holds; about how many, for a text.
    unsigned long long Points() const { return points_; }
    /// The most bytes of the copy that will have to be made, as far as its beginning tells.
    unsigned long long CopyBytes() const { return needsCopy_ ? bytes_ : 0; }
    const std::optional<ScanFault>& Fault() const { return fault_; }
    void SetFault(const ScanFault& fault) { fault_ = fault; }

    /// Reads a text to its end and checks it; makes the link or the copy, whose name is `newName`
    /// with an extension, where the library needs one. Throws CommandError where that fails.
    void Check(const std::string& newName, const TextScanCheck::Progress& progress);
    /// The full path of the file that the library is to read.
    const std::string& Source() const { return source_; }
    /// Sentences that say how the text was read; empty where it is plain.
    const std::vector<std::string>& Notes() const { return notes_; }
    /// Sentences that say what was lost or is doubtful.
    const std::vector<std::string>& Warnings() const { return warnings_; }

private:
    /// A file or link in the folder for temporary files.
    class MadeFile {
    public:
        explicit MadeFile(const std::string& path) : path_(path) {}
        ~MadeFile();
        MadeFile(const MadeFile&) = delete;
        MadeFile& operator=(const MadeFile&) = delete;

    private:
        std::string path_;
    };

    void Look();
    void LookAtLas();
    void LookAtText();
    void CheckText(const std::string& newName, const TextScanCheck::Progress& progress);
    TextScanAccount Copy(const std::string& target, const TextScanCheck::Progress& progress);
    void Link(const std::string& target);
    void Say(const TextScanAccount& account);

    std::string name_;
    TextScanCheck::Rules rules_;
    VpcDataFormat format_ = DataFormat_Unknown;
    unsigned long long bytes_ = 0;
    unsigned long long points_ = 0;
    std::optional<TextDialect> dialect_;
    bool needsCopy_ = false;
    std::optional<ScanFault> fault_;
    std::string source_;
    /// The link or the copy, if there is one.
    std::unique_ptr<MadeFile> made_;
    std::vector<std::string> notes_;
    std::vector<std::string> warnings_;
};

}  // namespace vpc
