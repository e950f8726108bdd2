// The work log of a large firm, 50,000 downloads in three years: from the command to the painted window, and
// the slowest key typed into its filter, painted result included. Built for 100 ms and 16 ms.

#include "app/qt_prompts.h"
#include "forms/work_log/work_log_form.h"
#include "work_log/database.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace qdm {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

struct LargeLog {
  QTemporaryDir Folder;
  WorkLog Log{Folder.path().toStdString()};

  LargeLog() {
    WorkLogEntry first;
    first.Began = std::chrono::sys_days(std::chrono::year(2023) / 11 / 21);
    first.Panel = {.Model = 1, .Major = 1, .Minor = 3};
    first.Port = "COM3";
    first.Device = "ttyUSB0";
    first.Settings = first.Listens = "19200,e,8,2";
    first.Records = 64;
    Log.Add(first, Bytes(3161, 0));
    // Every half an hour, in 40 buildings with 25 rooms each. The entry is copied with everything else.
    Database database(Log.File(), Database::Access::Existing);
    Transaction transaction(database);
    database.Run(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 49999) "
        "INSERT INTO download SELECT NULL, configuration, began + 1890 * i, 'Building ' || (i % 40) || "
        "' Room ' || (i / 40 % 25), '/rooms/' || (i % 1000), type, i % 4 + 1, major, minor, "
        "'COM' || (i % 16 + 1), device, settings, listens, records, retries, duration, i % 50 = 7, image "
        "FROM download, n WHERE number = 1");
    transaction.Commit();
  }
};

struct OpenWindow {
  QtPrompts Prompts;
  WorkLogForm Form;

  explicit OpenWindow(WorkLog& log) : Form(log, Prompts, {}) {
    Form.show();
    QApplication::processEvents();
  }
  // Until all of it has been read and nothing is left to do.
  void Settle() {
    const auto* count = Form.findChild<QLabel*>(QStringLiteral("Count"));
    while (count->text().isEmpty()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
  }
  Milliseconds Type(const QString& text) {
    const auto start = std::chrono::steady_clock::now();
    Form.findChild<QLineEdit*>(QStringLiteral("Filter"))->setText(text);
    QApplication::processEvents();
    return std::chrono::steady_clock::now() - start;
  }
};

void ShowWorkLog(benchmark::State& state) {
  LargeLog large;
  for ([[maybe_unused]] auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const OpenWindow window(large.Log);
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
}
BENCHMARK(ShowWorkLog)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

// A turn opens the window, types "room 7 failed" and takes it back: the time is that of its slowest key.
void TypeIntoWorkLogFilter(benchmark::State& state) {
  LargeLog large;
  const QString typed = QStringLiteral("room 7 failed");
  double slowest = 0;
  for ([[maybe_unused]] auto _ : state) {
    OpenWindow window(large.Log);
    window.Settle();
    double slowestKey = 0;
    for (qsizetype key = 1; key < 2 * typed.size(); ++key) {
      const qsizetype length = std::min(key, 2 * typed.size() - key - 1);
      slowestKey = std::max(slowestKey, window.Type(typed.left(length)).count());
    }
    state.SetIterationTime(slowestKey / 1000);
    slowest = std::max(slowest, slowestKey);
  }
  state.counters["slowest_key_ms"] = slowest;
}
BENCHMARK(TypeIntoWorkLogFilter)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
}  // namespace qdm
