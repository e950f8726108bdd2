#pragma once

#include "download/line_settings.h"
