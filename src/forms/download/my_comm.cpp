#include "forms/download/my_comm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QTimer>

#include <string>

namespace qdm {
namespace {

constexpr int kStartDelay = 500;  // ms; lets the window be seen first

}  // namespace

MyComm::MyComm(SerialPorts& ports, const Waiting& time, QWidget* parent)
    : QWidget(parent),
      ports_(ports),
      time_(time),
      Option1(new QRadioButton(this)),
      Label1(new QLabel(this)),
      Timer1(new QTimer(this)) {
  Option1->setObjectName(QStringLiteral("Option1"));
  Label1->setObjectName(QStringLiteral("Label1"));
  Label1->setTextFormat(Qt::PlainText);
  Timer1->setObjectName(QStringLiteral("Timer1"));
  Timer1->setSingleShot(true);
  Timer1->setInterval(kStartDelay);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(Option1);
  row->addWidget(Label1, 1);
  setMinimumHeight(Option1->sizeHint().height());  // no jump when it appears
  Option1->hide();
  Label1->hide();
  connect(Timer1, &QTimer::timeout, this, &MyComm::Timer1_Timer);
  connect(Option1, &QRadioButton::clicked, this, [this] {
    ShowChosen(true);
    Q_EMIT Chosen();
  });
}

MyComm::~MyComm() = default;

void MyComm::StartSearch(int port) {
  Timer1->stop();
  search_.reset();
  result_ = {};
  number_ = port;
  port_ = ports_.Port(port);
  Option1->hide();
  ShowChosen(false);
  if (!port_->Open()) port_.reset();
  Label1->setVisible(Opened());
  if (!Opened()) return;
  Option1->setText(QString::number(port));
  ShowStatus(QStringLiteral("Searching"));
  Timer1->start();
}

void MyComm::StopSearch() {
  if (Pending()) {
    Timer1->stop();
    port_->Close();
    ShowStatus(QLatin1String(kNoPanelText));
    Q_EMIT Finished();
  } else if (Searching()) {
    search_->Stop();
    Finish();
  }
}

bool MyComm::Pending() const { return Timer1->isActive(); }

bool MyComm::Searching() const { return search_ && !search_->Finished(); }

void MyComm::Timer1_Timer() {
  Timer1->stop();
  search_.emplace(*port_, time_,
                  [this](const std::string& text) { ShowStatus(QString::fromStdString(text)); });
  if (Searching()) {
    Q_EMIT Began();
  } else {
    Finish();  // somebody else took the port meanwhile
  }
}

void MyComm::Advance() {
  search_->Advance();
  if (search_->Finished()) Finish();
}

void MyComm::Finish() {
  result_ = search_->Result();
  Option1->setVisible(result_.Panel.has_value());
  if (result_.Panel) {
    Option1->setAccessibleName(QStringLiteral("COM%1, %2").arg(number_).arg(Label1->text()));
  }
  Q_EMIT Finished();
}

// An option button that is alone in its group could be switched off by a second click.
void MyComm::ShowChosen(bool chosen) { Option1->setChecked(chosen); }

void MyComm::ShowStatus(const QString& text) { Label1->setText(text); }

}  // namespace qdm
