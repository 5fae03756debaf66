#include "tree/construct/VpcRandomSampler.h"

namespace {

std::mt19937::result_type seedValue(bool seedFromDevice, int seed) {
    if (!seedFromDevice) return static_cast<std::mt19937::result_type>(seed);
    return std::random_device("/dev/urandom")();
}

}  // namespace

VpcRandomSampler::VpcRandomSampler(double keepFraction, bool seedFromDevice, int seed)
    : keepFraction_(keepFraction),
      generator_(seedValue(seedFromDevice, seed)),
      distribution_(0.0, 1.0 / keepFraction_) {
}
