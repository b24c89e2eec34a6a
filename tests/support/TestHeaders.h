#pragma once

// What most tests include, to be precompiled.
#include <gtest/gtest.h>

#include "StandardHeaders.h"
