#include "forms/manuals/page_reader.h"

#include "base/code_page.h"
#include "base/file_access.h"
#include "base/words.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/qt_text.h"
#include "projectors/manual_draft.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTimer>

#include <cstdint>
#include <string>
#include <utility>

namespace qdm {
namespace {

constexpr std::chrono::seconds kTimeLimit{30};
constexpr qsizetype kLargestText = 4 * 1024 * 1024;  // a manual of a thousand pages
// Up to here a manual is taken whole: what one page says of the line or of a terminator holds for the others.
constexpr qsizetype kWholeManual = 12;

// UTF-16 and UTF-8 tell by their bytes; what is neither is in the code page.
QString Decoded(const QByteArray& bytes) {
  QStringDecoder decoder(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Encoding::Utf8));
  QString text = decoder(bytes);
  if (!decoder.hasError()) return text;
  std::u16string characters;
  for (const char byte : bytes) characters += CharacterOf(static_cast<std::uint8_t>(byte));
  return ToQString(characters);
}

QString WithLineFeeds(QString text) {
  return text.replace(QLatin1String("\r\n"), QLatin1String("\n"))
      .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

}  // namespace

// One extraction of a PDF, and what of it was kept so far.
struct PageReader::Pages {
  QStringList Texts;  // a page each
  qsizetype Next = 0;
  QStringList Kept;

  explicit Pages(const QByteArray& output)
      : Texts(WithLineFeeds(QString::fromUtf8(output)).split(QLatin1Char('\f'))) {
    if (Texts.size() > kWholeManual) return;
    Kept = Texts;
    Next = Texts.size();
  }
  bool ReadAll() const { return Next == Texts.size(); }
  void ReadOne() {
    const QString& page = Texts.at(Next++);
    if (!ReadManual(page.toStdU16String()).Empty()) Kept << page;
  }
  QString Text() const { return Kept.join(QLatin1Char('\n')).trimmed(); }
};

PageReader::PageReader(QObject* parent)
    : QObject(parent), timeOut_(new QTimer(this)), nextPage_(new QTimer(this)) {
  timeOut_->setSingleShot(true);
  timeOut_->setInterval(kTimeLimit);
  nextPage_->setInterval(0);
  connect(timeOut_, &QTimer::timeout, this, [this] {
    Fail(tr("Reading %1 takes too long. Copy the pages with the commands out of a PDF viewer instead.")
             .arg(Name()));
  });
  connect(nextPage_, &QTimer::timeout, this, &PageReader::ReadNextPage);
}

PageReader::~PageReader() { Stop(); }

void PageReader::SetTimeLimit(std::chrono::milliseconds limit) { timeOut_->setInterval(limit); }

void PageReader::Stop() {
  timeOut_->stop();
  nextPage_->stop();
  if (program_) {
    QProcess* program = program_.release();
    program->disconnect(this);
    connect(program, &QProcess::finished, program, &QObject::deleteLater);
    if (program->state() == QProcess::NotRunning) program->deleteLater();
    program->kill();
  }
  layout_.reset();
  plain_.reset();
}

QString PageReader::Name() const { return QFileInfo(file_).fileName(); }

void PageReader::Fail(const QString& text) {
  Stop();
  Q_EMIT Failed({text.toStdString(), Say("Sorry"), MessageIcon::Exclamation});
}

void PageReader::Read(const QString& fileName) {
  Stop();
  file_ = fileName;
  if (!fileName.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) return ReadTextFile();
  timeOut_->start();
  StartProgram({QStringLiteral("-layout")});
}

void PageReader::ReadTextFile() {
  try {
    const Bytes bytes =
        DoBusy(nullptr, tr("Still reading %1.").arg(Name()), [this] { return ReadWholeFile(ToPath(file_)); });
    if (bytes.size() > kLargestText) return Fail(tr("%1 is too large for a page of a manual.").arg(Name()));
    const QString text = WithLineFeeds(
        Decoded({reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())}));
    if (text.contains(QChar(u'\0'))) return Fail(tr("%1 is neither text nor a PDF.").arg(Name()));
    Q_EMIT Ready(QString(text).replace(QLatin1Char('\f'), QLatin1Char('\n')));
  } catch (const FileError& error) {
    Stop();
    Q_EMIT Failed(SorryAbout(error));
  }
}

void PageReader::StartProgram(const QStringList& arguments) {
  const QString program = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
  if (program.isEmpty()) {
    return Fail(tr("%1 cannot be read: the program pdftotext (poppler-utils) is not installed.\r\n\r\nOpen "
                   "the manual in "
                   "a PDF viewer, select the pages with the commands, copy them (Ctrl+C) and paste them here "
                   "(Ctrl+V).")
                    .arg(Name()));
  }
  program_ = std::make_unique<QProcess>();
  program_->setStandardInputFile(QProcess::nullDevice());
  connect(program_.get(), &QProcess::finished, this, &PageReader::Program_Finished);
  connect(program_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart)
      Fail(tr("%1 cannot be read: pdftotext does not start.").arg(Name()));
  });
  program_->start(program, arguments + QStringList{QStringLiteral("-enc"), QStringLiteral("UTF-8"), file_,
                                                   QStringLiteral("-")});
}

void PageReader::Program_Finished(int exitCode) {
  const std::unique_ptr<QProcess, void (*)(QProcess*)> program(
      program_.release(), [](QProcess* process) { process->deleteLater(); });
  const QByteArray output = program->readAllStandardOutput();
  if (program->exitStatus() != QProcess::NormalExit || exitCode != 0) {
    const QString reason = QString::fromLocal8Bit(program->readAllStandardError()).trimmed().left(300);
    return Fail(tr("%1 cannot be read.\r\n%2").arg(Name(), reason));
  }
  if (output.size() > kLargestText) return Fail(tr("%1 is too long to be read whole.").arg(Name()));
  auto& pages = layout_ ? plain_ : layout_;
  pages = std::make_unique<Pages>(output);
  if (!plain_) return StartProgram({});
  timeOut_->stop();
  nextPage_->start();
}

// A page at each turn of the event loop.
void PageReader::ReadNextPage() {
  for (Pages* pages : {layout_.get(), plain_.get()}) {
    if (!pages->ReadAll()) return pages->ReadOne();
  }
  TakeBetter();
}

void PageReader::TakeBetter() {
  const QString layout = layout_->Text();
  const QString plain = plain_->Text();
  if (layout.isEmpty() && plain.isEmpty()) {
    return Fail(tr("Nothing can be read in %1. A PDF of scanned pages holds pictures instead of text: a "
                   "program for text "
                   "recognition can give its text.")
                    .arg(Name()));
  }
  const bool plainTellsMore =
      BetterReading(ReadManual(plain.toStdU16String()), ReadManual(layout.toStdU16String()));
  Stop();
  Q_EMIT Ready(plainTellsMore ? plain : layout);
}

}  // namespace qdm
