#include "PtsSampleWriter.h"

#include "SampleFlight.h"
#include "TextLine.h"

namespace vpc {

namespace {

TextLine lineOf(const SamplePoint& point) {
    TextLine line;
    line.AddRounded(point.x);
    line.AddRounded(point.y);
    line.AddRounded(point.z);
    line.Add(point.intensity / 8 - 2048);  // scanners give -2048 to 2047
    for (const int channel : {point.red, point.green, point.blue}) line.Add(channel >> 8);
    line.End();
    return line;
}

}  // namespace

void PtsSampleWriter::Write(OutputFile& file) {
    file.Write(std::to_string(Points()) + "\n");
    SampleFlight flight(Points(), Seed());
    for (unsigned long long i = 0; i < Points(); ++i) {
        CheckInterrupt(i);
        const TextLine line = lineOf(flight.Next());
        file.Write(line.Data(), line.Size());
    }
}

}  // namespace vpc
