// Compiled once for the libraries whose sources speak to Windows, of whom most include this. As with the other, each
// source includes what it uses all the same.
#pragma once

#include "cmake/precompiled.h"

#include <windows.h>

#include <ole2.h>
