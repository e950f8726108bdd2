// The work log of a large firm, 50,000 downloads in three years: from the command to the painted window, and
// the slowest key typed into its filter, painted result included.
#include "app/qt_prompts.h"
#include "forms/work_log/work_log_form.h"
#include "measure.h"
#include "work_log/database.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace qdm::bench {
namespace {

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
    Database database(Log.File(), Database::Access::Existing, WorkLog::kPatience);
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
  double Type(const QString& text) {
    return ProcessorSeconds([&] {
      Form.findChild<QLineEdit*>(QStringLiteral("Filter"))->setText(text);
      QApplication::processEvents();
    });
  }
};

// The window is opened, "room 7 failed" typed and taken back: the time of the slowest key.
double SlowestKey(LargeLog& large) {
  const QString typed = QStringLiteral("room 7 failed");
  OpenWindow window(large.Log);
  window.Settle();
  double slowest = 0;
  for (qsizetype key = 1; key < 2 * typed.size(); ++key) {
    const qsizetype length = std::min(key, 2 * typed.size() - key - 1);
    slowest = std::max(slowest, window.Type(typed.left(length)));
  }
  return slowest;
}

}  // namespace

void MeasureWorkLog(Table& table) {
  LargeLog large;
  std::vector<double> shown;
  std::vector<double> keys;
  for (int i = 0; i < 11; ++i) {
    shown.push_back(ProcessorSeconds([&] { const OpenWindow window(large.Log); }));
    keys.push_back(SlowestKey(large));
  }
  table.Value("showing the work log, 50,000 downloads", Median(shown) * 1000, "ms", 100);
  table.Value("slowest key in the work log's filter", Median(keys) * 1000, "ms", 16);
}

}  // namespace qdm::bench
