// Which panel is on this port? One port, one search at a time: `StartSearch` opens the port, 500 ms later the
// search begins, and in the end the control shows either `Option1` to choose the port by, with what was found
// beside it, or "No QDM found". A port that does not open shows nothing at all.
// It does not wait: whoever owns it calls Advance() from `Began` on, until Searching() is over. So the
// searches of several controls run side by side.
#pragma once

#include "panels/one_port_search.h"

#include <QWidget>

#include <memory>
#include <optional>

class QLabel;
class QRadioButton;
class QTimer;

namespace qdm {

class MyComm : public QWidget {
  Q_OBJECT

 public:
  MyComm(SerialPorts& ports, const Waiting& time, QWidget* parent = nullptr);
  ~MyComm() override;

  // `port` is 1..16.
  void StartSearch(int port);
  // A search that has begun, or is about to, ends as not found.
  void StopSearch();

  bool Opened() const { return port_ != nullptr; }
  bool Pending() const;    // started, but not begun
  bool Searching() const;  // begun and not finished
  Microseconds NextTime() const { return search_->NextTime(); }
  void Advance();

  // What was found; empty unless `Option1` is offered.
  const OnePortResult& Result() const { return result_; }
  int Port() const { return number_; }
  void ShowChosen(bool chosen);

  void Timer1_Timer();

 Q_SIGNALS:
  void Began();
  void Finished();  // found, not found or stopped
  void Chosen();    // the user picked this port

 private:
  void ShowStatus(const QString& text);
  void Finish();

  SerialPorts& ports_;
  const Waiting& time_;
  QRadioButton* Option1;
  QLabel* Label1;
  QTimer* Timer1;
  int number_ = 0;
  std::unique_ptr<SerialPort> port_;
  std::optional<OnePortSearch> search_;
  OnePortResult result_;
};

}  // namespace qdm
