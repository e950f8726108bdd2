// The window "Rooms": a folder of configurations as a table of rooms with their states, and the walk through
// those that are due: names the room to stand in, waits for its panel, programs it, goes on to the next.
// While a room is waited for or programmed, closing the window asks that to stop, and the window closes when
// it has.
#pragma once

#include "forms/work_log/work_log_form.h"
#include "line/serial_port.h"
#include "line/waiting.h"
#include "work_log/rooms.h"

#include <QDialog>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

class QSettings;

namespace Ui {
class RoomsForm;
}

namespace qdm {

struct Globals;

// What the window works with; all of it must outlive it.
struct RoomsTools {
  const ProjectorLibrary& Library;
  SerialPorts& Ports;
  Waiting& Time;
  WorkLog& Log;
  UserPrompts& Prompts;
  QSettings& Settings;
  // Opens a room's file in the main window; true when it has been opened.
  std::function<bool(QWidget* parent, const QString& file)> Open;
};

class RoomsForm : public QDialog {
  Q_OBJECT

 public:
  explicit RoomsForm(const RoomsTools& tools, QWidget* parent = nullptr);
  ~RoomsForm() override;

  void reject() override;

 private:
  class Progress;

  void Folder_Click();
  void Room_DoubleClick(int row);
  void ProgramNext_Click();
  void Stopper_Click();
  void TakeDefinitions_Click();
  void Table_Select();

  void ReadFolder();
  void ShowRooms();
  void ShowRow(int row);
  bool IsOutdated(std::size_t room) const;
  void ShowNext();
  void ShowButtons();
  void FocusNext();
  bool MayBeStopped();
  void RequestStop();
  void Say(const QString& text);
  std::optional<std::size_t> SelectedRoom() const;

  std::unique_ptr<Ui::RoomsForm> ui_;
  RoomsTools tools_;
  QString folder_;
  std::vector<Room> rooms_;
  std::vector<OutdatedRoom> outdated_;
  std::optional<std::size_t> next_;  // the room that "Program Next" is for
  std::stop_source stop_;
  bool running_ = false;
  bool programming_ = false;  // records have gone out
  bool closing_ = false;
};

}  // namespace qdm
