// `qdm-line`: every command of `qdm`, those on ports too.
#include "base/file_access.h"
#include "command_line/program_start.h"
#include "command_line/run_qdm.h"
#include "port_commands/port_commands.h"
#include "serial_io/event_loop_waiting.h"
#include "serial_io/port_list.h"

#include <QCoreApplication>

#include <memory>
#include <stop_token>
#include <string>

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const std::unique_ptr<qdm::SerialPorts> ports = qdm::MakeSystemPorts();
  qdm::EventLoopWaiting time;
  std::stop_source stop;
  const std::string folder = QCoreApplication::applicationDirPath().toStdString();
  qdm::PortContext context{qdm::StandardContext(qdm::PathFromUtf8(folder)), *ports, qdm::PortAt, time, stop};
  return qdm::RunQdm(qdm::ArgumentsOf(argc, argv), context, qdm::PortCommandsIn(context));
}
