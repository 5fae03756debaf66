#include "io/TextScanIO.h"

#include <cerrno>

#include "core/util/FileTools.h"

bool TextScanIO::OpenStream() {
    stream.reset();
    stream.reset(std::fopen(FileTools::ToNativePath(fileName).c_str(), "r+"));
    scanner_.Attach(stream.get());
    opened = stream != nullptr;
    openError = opened ? 0 : errno;
    return opened;
}

bool TextScanIO::closeRead() {
    scanner_.Attach(nullptr);
    stream.reset();
    return true;
}
