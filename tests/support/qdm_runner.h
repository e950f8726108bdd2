// Runs `qdm` commands inside the test: its own folder and library, simulated ports, time that jumps.
#pragma once

#include "command_line/run_qdm.h"
#include "config/configuration_file.h"
#include "port_commands/port_commands.h"
#include "projectors/projector_files.h"
#include "simulation/simulated_line.h"
#include "support/distinct_projector.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <sstream>

namespace qdm {

constexpr int kPatience = 30'000;  // milliseconds that another process may take, on a machine under load

struct Outcome {
  int Status = -1;
  std::string Out;
  std::string Err;

  friend void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << "status " << outcome.Status << "\nout: " << outcome.Out << "\nerr: " << outcome.Err;
  }
};

MATCHER_P3(Answers, status, out, err, "") {
  return arg.Status == status &&
         testing::ExplainMatchResult(testing::Matcher<std::string>(out), arg.Out, result_listener) &&
         testing::ExplainMatchResult(testing::Matcher<std::string>(err), arg.Err, result_listener);
}
MATCHER_P(SaysInOneLine, why, "") {
  return arg.starts_with("qdm: ") && arg.find('\n') + 1 == arg.size() && arg.find(why) != std::string::npos;
}
// Exit status 2, nothing on standard output and one line that says `why`.
inline auto IsUnusable(const std::string& why) { return Answers(2, "", SaysInOneLine(why)); }

class QdmRunner {
 public:
  TempFolder Folder;
  VirtualTime Time;
  SimulatedPorts Ports{Time};
  std::stop_source Stop;
  bool OnTerminal = false;
  // A port by its device's path.
  std::function<std::unique_ptr<SerialPort>(const std::string&)> PortAt = [](const std::string&) {
    return nullptr;
  };

  Outcome Run(std::vector<std::string> arguments) {
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    PortContext context{{.In = in,
                         .Out = out,
                         .Err = err,
                         .ErrIsTerminal = OnTerminal,
                         .DataVariable = Folder.Path(),
                         .ProgramFolder = Folder.Path(),
                         .UserFolder = Folder / "user"},
                        Ports,
                        PortAt,
                        Time,
                        Stop};
    const int status = RunQdm(std::move(arguments), context, PortCommandsIn(context));
    return {status, out.str(), err.str()};
  }

  std::string Path(const std::string& name) const { return PathToUtf8(Folder / name); }
  std::string Write(const std::string& name, ByteView bytes) const {
    WriteFileSafely(Folder / name, bytes);
    return Path(name);
  }
  std::string Write(const std::string& name, const PanelConfiguration& configuration) const {
    return Write(name, Encode(configuration));
  }
  std::string Write(const std::string& name, const std::vector<ProjectorDefinition>& definitions) const {
    return Write(name, EncodeDefinitions(definitions));
  }
  Bytes Read(const std::string& name) const { return ReadWholeFile(Folder / name); }
};

// Passes the check and becomes an image.
inline PanelConfiguration UsableConfiguration(std::int16_t controllerType = kQdm7) {
  PanelConfiguration configuration;
  configuration.ControllerType = controllerType;
  configuration.Projector = NamedProjector("ACME", "X 100");
  configuration.Projector.VolumeBytePosition = 0;
  configuration.Projector.Available[1] = kFlagSet;
  configuration.Projector.Strings[1].Count = 3;
  configuration.Projector.Strings[1].Values = {'P', 'W', 0xFE};
  return configuration;
}

}  // namespace qdm
