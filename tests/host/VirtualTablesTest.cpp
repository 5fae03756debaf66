#include <cstring>

#include <gtest/gtest.h>

#include "platform/GiPointSetDefinition.h"
#include "platform/OdOPMClientExtension.h"

namespace vpc::test {

namespace {

/// Where an operation stands in the virtual table: the C++ ABI of the host's compilers keeps it in
/// the member pointer as its distance in bytes, plus 1.
template <class Operation>
std::size_t slotOf(Operation operation) {
    std::size_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    return (word - 1) / sizeof(void*) + 1;
}

template <class... Operations>
void expectSlotsInOrder(Operations... operations) {
    std::size_t expected = 3;  // after two destructors
    for (const std::size_t slot : {slotOf(operations)...}) EXPECT_EQ(slot, expected++);
}

TEST(GiPointSetDefinition, HasItsOperationsWhereTheHostCallsThem) {
    using Set = GiPointSetDefinition;
    expectSlotsInOrder(
        &Set::getPointModelUnit, &Set::hasViewGeometryChanged, &Set::updateVisiblePoints,
        &Set::getOsnapPoints, &Set::getNrVisiblePoints, &Set::getPointCoordinates,
        &Set::getPointColors, &Set::getPointSizes, &Set::getTotalNrPoints, &Set::drawDensity,
        &Set::setDrawDensity, &Set::useFlatView, &Set::setUseFlatView, &Set::maxNrPointsInBuffer,
        &Set::setMaxNrPointsInBuffer, &Set::stylizationType, &Set::setStylizationType,
        &Set::colorScheme, &Set::setColorScheme, &Set::hasSameSections, &Set::addSection,
        &Set::clearSections, &Set::addClipping, &Set::removeLastClipping, &Set::clearClippings);
}

TEST(OdOPMClientExtension, HasItsOperationsWhereTheHostCallsThem) {
    using Palette = OdOPMClientExtension;
    void (Palette::*const endOne)(OdDbEntity*) = &Palette::endPropertiesUpdate;
    void (Palette::*const endAll)(const OdArray<OdDbEntity*>&) = &Palette::endPropertiesUpdate;
    expectSlotsInOrder(endOne, endAll, &Palette::getPropertyMap, &Palette::getApplicationName,
                       &Palette::getObjectName, &Palette::getCategoryName,
                       &Palette::getPropertyName, &Palette::getPropertyDescription,
                       &Palette::allowPropertyPreview, &Palette::getPropertyHidden,
                       &Palette::getPropertyEnabled, &Palette::getPropertyReadOnly,
                       &Palette::getPredefinedStrings, &Palette::getPropertyValue,
                       &Palette::setPropertyValue, &Palette::allEntityNames);
}

}  // namespace

}  // namespace vpc::test
