#include "io/TextScanIO.h"

#include "core/util/FileTools.h"

bool TextScanIO::OpenStream() {
    stream.reset();
    stream.reset(std::fopen(FileTools::ToNativePath(fileName).c_str(), "r+"));
    scanner_.Attach(stream.get());
    opened = stream != nullptr;
    return opened;
}

bool TextScanIO::closeRead() {
    scanner_.Attach(nullptr);
    stream.reset();
    return true;
}
