// At which line settings does the projector listen? One command is sent at every setting that a definition
// can have, the likely ones first, and what comes back is judged. Ports are asked side by side.
#pragma once

#include "line/serial_port.h"
#include "line/speeds_and_parities.h"
#include "line/waiting.h"
#include "projector_bench/command_pattern.h"
#include "projector_bench/string_trial.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct ProbeSetting {
  const LineSpeed* Speed = nullptr;
  const ParityChoice* Parity = nullptr;
  int StopBits = 1;

  std::string Text() const;  // "9600,n,8,1"
  friend bool operator==(const ProbeSetting&, const ProbeSetting&) = default;
};

// All 30: the definition's own first, then by how common they are.
std::vector<ProbeSetting> SettingsToProbe(const ProjectorDefinition& projector);
void UseSettings(ProjectorDefinition& projector, const ProbeSetting& setting);

enum class ProbeVerdict { Nothing, Echo, Something, Reply };
std::string_view NameOf(ProbeVerdict verdict);  // "nothing"

// What is sent, and any of what counts as the reply.
struct ProbeQuestion {
  StringTrial Command;
  std::vector<BytePattern> Replies{};
};

// A command of the definition with the reply that is expected after it.
ProbeQuestion QuestionOf(const ProjectorDefinition& projector, Slot command);
// Any command: with the reply of the definition's command that is the same, else with every reply that the
// definition has.
ProbeQuestion QuestionOf(const ProjectorDefinition& projector, const SerialString& command);

ProbeVerdict Judge(const ProbeQuestion& question, ByteView received);

// What sending a command does to a projector: "switches the projector on".
std::string_view EffectOf(Slot command);

// How long a setting is waited for.
inline constexpr Microseconds kProbeTime = std::chrono::milliseconds(500);

struct ProbeResult {
  std::size_t Port = 0;  // place in `ports`
  ProbeSetting Setting;
  Bytes Received;
  ProbeVerdict Verdict = ProbeVerdict::Nothing;
};
struct ProbeObserver {
  std::function<void(const ProbeResult&)> Told;          // every result at once
  std::function<void(const ProbeSetting&)> Asking = {};  // before each setting
};

// Asks at the open ones of `ports`. A port that is gone is left out from then on. Returns when all settings
// were asked, a stop was asked for or no port is left.
void ProbeSettings(const std::vector<std::unique_ptr<SerialPort>>& ports, const ProbeQuestion& question,
                   const std::vector<ProbeSetting>& settings, Waiting& time, const std::stop_token& stop,
                   const ProbeObserver& observer);

bool AnyIsOpen(const std::vector<std::unique_ptr<SerialPort>>& ports);

// What to look at when everything was silent; UTF-8, a sentence a line.
std::string_view WhatToCheckWhenSilent();

}  // namespace qdm
