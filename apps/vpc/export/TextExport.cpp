#include "vpc/export/TextExport.h"

#include "vpc/export/PointLine.h"

namespace vpc {

namespace {

bool isAtOrigin(const VpcPoint3D& p) {
    return p.x == 0.0 && p.y == 0.0 && p.z == 0.0;
}

void writeLines(ExportSource& source, const ExportOutput& out, char separator = ' ') {
    std::string text;
    source.ForEach("writing points", [&](std::span<const VpcPoint3D> batch) {
        text.clear();
        for (const VpcPoint3D& p : batch) PointLine::Append(text, p, separator);
        out(text);
    });
}

/// The header of a scan with one row, whose points are moved by `shift` along x.
std::string ptxHeader(unsigned long long points, const char* shift) {
    return std::to_string(points) + "\n1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n" +
           shift + " 0 0 1\n";
}

}  // namespace

void TextExport::WritePts(ExportSource& source, const ExportOutput& out) {
    out(std::to_string(source.Summary().points) + "\n");
    writeLines(source, out);
}

void TextExport::WritePtx(ExportSource& source, const ExportOutput& out) {
    const ExportSummary& summary = source.Summary();
    const auto write = [&](bool atOrigin, double shift) {
        std::string text;
        source.ForEach("writing points", [&](std::span<const VpcPoint3D> batch) {
            text.clear();
            for (VpcPoint3D p : batch) {
                if (isAtOrigin(p) != atOrigin) continue;
                p.x += shift;
                PointLine::Append(text, p);
            }
            out(text);
        });
    };
    if (summary.atOrigin < summary.points) {
        out(ptxHeader(summary.points - summary.atOrigin, "0"));
        write(false, 0.0);
    }
    if (summary.atOrigin > 0) {
        out(ptxHeader(summary.atOrigin, "-1"));
        write(true, 1.0);
    }
}

void TextExport::WriteXyz(ExportSource& source, const ExportOutput& out) {
    writeLines(source, out);
}

void TextExport::WriteCsv(ExportSource& source, const ExportOutput& out) {
    out("x,y,z,intensity,red,green,blue\n");
    writeLines(source, out, ',');
}

}  // namespace vpc
