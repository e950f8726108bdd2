// The commissioning sheet as pages: a PDF whose text can be searched and copied, or HTML with its pictures
// inside. Needs fonts (a QGuiApplication) but no display.
#pragma once

#include "config/panel_configuration.h"
#include "work_log/work_log.h"

#include <QString>

#include <filesystem>

class QPagedPaintDevice;
class QSettings;
class QTextDocument;

namespace qdm {

// Of the configuration in `file`, which may be empty for one that was never saved. Where the log cannot be
// read, the sheet has no downloads.
QString SheetHtml(const PanelConfiguration& configuration, const std::filesystem::path& file, WorkLog& log,
                  const QString& by);

// A4, with margins.
void PrintSheet(const QString& html, QPagedPaintDevice& pages);

// What the file is to hold, by its ending: ".pdf" or ".html" in either case. FileError for another one.
Bytes SheetFor(const QString& html, const std::filesystem::path& file);

// Who commissions: asked once, kept in the settings.
QString CommissionedBy(const QSettings& settings);
void KeepCommissionedBy(QSettings& settings, const QString& by);

}  // namespace qdm
