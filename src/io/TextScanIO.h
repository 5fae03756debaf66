#pragma once

#include "core/util/FileHandle.h"
#include "core/util/TextScanner.h"
#include "io/FileParentIO.h"

/// What the readers of text scans share: the open file and the scanner over it.
class TextScanIO : public FileParentIO {
public:
    using FileParentIO::FileParentIO;

    /// Text scans have no header of their own: does nothing and returns false.
    bool readHeader(wxString, bool) override { return false; }
    bool closeRead() override;

    /// The open file; null when closed. The scanner reads ahead, so the stream's position means
    /// nothing.
    vpc::FileHandle stream;

protected:
    /// Opens fileName for reading and update; false when that fails.
    [[nodiscard]] bool OpenStream();
    /// Throws where a read of the file has failed: to the scanner that is like the text's end.
    void RequireReadable() const {
        if (stream != nullptr && std::ferror(stream.get()) != 0)
            FailReading(scanner_.SystemError());
    }
    /// Notes a line whose text, from `start` on, is not the count that it should begin with. Where
    /// the text has ended and had a count before, all is well.
    void NoteNoCount(bool hasText, unsigned long long start);
    /// Notes a point of which the text gave only the first `scanned` values.
    [[gnu::cold]] void NoteMissingValues(std::size_t scanned);
    /// Notes a point that ends within a line.
    [[gnu::cold]] void NoteOddLine();
    /// Notes the value that the last scan could not read, unless the text has ended.
    void NoteUnreadableValue();

    vpc::TextScanner scanner_;
};
