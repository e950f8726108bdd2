// What can go wrong at a simulated panel, on request: in tests, and with `qdm simulate --fault TEXT`.
//
//   lose-REPLY[:N]           the reply is never sent
//   wrong-REPLY[:N]          another first byte is sent instead; an identification then has a wrong sum
//   noise-REPLY[:N]          a byte of noise comes before the reply
//   long-REPLY[:N]           a byte follows the reply
//   late-REPLY:N:MS          the reply comes MS milliseconds late; of several, the longest counts
//   drop:N[:BYTE]            byte BYTE (from 0, on the wire; 6 when left out) of a record is lost on its way
//   corrupt:N[:BYTE[:MASK]]  its bits in MASK (1..255; 1 when left out) are inverted
//   die:N                    from record N on the panel is silent
//   restart:N                the panel restarts in the middle of record N, which is lost
//
// REPLY is `ident`, `ack` (of a record) or `restart` (the acknowledgement of a restart). N counts records
// that come in or replies that would go out, repeated ones too, from 1: `3` is the third, `%3` every third;
// left out or `%1`, all. Short for these: `noise:N` is noise-ack:N, `no-restart-ack` is lose-restart.
#pragma once

#include "line/waiting.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct PanelFault {
  enum class Kind { Lose, Wrong, Noise, Long, Late, Drop, Corrupt, Die, Restart };
  enum class Target { Identification, Acknowledge, RestartAcknowledge, Record };

  Kind What = Kind::Lose;
  Target Where = Target::Acknowledge;
  int Number = 1;  // 1..
  bool Every = false;
  std::uint8_t Value = 0xA5;  // Wrong, Noise, Long: the byte that is sent
  Microseconds Delay{};       // Late
  int Byte = 6;               // Drop, Corrupt
  std::uint8_t Mask = 1;      // Corrupt

  bool HitsNumber(int count) const { return Every ? count % Number == 0 : count == Number; }

  friend bool operator==(const PanelFault&, const PanelFault&) = default;
};

using PanelFaults = std::vector<PanelFault>;

// std::invalid_argument that says what is wrong with the text.
PanelFault ParsePanelFault(std::string_view text);

}  // namespace qdm
