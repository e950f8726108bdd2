// The near end of a pseudo-terminal, and a program that talks to it through a real serial port.
#include "serial_io/pseudo_terminal_port.h"

#include "line/waiting.h"
#include "projector_bench/wrong_settings.h"
#include "serial_io/event_loop_waiting.h"
#include "serial_io/port_list.h"
#include "serial_io/pseudo_device_opening.h"

#include <gtest/gtest.h>

#include <chrono>

namespace qdm {
namespace {

const Bytes kCommand = {0x02, 'P', 'O', 'N', 0x03};

Bytes Take(SerialPort& port, std::size_t count, Waiting& time) {
  Bytes taken;
  WaitUntil(time, std::chrono::seconds(20), [&] {
    const Bytes more = port.ReadAll();
    taken.insert(taken.end(), more.begin(), more.end());
    return taken.size() >= count;
  });
  return taken;
}

TEST(PseudoTerminalPort, HearsAProgramAtItsSpeedAndGarbageAtAnother) {
  EventLoopWaiting time;
  PseudoTerminalPort projector("19200,e,8,1");
  DeviceOpening opening(projector.Device());
  const auto program = PortAt(projector.Device());
  const struct {
    const char* Settings;
    const char* SentAt;
  } cases[] = {{"19200,n,8,1", "19200,n,8,1"}, {"9600,n,8,1", "9600,e,8,1"}};
  for (const auto& [settings, sentAt] : cases) {
    program->SetSettings(settings);
    ASSERT_TRUE(program->Open());
    const LineSettings theirs = ParseLineSettings(sentAt);
    LineSettings ours = ParseLineSettings("19200,e,8,1");
    ours.Parity = theirs.Speed == ours.Speed ? theirs.Parity : ours.Parity;
    const Bytes heard = HeardAs(kCommand, theirs, ours);
    program->Write(kCommand);
    EXPECT_EQ(Take(projector, heard.size(), time), heard) << settings;
    const Bytes answer = HeardAs(kCommand, ours, theirs);
    projector.Write(kCommand);
    EXPECT_EQ(Take(*program, answer.size(), time), answer) << settings;
  }
  WaitUntil(time, std::chrono::seconds(20), [&] { return opening.Happened(); });
  EXPECT_TRUE(opening.Happened());
}

}  // namespace
}  // namespace qdm
