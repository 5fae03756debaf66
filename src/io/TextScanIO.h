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

    vpc::TextScanner scanner_;
};
