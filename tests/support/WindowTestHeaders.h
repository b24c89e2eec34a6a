#pragma once

// Precompiled: further headers of tests of windows.
#include <windows.h>

#include <commctrl.h>

#include "TestHeaders.h"
