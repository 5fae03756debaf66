#include "vpc/scan/ScanFile.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "io/FileIoFactory.h"
#include "io/LasPointCount.h"
#include "tree/construct/PrepareChecks.h"
#include "vpc/common/Command.h"
#include "vpc/common/Counted.h"
#include "vpc/common/FileKind.h"
#include "vpc/scan/TextScanCopy.h"

namespace vpc {

namespace {

namespace fs = std::filesystem;
using Kind = ScanFault::Kind;

constexpr const char* anotherWork = "; make room or name another folder with --work";

std::string extensionOf(VpcDataFormat format) {
    return format == DataFormat_LAS ? ".las" : format == DataFormat_PTX ? ".ptx" : ".pts";
}

std::string withCommand(const std::string& advice, const std::string& command) {
    return command.empty() ? advice : advice + ": " + command;
}

}  // namespace

ScanFile::ScanFile(const std::string& name, TextScanCheck::Rules rules)
    : name_(name), rules_(rules), source_(fs::absolute(name).string()) {
    try {
        Look();
    } catch (const ScanFault& fault) {
        fault_ = fault;
    } catch (const IoError& failure) {
        fault_ = ScanFault(Kind::Unusable, FileTools::ToNativePath(failure.Problem()),
                           "check its disk or its network");
    }
}

ScanFile::MadeFile::~MadeFile() {
    unlink(path_.c_str());
}

void ScanFile::Look() {
    const wxString file = FileTools::FromNativePath(name_);
    if (const auto finding = PrepareChecks::FaultOfFile(file))
        throw ScanFault(Kind::Unusable, FileTools::ToNativePath(finding->problem),
                        FileTools::ToNativePath(finding->remedy));
    std::error_code ignored;  // what cannot be read is told of in a moment
    bytes_ = fs::file_size(name_, ignored);
    const FileKind kind = FileKind::Of(name_);
    switch (kind.type) {
        case FileKind::Type::Las:
            return LookAtLas();
        case FileKind::Type::Text:
            return LookAtText();
        case FileKind::Type::Tree:
            throw ScanFault(Kind::Unusable,
                            "is " + kind.name + ", which a scan becomes when it is prepared",
                            withCommand("see what is in it", kind.command));
        case FileKind::Type::Foreign:
            throw ScanFault(Kind::Unusable, "is " + kind.name + ", which vpc does not read",
                            withCommand("convert it first", kind.command));
        case FileKind::Type::Picture:
        case FileKind::Type::Unknown:
            break;
    }
    throw ScanFault(Kind::Unusable, "is " + kind.name, "give LAS, PTS or PTX scans");
}

void ScanFile::LookAtLas() {
    format_ = DataFormat_LAS;
    const LasPointCount count(FileTools::FromNativePath(name_), bytes_);
    if (!count.fault.empty())
        throw ScanFault(Kind::Unusable, FileTools::ToNativePath(count.fault), "");
    if (count.claimed == 0)
        throw ScanFault(Kind::Empty, "has a LAS header but holds no points", "get a complete copy");
    points_ = count.held;
    if (count.held == 0)
        throw ScanFault(
            Kind::Empty,
            "holds none of the " + counted(count.claimed, "point") + " that its header claims",
            "get a complete copy");
    if (count.held < count.claimed && !rules_.allowIncomplete)
        throw ScanFault(Kind::Incomplete,
                        "lacks " + std::to_string(count.claimed - count.held) + " of the " +
                            counted(count.claimed, "point") + " that its header claims",
                        "get a complete copy");
}

void ScanFile::LookAtText() {
    dialect_ = TextDialect::Of(name_);
    format_ = dialect_->format;
    points_ = PrepareChecks::EstimatedTextPoints(bytes_);
    if (rules_.strict && !dialect_->IsPlain()) {
        std::string list;
        for (const std::string& words : dialect_->Particulars(dialect_->linesBefore))
            list += (list.empty() ? "" : ", ") + words;
        throw ScanFault(Kind::Unusable, "is not plain text (" + list + ")",
                        "leave out --text strict to have it read");
    }
    // The library opens texts for update, though it changes none. A copy can always be opened.
    needsCopy_ = !dialect_->IsPlain() || access(name_.c_str(), W_OK) != 0;
}

void ScanFile::Check(const std::string& newName, const TextScanCheck::Progress& progress) {
    if (fault_) return;
    if (IsText()) {
        try {
            CheckText(newName, progress);
        } catch (const ScanFault& fault) {
            fault_ = fault;
        } catch (const IoError& failure) {
            fault_ = ScanFault(Kind::Unusable, FileTools::ToNativePath(failure.Problem()),
                               "check its disk or its network");
        }
    }
    const bool isNamedSo =
        FileIoFactory::GetDataFormat(FileTools::FromNativePath(source_)) == format_;
    if (!fault_ && !isNamedSo) Link(newName + extensionOf(format_));
}

void ScanFile::CheckText(const std::string& newName, const TextScanCheck::Progress& progress) {
    TextScanAccount account;
    if (!needsCopy_) account = TextScanCheck::Run(name_, *dialect_, rules_, nullptr, progress);
    if (needsCopy_ || !account.isPlain) account = Copy(newName + extensionOf(format_), progress);
    points_ = account.points;
    Say(account);
}

TextScanAccount ScanFile::Copy(const std::string& target, const TextScanCheck::Progress& progress) {
    made_ = std::make_unique<MadeFile>(target);
    try {
        TextScanCopy copy(target);
        TextScanAccount account = TextScanCheck::Run(name_, *dialect_, rules_, &copy, progress);
        copy.Close();
        source_ = target;
        return account;
    } catch (const IoError& failure) {
        if (FileTools::ToNativePath(failure.File()) != target) throw;
        throw CommandError("the cleaned copy of '" + name_ + "' " +
                           FileTools::ToNativePath(failure.Problem()) + anotherWork);
    }
}

void ScanFile::Link(const std::string& target) {
    std::error_code error;
    fs::create_symlink(source_, target, error);
    if (error)
        throw CommandError("'" + name_ + "' is " +
                           (format_ == DataFormat_LAS ? "a LAS scan" : "a text scan") +
                           " under another extension and cannot be linked in the folder for "
                           "temporary files (" +
                           error.message() + "); name it '" + extensionOf(format_) + "'");
    made_ = std::make_unique<MadeFile>(target);
    source_ = target;
}

void ScanFile::Say(const TextScanAccount& account) {
    const std::string file = "'" + name_ + "'";
    std::string list;
    for (const std::string& words : dialect_->Particulars(account.wordLines))
        list += (list.empty() ? " " : ", ") + words;
    const std::string held = format_ == DataFormat_PTX ? std::to_string(account.points) + " cells"
                                                       : counted(account.points, "point");
    if (!list.empty()) notes_.push_back(file + ":" + list + ": " + held);
    const auto warn = [&](unsigned long long count, const std::string& rest) {
        if (count != 0) warnings_.push_back(file + " " + rest);
    };
    warn(account.missing,
         "lacks " + counted(account.missing, "point") + " that it claims; it is read without them");
    warn(account.surplus,
         "has " + counted(account.surplus, "point") + " more than it claims, read with the others");
    warn(account.badLines, "has " + counted(account.badLines, "line") +
                               " left out that cannot be read: " + account.firstBadLine);
    warn(account.oddColours,
         "has colours that are no whole numbers from 0 to 65535 in " +
             counted(account.oddColours, "line") + ", line " +
             std::to_string(account.firstOddColour) +
             " being the first; fractions are cut off and the rest wraps round");
}

}  // namespace vpc
