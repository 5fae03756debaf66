#include "viewer/drawing/PointRenderer.h"
