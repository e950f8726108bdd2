// The "Find panel" window: which COM port is this cable? A row for every port that exists, each searched on
// its own and all at the same time, each panel restarted as soon as it is found. Nothing is programmed here.
// One loop drives all the searches; closing the window ends them, and restarts with the attempt that is under
// way.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"

#include <QDialog>

#include <array>
#include <memory>

class QTreeWidgetItem;

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

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Row {
    MyComm* Comm = nullptr;
    QTreeWidgetItem* Item = nullptr;  // hidden where there is no such port
  };

  void Find_Click();
  void Stopper_Click();
  void Copy_Click();

  void SizeColumns();
  void MakeRow(int port);
  void RunSearches();
  void ShowRow(const Row& row);
  QString StateOf(const MyComm& comm) const;
  void ShowState();
  QString Instruction() const;
  bool Busy() const;

  std::unique_ptr<Ui::FindPanel> ui_;
  SerialPorts& ports_;
  Waiting& time_;
  std::array<Row, kPortSlots> rows_;
  bool running_ = false;
  bool stopped_ = false;  // before every line setting was tried
  bool closing_ = false;
};

}  // namespace qdm
