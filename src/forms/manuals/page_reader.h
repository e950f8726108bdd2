// Reads a page of a manual out of a file: text as it is, a PDF through the program pdftotext where that is
// installed, once with the page's layout and once without, of which the reading that tells more is taken. Of
// a long manual only the pages count on which something is understood. Never blocks: the text comes with a
// signal, and a program that does not end is stopped.
#pragma once

#include "base/message.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

class QProcess;
class QTimer;

namespace qdm {

class PageReader : public QObject {
  Q_OBJECT

 public:
  explicit PageReader(QObject* parent = nullptr);
  ~PageReader() override;

  // Stops what it was reading.
  void Read(const QString& fileName);
  void Stop();
  void SetTimeLimit(std::chrono::milliseconds limit);

 Q_SIGNALS:
  // Lines end with a line feed.
  void Ready(const QString& text);
  void Failed(const qdm::Message& message);

 private:
  struct Pages;

  void ReadTextFile();
  void StartProgram(const QStringList& arguments);
  void Program_Finished(int exitCode);
  QString Name() const;  // the file's, without its folder
  void Fail(const QString& text);
  void ReadNextPage();
  void TakeBetter();

  QString file_;
  QTimer* timeOut_;
  QTimer* nextPage_;
  std::unique_ptr<QProcess> program_;
  std::unique_ptr<Pages> layout_;
  std::unique_ptr<Pages> plain_;
};

}  // namespace qdm
