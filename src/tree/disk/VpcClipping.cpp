#include "tree/disk/VpcClipping.h"

VpcClipping::VpcClipping(const GiPcClipConfig& config)
    : keepInside(config.flag2 != config.flag3),
      clipType(config.type),
      flag1(config.flag1),
      flag2(config.flag2),
      flag3(config.flag3),
      clipPlane(config.plane),
      matrix1(config.matrix1),
      matrix2(config.matrix2),
      vertices(config.vertices) {
    const OdArray<OdGePoint2d>& corners = vertices;
    if (clipType == 0 && corners.size() >= 2) radius = corners[0].distanceTo(corners[1]);
}

bool VpcClipping::isInside(const OdGePoint3d& p) const {
    // The point is projected as it is given: the second matrix takes no part in the test.
    const OdGePoint2d q = p.convert2d(clipPlane);
    return clipType == 0 ? pointInCircle(q) : pointInPolygon(q);
}

bool VpcClipping::pointInCircle(const OdGePoint2d& q) const {
    if (vertices.isEmpty()) return true;
    const bool inside = radius >= vertices[0].distanceTo(q);
    return inside == keepInside;
}

bool VpcClipping::pointInPolygon(const OdGePoint2d& q) const {
    if (vertices.isEmpty()) return true;
    // Counts the edges that the ray from q towards larger x crosses. Both comparisons take
    // equality in, so that a corner at q's height counts with one of its two edges.
    bool inside = false;
    const OdGePoint2d* before = &vertices[vertices.size() - 1];
    for (const OdGePoint2d& corner : vertices) {
        const OdGePoint2d& last = *before;
        if ((corner.y >= q.y) != (last.y >= q.y)) {
            const double crossing =
                (last.x - corner.x) * (q.y - corner.y) / (last.y - corner.y) + corner.x;
            if (crossing >= q.x) inside = !inside;
        }
        before = &corner;
    }
    return inside == keepInside;
}
