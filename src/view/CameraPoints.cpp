#include "view/CameraPoints.h"

VpcPoint3D camPointVpc;
OdGePoint3d camPointOda;
