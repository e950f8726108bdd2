// The speeds of a line as the system's terminal interface knows them.
#pragma once

#include <array>
#include <utility>

#include <termios.h>

namespace qdm {

inline constexpr std::array<std::pair<speed_t, int>, 9> kTerminalSpeeds = {{{B1200, 1200},
                                                                            {B2400, 2400},
                                                                            {B4800, 4800},
                                                                            {B9600, 9600},
                                                                            {B19200, 19200},
                                                                            {B38400, 38400},
                                                                            {B57600, 57600},
                                                                            {B115200, 115200},
                                                                            {B230400, 230400}}};

}  // namespace qdm
