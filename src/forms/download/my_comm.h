// Which panel is on this port? One port, one search at a time: `StartSearch` opens the port, 500 ms later the
// search begins, and in the end there is either something to choose the port by, or "No QDM found". A panel
// that identified itself is restarted at once, since it does nothing but wait until then. It does not wait:
// whoever owns it calls Advance() from `Began` on, until Searching() is over. So the searches of several
// controls run side by side.
#pragma once

#include "panels/one_port_search.h"
#include "panels/panel_restart.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

class QTimer;

namespace qdm {

class MyComm : public QObject {
  Q_OBJECT

 public:
  MyComm(SerialPorts& ports, const Waiting& time, QObject* parent = nullptr);
  ~MyComm() override;

  // `port` is 1..16.
  void StartSearch(int port);
  // A search that has begun, or is about to, ends as not found; a restart with the attempt that is under way.
  void StopSearch();

  bool Opened() const { return port_ && !failed_; }
  bool Pending() const;    // started, but not begun
  bool Searching() const;  // begun, and neither finished nor restarted yet
  Microseconds NextTime() const;
  void Advance();

  int Port() const { return number_; }
  const std::string& Device() const { return device_; }  // on which the search was started
  // Why the port did not open, as far as that is known.
  std::optional<OpenFailure> WhyClosed() const;
  const QString& Label1() const { return label_; }  // the status text
  // What was found; empty until then.
  const OnePortResult& Result() const { return result_; }
  std::size_t SettingsTried() const { return search_ ? search_->SettingsTried() : 0; }
  bool FailedToRestart() const { return restart_ && restart_->Finished() && !restart_->Acknowledged(); }

  void Timer1_Timer();

 Q_SIGNALS:
  void Began();
  void Changed();  // anything of what is told here

 private:
  void ShowStatus(const QString& text);
  void SearchEnded();

  SerialPorts& ports_;
  const Waiting& time_;
  QTimer* Timer1;
  int number_ = 0;
  std::string device_;
  QString label_;
  std::unique_ptr<SerialPort> port_;
  bool failed_ = false;
  std::stop_source stop_;
  std::optional<OnePortSearch> search_;
  std::optional<PanelRestart> restart_;
  OnePortResult result_;
};

}  // namespace qdm
