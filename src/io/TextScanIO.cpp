#include "io/TextScanIO.h"

#include <cerrno>

#include "core/util/FileTools.h"

bool TextScanIO::OpenStream() {
    stream.reset();
    stream.reset(std::fopen(FileTools::ToNativePath(fileName).c_str(), "r+e"));
    scanner_.Attach(stream.get());
    opened = stream != nullptr;
    openError = opened ? 0 : errno;
    return opened;
}

void TextScanIO::NoteNoCount(bool hasText, unsigned long long start) {
    using Kind = ScanFault::Kind;
    const bool isFirst = account_.claimedPoints == 0;
    if (hasText)
        account_.Note(isFirst ? Kind::NoCount : Kind::UnreadLines, start);
    else if (isFirst)
        account_.Note(Kind::NoText, start);
}

void TextScanIO::NoteMissingValues(std::size_t scanned) {
    ++(scanned == 0 ? pointsWithoutValues : account_.pointsCutShort);
    NoteUnreadableValue();
}

void TextScanIO::NoteOddLine() {
    account_.Note(ScanFault::Kind::OddLine, scanner_.PositionBefore(account_.valuesPerPoint));
}

void TextScanIO::NoteUnreadableValue() {
    const unsigned long long failed = scanner_.FailedAt();
    // Of a word that looked like a number at first, some characters have been consumed.
    if (failed != scanner_.Position() || scanner_.SkipWhiteSpace())
        account_.Note(ScanFault::Kind::NoNumber, failed);
}

bool TextScanIO::closeRead() {
    scanner_.Attach(nullptr);
    stream.reset();
    return true;
}
