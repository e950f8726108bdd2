// `qdm`: all commands on files. What needs a port or pages goes to `qdm-line`.
#include "command_line/hand_over.h"
#include "command_line/program_start.h"
#include "command_line/run_qdm.h"

int main(int argc, char** argv) {
  qdm::CommandContext context = qdm::StandardContext(qdm::ProgramFile(argv[0]).parent_path());
  const auto handOver = [&] { return qdm::HandOver(context.ProgramFolder, argv); };
  return qdm::RunQdm(qdm::ArgumentsOf(argc, argv), context, qdm::HandedOver(handOver));
}
