// A point's way through a stream's buffer. It is defined here and not beside the point, because
// geometry knows nothing of files.

#include "core/geometry/VpcPoint3D.h"
#include "core/util/FileBufferStream.h"

namespace {

unsigned long long advanceByRecord(FileBufferStream& stream) {
    stream.bufferCursor += VpcPoint3D::recordSize;
    return static_cast<unsigned long long>(stream.bufferCursor - stream.bufferStart);
}

}  // namespace

unsigned long long VpcPoint3D::Serialize(FileBufferStream& stream, bool eightBitColour) const {
    ToRecord(stream.bufferCursor, eightBitColour);
    return advanceByRecord(stream);
}

unsigned long long VpcPoint3D::DeSerialize(FileBufferStream& stream) {
    FromRecord(stream.bufferCursor);
    return advanceByRecord(stream);
}
