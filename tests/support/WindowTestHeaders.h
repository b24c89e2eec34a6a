#pragma once

// The same for the tests of windows.
#include <windows.h>

#include <commctrl.h>

#include "TestHeaders.h"
