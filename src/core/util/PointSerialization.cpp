// Packs points into the buffer of a stream and unpacks them. The code stands here and not beside
// the point because geometry must not depend on files.

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
