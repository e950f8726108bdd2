// Every window of the editor in its usual states: the one place where a new window is added, for what holds
// for all of them. What stands in them as data has no letters, so that every word is the program's own.
#pragma once

#include "forms/shared/globals.h"
#include "support/closed_ports.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/temp_folder.h"
#include "work_log/work_log.h"

#include <QSettings>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

class QWidget;

namespace qdm {

// What the windows work on: a library, a room with its file, its downloads, panels on ports.
struct FormWorld {
  FormWorld();

  PanelConfiguration Configuration(int controllerType) const;
  // A file of the data folder.
  QString File(const char* name) const;
  // Opens the window at that string.
  void ChooseSlot(int slot) { Shared.CurrentSlot = static_cast<std::int16_t>(slot); }

  TempFolder Folder;
  Globals Shared;
  FakePrompts Prompts;
  QSettings Settings;
  FormTime Time;
  ClosedPorts Ports{Time};
  WorkLog Log{Folder.Path()};
};

using LookAt = std::function<void(QWidget& window)>;

struct FormState {
  std::string Name;  // "Download.Found"
  // Brings the window into the state, shows it, and looks.
  std::function<void(FormWorld& world, const LookAt& look)> Show;
};
inline void PrintTo(const FormState& state, std::ostream* out) { *out << state.Name; }
const std::vector<FormState>& EveryForm();

}  // namespace qdm
