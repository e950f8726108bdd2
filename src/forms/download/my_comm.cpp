#include "forms/download/my_comm.h"

#include "forms/shared/qt_text.h"

#include <QTimer>

#include <string>

namespace qdm {
namespace {

constexpr int kStartDelay = 500;  // ms; lets the window be seen first

}  // namespace

MyComm::MyComm(SerialPorts& ports, const Waiting& time, QObject* parent)
    : QObject(parent), ports_(ports), time_(time), Timer1(new QTimer(this)) {
  Timer1->setObjectName(QStringLiteral("Timer1"));
  Timer1->setSingleShot(true);
  Timer1->setInterval(kStartDelay);
  connect(Timer1, &QTimer::timeout, this, &MyComm::Timer1_Timer);
}

MyComm::~MyComm() = default;

void MyComm::StartSearch(int port) {
  Timer1->stop();
  search_.reset();
  restart_.reset();
  result_ = {};
  stop_ = std::stop_source();
  number_ = port;
  device_ = ports_.DeviceName(port);
  port_ = ports_.Port(port);
  failed_ = !port_->Open();
  label_.clear();
  if (failed_) return;
  ShowStatus(tr("Searching"));
  Timer1->start();
}

void MyComm::StopSearch() {
  stop_.request_stop();
  if (Pending()) {
    Timer1->stop();
    port_->Close();
    ShowStatus(Said(kNoPanelText));
  } else if (search_ && !search_->Finished()) {
    search_->Advance();  // a panel that has answered by now is restarted
    search_->Stop();
    SearchEnded();
  }
}

bool MyComm::Pending() const { return Timer1->isActive(); }

bool MyComm::Searching() const {
  return (search_ && !search_->Finished()) || (restart_ && !restart_->Finished());
}

std::optional<OpenFailure> MyComm::WhyClosed() const { return failed_ ? port_->WhyClosed() : std::nullopt; }

Microseconds MyComm::NextTime() const { return restart_ ? restart_->NextTime() : search_->NextTime(); }

void MyComm::Timer1_Timer() {
  Timer1->stop();
  search_.emplace(*port_, time_,
                  [this](const std::string& text) { ShowStatus(QString::fromStdString(text)); });
  if (Searching()) {
    Q_EMIT Began();
  } else {
    SearchEnded();  // somebody else took the port meanwhile
  }
}

void MyComm::Advance() {
  if (restart_) {
    restart_->Advance();
    if (restart_->Finished()) Q_EMIT Changed();
    return;
  }
  search_->Advance();
  if (search_->Finished()) SearchEnded();
}

void MyComm::SearchEnded() {
  result_ = search_->Result();
  if (result_.Panel) restart_.emplace(*port_, time_, stop_.get_token());
  Q_EMIT Changed();
}

void MyComm::ShowStatus(const QString& text) {
  label_ = text;
  Q_EMIT Changed();
}

}  // namespace qdm
