#pragma once

#include "draw/ImageSize.h"
#include "draw/Point3.h"

namespace vpc::draw {

/// What a picture shows, in world coordinates.
struct Camera {
    Point3 eye;
    /// To the right, upwards and into the picture: of length 1 and at right angles to each other.
    Point3 right{1, 0, 0};
    Point3 up{0, 1, 0};
    Point3 ahead{0, 0, -1};
    /// How far ahead of the eye the field below is measured.
    double targetDistance = 1.0;
    /// What is seen at that distance. Of a picture that has another shape, the field is the largest
    /// part that lies in the middle.
    double fieldWidth = 1.0;
    double fieldHeight = 1.0;
    bool perspective = true;
};

/// Where the points of the world appear in a picture.
class Projection {
public:
    /// A place in the picture. Whole numbers are the left and upper edges of pixels.
    struct Place {
        double column = 0.0;
        double row = 0.0;
        /// The distance ahead of the eye.
        double depth = 0.0;
    };

    Projection(const Camera& camera, const ImageSize& size);

    const Camera& GetCamera() const { return camera_; }
    const ImageSize& Size() const { return size_; }
    /// A point at the eye's depth has no place in perspective: its column and row are not finite.
    Place Of(const Point3& p) const;
    /// The point of the world that appears at a place.
    Point3 At(const Place& place) const;
    /// How long in the world the side of a pixel is at this depth.
    double PixelSide(double depth) const {
        return camera_.perspective ? depth / focalPixels_ : 1.0 / scale_;
    }
    /// The eye's distance in pixels: what an object as large as its depth covers. In perspective
    /// only.
    double FocalPixels() const { return focalPixels_; }
    /// Pixels of a unit of the world at the target's distance.
    double Scale() const { return scale_; }

private:
    Camera camera_;
    ImageSize size_;
    double scale_;
    double focalPixels_;
};

}  // namespace vpc::draw
