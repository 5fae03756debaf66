#include "viewer/engine/Engine.h"
