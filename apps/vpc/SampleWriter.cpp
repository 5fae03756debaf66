#include "SampleWriter.h"

#include "Interrupt.h"

namespace vpc {

void SampleWriter::CheckInterrupt(unsigned long long point) {
    if (point % 65536 == 0) Interrupt::Check();
}

}  // namespace vpc
