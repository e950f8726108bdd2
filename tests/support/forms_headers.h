// Precompiled for the suites of windows.
#pragma once

#include "forms/shared/qt_headers.h"

#include <QTest>

#include <gmock/gmock.h>
