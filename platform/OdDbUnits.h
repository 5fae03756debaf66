#pragma once

#include "platform/OdPlatform.h"

namespace OdDb {

/// Stand-in for the host SDK's drawing units.
enum UnitsValue : int {
    kUnitsUndefined = 0,
    kUnitsInches = 1,
    kUnitsFeet = 2,
    kUnitsMiles = 3,
    kUnitsMillimeters = 4,
    kUnitsCentimeters = 5,
    kUnitsMeters = 6,
    kUnitsKilometers = 7,
    kUnitsMicroinches = 8,
    kUnitsMils = 9,
    kUnitsYards = 10,
    kUnitsAngstroms = 11,
    kUnitsNanometers = 12,
    kUnitsMicrons = 13,
    kUnitsDecimeters = 14,
    kUnitsDekameters = 15,
    kUnitsHectometers = 16,
    kUnitsGigameters = 17,
    kUnitsAstronomical = 18,
    kUnitsLightYears = 19,
    kUnitsParsecs = 20
};

}  // namespace OdDb

/// How many units `to` make one unit `from`; 1 where either is undefined or no unit.
OD_EXPORT double oddbGetUnitsConversion(OdDb::UnitsValue from, OdDb::UnitsValue to);
