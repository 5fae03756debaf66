#pragma once

#include <memory>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/util/VpcDefinitions.h"
#include "io/FileParentIO.h"
#include "io/ScanSummary.h"

/// Tells formats apart, creates readers, and reads whole inputs once before a tree is built.
class FileIoFactory {
public:
    /// How many points a batch holds throughout the system.
    static constexpr unsigned long long defaultBatchCapacity = 100000;

    /// The format that the file's extension names, all lower or all upper case.
    [[nodiscard]] static VpcDataFormat GetDataFormat(const wxString& fileName);
    /// A new reader, or null for an unknown format.
    [[nodiscard]] static std::unique_ptr<FileParentIO> Create(VpcDataFormat format,
                                                              unsigned long long batchCapacity);
    /// True when a colour channel in the first batch of the first file exceeds 255. Takes a known
    /// format and at least one file; leaves `message` alone.
    ///
    /// \param openedBefore the first file could be opened: that it cannot be any more throws
    ///                     vpc::IoError, as a read error does
    [[nodiscard]] static bool DetermineIs16bitColor(const std::vector<wxString>& files,
                                                    VpcDataFormat format, wxString& message,
                                                    bool openedBefore = false);
    /// Sets `box` to the common bounding box of all points of all files; a file that delivers no
    /// point with finite coordinates adds nothing, and where none does `box` stays as it was.
    ///
    /// Returns false when a file cannot be read or when a text file claims more points than it has
    /// bytes, with the reason in `message`; also when `progress` asks to stop and for an unknown
    /// format, which leaves `message` alone. On success `message` holds the sentences of the files'
    /// accounts, one a line, and is left alone where every byte of every file was accounted for.
    [[nodiscard]] static bool DetermineMultipleBoundingBox(
        const std::vector<wxString>& files, VpcDataFormat format, VpcBoundingBoxAxisAligned& box,
        wxString& message, ScanSummary* summary = nullptr, const ScanProgress& progress = {});
};
