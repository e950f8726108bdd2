// Precompiled for the suites of windows.
#pragma once

#include "forms/shared/qt_headers.h"

#include <QtTest>

#include <gmock/gmock.h>
