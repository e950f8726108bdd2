// Precompiled for every folder with windows: what nearly all of them include from Qt and the standard
// library.
#pragma once

#include <QtCore>
#include <QtGui>
#include <QtWidgets>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>
