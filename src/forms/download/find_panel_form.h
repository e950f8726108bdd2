// The "Find panel" window: which COM port is this cable? A cell for every port that exists, each searched on
// its own and all at the same time; choosing a port with a panel says what was found and at which settings.
// Nothing is programmed here. One loop drives all the searches; closing the window ends them at once.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"

#include <QDialog>

#include <array>
#include <memory>

class QLabel;

namespace Ui {
class FindPanel;
}

namespace qdm {

class MyComm;

class FindPanel : public QDialog {
  Q_OBJECT

 public:
  // The ports and the clock must outlive the window.
  FindPanel(SerialPorts& ports, Waiting& time, QWidget* parent = nullptr);
  ~FindPanel() override;

  void done(int result) override;

 private:
  struct Cell {
    QLabel* Name = nullptr;
    MyComm* Comm = nullptr;
  };

  void Find_Click();
  void Stopper_Click();
  void Comm_Chosen(const MyComm& chosen);

  void MakeCell(int port);
  void RunSearches();
  void ShowState();

  std::unique_ptr<Ui::FindPanel> ui_;
  SerialPorts& ports_;
  Waiting& time_;
  std::array<Cell, kPortSlots> cells_;
  bool running_ = false;
};

}  // namespace qdm
