// The other half of start_bench.cpp: this program, started again to show one window and end with its first
// paint.
#pragma once

#include <optional>
#include <string_view>

namespace qdm {

// What an argument "--first-paint=empty" or "--first-paint=DATA-FOLDER" asks for.
std::optional<std::string_view> FirstPaintArgument(int argc, char** argv);

// Shows an empty window, or the editor on the library of that folder; exit status.
int RunUntilFirstPaint(std::string_view what);

}  // namespace qdm
