// What goes over the wire to a panel that is programmed, at 9600,n,8,2, and what comes back.
//
//   record    FF | 22 | address low | address high | 8 data bytes | check byte
//   restart   FF | 44 | check byte
//   reply     F0 ...
//
// The sum of all bytes of a frame is 0 modulo 256, before escaping. In a record's address low byte, data and
// check byte FF goes out as FE FE and FE as FE FD, after the check byte was computed: 13 to 23 bytes on the
// wire. The address high byte is 0 or 1. A reply that begins with F0 acknowledges either frame.
#pragma once

#include "base/record_codec.h"
#include "panels/panel_image.h"

#include <array>
#include <cstdint>
#include <optional>

namespace qdm {

inline constexpr std::uint8_t kStartByte = 0xFF;
inline constexpr std::uint8_t kWriteCommand = 0x22;
inline constexpr std::uint8_t kRestartCommand = 0x44;
inline constexpr std::uint8_t kEscape = 0xFE;
inline constexpr std::uint8_t kAcknowledge = 0xF0;

inline constexpr int kRecordDataBytes = 8;
inline constexpr int kRecords = static_cast<int>(kPanelImageSize) / kRecordDataBytes;
// On the wire: with nothing escaped, and with everything that can be.
inline constexpr int kShortestRecord = 4 + kRecordDataBytes + 1;
inline constexpr int kLongestRecord = kShortestRecord + 1 + kRecordDataBytes + 1;

inline constexpr std::array<std::uint8_t, 3> RestartCommand = {kStartByte, kRestartCommand, 0xBD};

// Record 0..63 of the image as it goes over the wire.
Bytes ProgramRecord(const PanelImage& image, int record);

// The byte that `substitute` stands for behind an escape byte; nothing for one that stands for none.
std::optional<std::uint8_t> Unescaped(std::uint8_t substitute);

bool IsAcknowledged(ByteView reply);

}  // namespace qdm
