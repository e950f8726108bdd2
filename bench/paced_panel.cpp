#include "paced_panel.h"

#include "panels/frame.h"
#include "panels/programming.h"
#include "serial_io/pseudo_terminal.h"
#include "simulation/simulated_line.h"
#include "support/panel_descriptions.h"

#include <algorithm>
#include <atomic>
#include <optional>

#include <poll.h>
#include <sys/prctl.h>

namespace qdm::bench {
namespace {

constexpr Microseconds kLook{100'000};  // how often it looks whether it is to end

}  // namespace

struct PacedPanel::Line {
  class SteadyTime : public Waiting {
   public:
    Microseconds Now() const override {
      return std::chrono::duration_cast<Microseconds>(std::chrono::steady_clock::now().time_since_epoch());
    }
    void Yield(Microseconds) override {}
    void WakeAt(Microseconds) override {}
  };

  explicit Line(const PanelImage& image)
      : First(ProgramRecord(image, 0)), Last(ProgramRecord(image, kRecords - 1)) {
    Wire.OnWritten([this](ByteView bytes, Microseconds through) { Note(bytes, through); });
    Wire.Open();
  }

  // The bytes are on the line for as long as they take, until `through`.
  void Note(ByteView bytes, Microseconds through) {
    const auto is = [bytes](const Bytes& record) {
      return std::equal(bytes.begin(), bytes.end(), record.begin(), record.end());
    };
    if (is(First)) Began = Time.Now();
    if (is(Last)) Ended = through + TimeOfBytes(1, ParseLineSettings(kProgrammingSettings));
  }

  void Run(const std::stop_token& stop) {
    prctl(PR_SET_TIMERSLACK, 1UL);
    while (!stop.stop_requested()) {
      const Microseconds wait =
          std::clamp(Wire.NextDelivery().value_or(Time.Now() + kLook) - Time.Now(), Microseconds{0}, kLook);
      const timespec limit{.tv_sec = 0, .tv_nsec = std::chrono::nanoseconds(wait).count()};
      pollfd sent{.fd = Terminal.Descriptor(), .events = POLLIN, .revents = 0};
      if (::ppoll(&sent, 1, &limit, nullptr) > 0) {
        Wire.SetSettings(Terminal.Settings());
        Wire.Write(Terminal.Read());
      }
      if (const Bytes reply = Wire.ReadAll(); !reply.empty()) Terminal.Write(reply);
    }
  }

  SteadyTime Time;
  PseudoTerminal Terminal;
  SimulatedPanel Panel{Described(kQdm7, std::string(kProgrammingSettings))};
  SimulatedLine Wire{&Panel, Time, Pacing::TrueByteTime};
  const Bytes First;
  const Bytes Last;
  std::atomic<Microseconds> Began{};
  std::atomic<Microseconds> Ended{};
};

PacedPanel::PacedPanel(const PanelImage& image)
    : line_(std::make_unique<Line>(image)),
      thread_([this](const std::stop_token& stop) { line_->Run(stop); }) {}

PacedPanel::~PacedPanel() {
  thread_.request_stop();
  thread_.join();
}

const std::string& PacedPanel::Device() const { return line_->Terminal.Device(); }

double PacedPanel::SecondsForTheRecords() const {
  return std::chrono::duration<double>(line_->Ended.load() - line_->Began.load()).count();
}

double SecondsOfTheBytes(const PanelImage& image) {
  std::size_t bytes = 0;
  for (int record = 0; record < kRecords; ++record) bytes += ProgramRecord(image, record).size() + 1;
  const Microseconds time = TimeOfBytes(bytes, ParseLineSettings(kProgrammingSettings));
  return std::chrono::duration<double>(time).count();
}

}  // namespace qdm::bench
