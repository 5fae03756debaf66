#include "core/geometry/VpcCoordinate3D.h"

#include <bit>
#include <initializer_list>

#include "core/geometry/VpcNumMathTools.h"

unsigned long long VpcCoordinate3D::ToHash() const {
    unsigned long long seed = 0;
    for (const double component : {x, y, z}) {
        const auto bits = std::bit_cast<unsigned long long>(component);
        VpcNumMathTools::CombineHash(seed, component == 0.0 ? 0 : bits);
    }
    return seed;
}
