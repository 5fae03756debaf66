#include "host/GiPcColorSchemeMap.h"

#include <algorithm>

#include "core/util/VpcDefinitions.h"

GiPcColorSchemeMap::GiPcColorSchemeMap()
    : schemes_{{L"", VPC_ColorScheme_ScanColors},
               {L"C0A3838B-81E3-4506-B908-13ECF523DB68", VPC_ColorScheme_Spectrum},
               {L"6DFAB669-B096-4842-9F90-F23CBDD9E410", VPC_ColorScheme_Earth},
               {L"46B3A5C6-4029-4D50-90D3-C49ADB0A2B45", VPC_ColorScheme_Hydro},
               {L"655FCCB9-2DB2-40BC-86BB-A513D3DF3FEE", VPC_ColorScheme_Gray},
               {L"E247D320-B4DE-471F-8E5F-B848819BF6F6", VPC_ColorScheme_Reds},
               {L"B5E88F37-A921-45DF-9987-B979CE516EF3", VPC_ColorScheme_Greens},
               {L"9B45EA40-176A-46B5-9470-1FA6A7880EE3", VPC_ColorScheme_Blues}} {
}

int GiPcColorSchemeMap::scheme(const OdString& guid) const {
    const auto found = schemes_.find(guid);
    return found == schemes_.end() ? int{VPC_ColorScheme_ScanColors} : found->second;
}

OdString GiPcColorSchemeMap::guid(int scheme) const {
    const auto found = std::find_if(schemes_.begin(), schemes_.end(),
                                    [scheme](const auto& entry) { return entry.second == scheme; });
    return found == schemes_.end() ? OdString() : found->first;
}
