// The whole road on one desk: library, configuration, panel memory, command on the projector's line, reply.
#include "simulation/panel_buttons.h"

#include "config/configuration_file.h"
#include "panels/image_reading.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/line_trace.h"
#include "projector_bench/stand_in.h"
#include "projectors/projector_volume.h"
#include "simulation/simulated_line.h"
#include "support/bench_lines.h"
#include "support/panel_descriptions.h"
#include "support/programming_recorder.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace qdm {
namespace {

using namespace std::chrono_literals;

std::vector<PanelConfiguration> Examples() {
  std::vector<PanelConfiguration> examples;
  for (const auto& entry : std::filesystem::directory_iterator(QDM_SOURCE_DIR "/examples")) {
    if (entry.path().extension() == ".BVC") examples.push_back(ReadConfiguration(entry.path()));
  }
  return examples;
}

// A panel of the configuration's type on COM1 and its projector port on COM2.
struct Desk {
  explicit Desk(const PanelConfiguration& configuration)
      : Panel(Ports.AttachPanel(1, "panel",
                                SimulatedPanel(Described(configuration.ControllerType, "9600,n,8,2")))) {
    Ports.AttachProjectorPort(2, "projector");
  }
  void Program(const PanelConfiguration& configuration) {
    ProgrammingRecorder observer;
    const auto port = Ports.Port(1);
    EXPECT_TRUE(ProgramPanel(*port, "9600,n,8,2", configuration.ControllerType,
                             BuildPanelImage(configuration), Time, {}, observer)
                    .Restarted);
  }

  VirtualTime Time;
  SimulatedPorts Ports{Time};
  SimulatedPanel& Panel;
};

Bytes ReplyTo(const ProjectorDefinition& projector, Slot command) {
  const auto slot = ReplySlotOf(command);
  Bytes reply;
  for (const PatternByte& byte : slot ? PatternOf(projector.Strings[*slot]) : BytePattern())
    reply.push_back(byte.Any ? 0 : byte.Value);
  return reply;
}

void ExpectAsDefined(const StandIn& standIn, const ProjectorDefinition& projector) {
  EXPECT_TRUE(standIn.Missing().empty()) << ChecklistText(standIn);
  for (const HeardCommand& heard : standIn.Heard()) {
    ASSERT_TRUE(heard.Command) << HexText(heard.Data);
    EXPECT_GE(heard.Gap.value_or(1h), projector.InterCommandDelay * 1ms) << NameOf(heard);
    EXPECT_FALSE(heard.TooSoon || heard.BytesTooClose) << NameOf(heard);
    StringTrial trial = TrialOf(projector, projector.Strings[*heard.Command]);
    trial.Level.reset();
    if (heard.Level) trial.Level = LevelBytes(VolumeFormatOf(projector), *heard.Level);
    EXPECT_EQ(heard.Data, BytesOnLine(trial));
    EXPECT_EQ(heard.Answer, ReplyTo(projector, *heard.Command)) << NameOf(heard);
  }
}

TEST(PanelButtons, EveryCommandOfEveryExampleArrivesAsTheDefinitionHasIt) {
  const std::vector<PanelConfiguration> examples = Examples();
  ASSERT_EQ(examples.size(), 4U);
  for (const PanelConfiguration& example : examples) {
    const ProjectorDefinition& projector = example.Projector;
    Desk desk(example);
    desk.Program(example);
    auto buttons = PanelButtons::Of(desk.Panel.Memory(), example.ControllerType);
    ASSERT_TRUE(buttons);
    EXPECT_EQ(buttons->LineSettings(), BenchLineSettings(projector));
    // As fast as the panel's delays let it.
    StandIn standIn(projector);
    BenchLine line(desk.Time, AnswersOf(standIn, desk.Time));
    buttons->Press(standIn.Expected(), line, desk.Time, {});
    standIn.Advance(desk.Time.Now() + 1s);
    EXPECT_EQ(standIn.Expected(), buttons->Available());
    ExpectAsDefined(standIn, projector);
  }
}

TEST(PanelButtons, ArePressedOnTheProjectorPortOfTheProgrammedPanel) {
  for (const PanelConfiguration& example : Examples()) {
    Desk desk(example);
    EXPECT_EQ(desk.Ports.DeviceName(2), "");
    EXPECT_FALSE(desk.Ports.Port(2)->Open());
    desk.Program(example);
    ASSERT_EQ(desk.Ports.DeviceName(2), "projector");
    const auto listen = [&](StandIn& standIn, const std::string& settings) {
      LineTrace trace(desk.Time);
      TracedPort port(desk.Ports.Port(2), trace);
      port.SetSettings(settings);
      EXPECT_TRUE(port.Open());
      std::stop_source stop;
      desk.Time.At(desk.Time.Now() + 60s, [&] { stop.request_stop(); });
      ServeStandIn(standIn, port, desk.Time, stop.get_token(), [] {});
      Bytes sent;
      for (const TraceRun& run : trace.Runs()) {
        if (run.Direction == LineDirection::Sent)
          sent.insert(sent.end(), run.Values.begin(), run.Values.end());
      }
      return sent;
    };
    StandIn standIn(example.Projector);
    const Bytes sent = listen(standIn, BenchLineSettings(example.Projector));
    ExpectAsDefined(standIn, example.Projector);
    Bytes answers;
    for (const HeardCommand& heard : standIn.Heard())
      answers.insert(answers.end(), heard.Answer.begin(), heard.Answer.end());
    EXPECT_EQ(sent, answers);

    StandIn astray(example.Projector);
    EXPECT_TRUE(listen(astray, "115200,e,8,1").empty()) << "no example's projector listens there";
    EXPECT_EQ(astray.Missing(), astray.Expected());
    EXPECT_FALSE(astray.Heard().empty());
  }
}

TEST(PanelButtons, AMemoryWithoutStringsHasNone) {
  PanelImage memory;
  memory.fill(0xFF);
  EXPECT_FALSE(PanelButtons::Of(memory, kQdm7));
  memory.fill(1);
  memory[511] = 32;
  EXPECT_TRUE(ProjectorInImage(memory, kTlVox));
}

}  // namespace
}  // namespace qdm
