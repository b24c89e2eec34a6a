#pragma once

// What tests of windows include besides, to be precompiled.
#include <windows.h>

#include <commctrl.h>

#include "TestHeaders.h"
