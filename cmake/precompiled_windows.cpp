#include "cmake/precompiled_windows.h"
