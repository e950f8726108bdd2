#include "forms/work_log/sheet_pages.h"

#include "base/file_access.h"
#include "base/words.h"
#include "forms/shared/qt_text.h"
#include "work_log/commissioning_sheet.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QPageLayout>
#include <QPdfWriter>
#include <QSettings>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <vector>

namespace qdm {
namespace {

const QString kByKey = QStringLiteral("sheet/by");
constexpr double kMargin = 12;  // millimetres

// In the order of the stored numbers.
constexpr std::array<const char*, kLockButtons> kPictures = {
    "button_volume_up", "button_volume_down", "button_pc1", "button_pc2", "button_video", "button_power"};

std::string PictureSource(const char* name) {
  QFile file(QStringLiteral(":/icons/%1@2x.png").arg(QLatin1String(name)));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return "data:image/png;base64," + file.readAll().toBase64().toStdString();
}

std::string LocalTime(std::chrono::sys_seconds time) {
  return QLocale()
      .toString(QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count()), QLocale::ShortFormat)
      .toStdString();
}

std::vector<WorkLogEntry> DownloadsOf(const std::filesystem::path& file, WorkLog& log) {
  std::vector<WorkLogEntry> entries;
  if (file.empty()) return entries;
  try {
    entries = log.Entries();
  } catch (const FileError&) {
    return entries;
  }
  std::erase_if(entries, [room = RoomOfFile(file)](const WorkLogEntry& entry) { return entry.File != room; });
  return entries;
}

// A ligature is one character to whoever searches the pages for "off". Any letter spacing that is not nothing
// (1/64 of a dot) switches them off.
void SwitchOffLigatures(QTextDocument& document) {
  QTextCharFormat format;
  format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
  format.setFontLetterSpacing(0.02);
  QTextCursor whole(&document);
  whole.select(QTextCursor::Document);
  whole.mergeCharFormat(format);
}

Bytes PdfOf(const QString& html) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setCreator(QStringLiteral("Brevan QDM Editor"));
  PrintSheet(html, writer);
  return Bytes(buffer.data().begin(), buffer.data().end());
}

}  // namespace

QString SheetHtml(const PanelConfiguration& configuration, const std::filesystem::path& file, WorkLog& log,
                  const QString& by) {
  const InEnglish asFile;
  SheetFacts facts;
  facts.Configuration = configuration;
  facts.Room = file.empty() ? Say("not saved") : PathToUtf8(file.stem());
  facts.Date = QLocale().toString(QDate::currentDate(), QLocale::LongFormat).toStdString();
  facts.By = by.toStdString();
  facts.Downloads = DownloadsOf(file, log);
  std::transform(kPictures.begin(), kPictures.end(), facts.Pictures.begin(), PictureSource);
  facts.TimeText = LocalTime;
  return QString::fromStdString(CommissioningSheetHtml(facts));
}

void PrintSheet(const QString& html, QPagedPaintDevice& pages) {
  pages.setPageSize(QPageSize(QPageSize::A4));
  pages.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
  QTextDocument document;
  document.setHtml(html);
  SwitchOffLigatures(document);
  document.documentLayout()->setPaintDevice(&pages);
  document.setPageSize(pages.pageLayout().paintRectPixels(pages.logicalDpiX()).size());
  document.print(&pages);
}

Bytes SheetFor(const QString& html, const std::filesystem::path& file) {
  const QString ending = QString::fromStdString(PathToUtf8(file.extension())).toLower();
  if (ending == QLatin1String(".html")) {
    const QByteArray text = html.toUtf8();
    return Bytes(text.begin(), text.end());
  }
  if (ending == QLatin1String(".pdf")) return PdfOf(html);
  throw FileError(file, "write", Say("a sheet ends in .pdf or .html"));
}

QString CommissionedBy(const QSettings& settings) { return settings.value(kByKey).toString(); }
void KeepCommissionedBy(QSettings& settings, const QString& by) { settings.setValue(kByKey, by); }

}  // namespace qdm
