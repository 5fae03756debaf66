#include "vpc/export/PlyExport.h"

#include "vpc/export/BytePacker.h"

namespace vpc {

namespace {

template <class Channel, class Intensity>
void appendPoint(std::string& bytes, const VpcPoint3D& p) {
    BytePacker packer(bytes);
    for (const double value : {p.x, p.y, p.z}) packer.Put(value);
    for (const std::uint16_t channel : {p.red, p.green, p.blue})
        packer.Put(static_cast<Channel>(channel));
    packer.Put(static_cast<Intensity>(p.intensity));
}

std::string header(const ExportSummary& summary, bool wideColours) {
    const std::string colour = wideColours ? "property ushort " : "property uchar ";
    return "ply\nformat binary_little_endian 1.0\ncomment written by vpc export\nelement vertex " +
           std::to_string(summary.points) +
           "\nproperty double x\nproperty double y\nproperty double z\n" + colour + "red\n" +
           colour + "green\n" + colour + "blue\nproperty " +
           (summary.floatIntensities ? "float" : "double") + " intensity\nend_header\n";
}

}  // namespace

void PlyExport::Write(ExportSource& source, const ExportOutput& out) {
    const ExportSummary& summary = source.Summary();
    const bool wide = summary.largestColour > 255;
    const auto add = wide ? summary.floatIntensities ? &appendPoint<std::uint16_t, float>
                                                     : &appendPoint<std::uint16_t, double>
                     : summary.floatIntensities ? &appendPoint<std::uint8_t, float>
                                                : &appendPoint<std::uint8_t, double>;
    out(header(summary, wide));
    std::string bytes;
    source.ForEach("writing points", [&](std::span<const VpcPoint3D> batch) {
        bytes.clear();
        for (const VpcPoint3D& p : batch) add(bytes, p);
        out(bytes);
    });
}

}  // namespace vpc
