#include "cmake/precompiled.h"
