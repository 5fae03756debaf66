#include "platform/PcDbPointCloudDefPE.h"

PcDbPointCloudDefPE::~PcDbPointCloudDefPE() = default;
