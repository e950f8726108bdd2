#include "app/end_of_session.h"

#include "panels/panel_in_hand.h"
#include "serial_io/sleeping_waiting.h"

#include <QApplication>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <cstdlib>
#include <utility>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#endif

namespace qdm {
namespace {

constexpr int kBetweenClosings = 50;  // ms
constexpr int kMostClosings =
    60'000 / kBetweenClosings;  // restarting panels that do not answer takes its time

// For who leaves the program without asking anybody; nothing shows or runs events from here on.
std::function<void()>* g_keep = nullptr;

void KeepAtExit() {
  if (g_keep == nullptr) return;
  (*std::exchange(g_keep, nullptr))();
  SleepingWaiting time;
  RestartPanelsInHand(time);
}

// One toolkit's plug-in leaves by exit() when the screen is gone, another by _exit(): both say so before.
QtMessageHandler g_otherHandler = nullptr;

void ListenForTheLastWords(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  const bool broken = text.contains(QLatin1String("connection broke")) ||
                      text.contains(QLatin1String("connection experienced a fatal error"));
  if (broken && QThread::currentThread() == qApp->thread()) KeepAtExit();
  g_otherHandler(type, context, text);
}

#ifndef _WIN32
int g_pipe[2] = {-1, -1};

extern "C" void WriteSignal(int) {
  const char byte = 0;
  [[maybe_unused]] const auto written = write(g_pipe[1], &byte, 1);
}
#endif

}  // namespace

EndOfSession::EndOfSession(std::function<void()> keep, std::function<void()> leave)
    : keep_(std::move(keep)), leave_(std::move(leave)) {
  g_keep = &keep_;
  static const int registered = std::atexit(KeepAtExit);
  static_cast<void>(registered);
  g_otherHandler = qInstallMessageHandler(ListenForTheLastWords);
  // Not the end yet, the session may go on when another program refuses; but nobody says when it is.
  connect(
      qApp, &QGuiApplication::commitDataRequest, this,
      [this](QSessionManager&) {
        keep_();
        SleepingWaiting time;
        RestartPanelsInHand(time);
      },
      Qt::DirectConnection);
  WatchSignals();
}

EndOfSession::~EndOfSession() {
  qInstallMessageHandler(g_otherHandler);
  g_keep = nullptr;
}

#ifdef _WIN32
// A windowed program gets no signals there: the session's end comes as commitDataRequest.
void EndOfSession::WatchSignals() {}
#else
void EndOfSession::WatchSignals() {
  if (pipe(g_pipe) != 0) return;
  for (const int end : g_pipe) fcntl(end, F_SETFD, FD_CLOEXEC);
  fcntl(g_pipe[1], F_SETFL, O_NONBLOCK);
  auto* notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    [[maybe_unused]] const auto got = read(g_pipe[0], &byte, 1);
    End();
  });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, WriteSignal);
}
#endif

void EndOfSession::End() {
  keep_();
  if (std::exchange(ending_, true)) return;
  leave_();
  CloseWindows();
}

// One at a time: what a window leaves open while it finishes is asked again.
void EndOfSession::CloseWindows() {
  QWidget* top = QApplication::activePopupWidget();
  if (top == nullptr) top = QApplication::activeModalWidget();
  if (top == nullptr || ++closings_ > kMostClosings) return QCoreApplication::quit();
  // Before it closes: it may open another one to ask something, and waits there.
  QTimer::singleShot(kBetweenClosings, this, &EndOfSession::CloseWindows);
  top->close();
}

}  // namespace qdm
