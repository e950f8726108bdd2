#include "forms/projectors/library_wait_form.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace qdm {
namespace {

constexpr LibraryPatience::Milliseconds kBusyAfter{500};
constexpr LibraryPatience::Milliseconds kToldAfter{2000};

}  // namespace

LibraryWaitForm::LibraryWaitForm(QWidget* parent) : QDialog(parent), owner_(new QLabel(this)) {
  setWindowTitle(tr("Waiting"));
  setModal(true);
  owner_->setObjectName(QStringLiteral("Owner"));
  owner_->setTextFormat(Qt::PlainText);
  owner_->setWordWrap(true);
  owner_->setMinimumWidth(360);
  auto* giveUp = new QPushButton(tr("Give up"), this);
  giveUp->setObjectName(QStringLiteral("GiveUp"));
  auto* column = new QVBoxLayout(this);
  column->addWidget(owner_);
  column->addWidget(giveUp, 0, Qt::AlignRight);
  connect(giveUp, &QPushButton::clicked, this, &LibraryWaitForm::reject);
}

LibraryWaitForm::~LibraryWaitForm() {
  if (busyPointer_) QGuiApplication::restoreOverrideCursor();
}

LibraryPatience LibraryWaitForm::Patience() {
  LibraryPatience patience;
  patience.Pause = [this](LibraryPatience::Milliseconds time) { Pause(time); };
  patience.KeepWaiting = [this](const std::string& owner, LibraryPatience::Milliseconds waited) {
    return KeepWaiting(owner, waited);
  };
  return patience;
}

// Being modal, this window alone takes input; before it is there, keys and clicks wait in their queue.
void LibraryWaitForm::Pause(LibraryPatience::Milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec(isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
}

bool LibraryWaitForm::KeepWaiting(const std::string& owner, LibraryPatience::Milliseconds waited) {
  if (waited >= kBusyAfter && !busyPointer_) {
    busyPointer_ = true;
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
  }
  if (waited < kToldAfter) return true;
  if (owner_->text().isEmpty()) {
    owner_->setText(owner.empty() ? tr("Another program is saving the projector data base. It is waited for.")
                                  : tr("The projector data base is in use by %1. It is waited for.")
                                        .arg(QString::fromStdString(owner)));
    show();
  }
  return isVisible();
}

}  // namespace qdm
