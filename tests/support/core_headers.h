// Precompiled for the suites without windows.
#pragma once

#include "base/standard_headers.h"

#include <gmock/gmock.h>
