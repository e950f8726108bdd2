// The window "Commissioning sheet": its pages as they will be printed, who commissions, printing, saving as
// PDF or HTML.
#pragma once

#include "config/panel_configuration.h"
#include "work_log/work_log.h"

#include <QDialog>
#include <QPrinter>

#include <filesystem>
#include <memory>

class QLineEdit;
class QPrintPreviewWidget;
class QSettings;

namespace qdm {

class UserPrompts;

class SheetForm : public QDialog {
  Q_OBJECT

 public:
  // `file` is the configuration's, empty for one that was never saved.
  SheetForm(const PanelConfiguration& configuration, const std::filesystem::path& file, WorkLog& log,
            UserPrompts& prompts, QSettings& settings, QWidget* parent = nullptr);

 private:
  void By_Change();
  void Print_Click();
  void Save_Click(const char* filter);

  const PanelConfiguration configuration_;
  const std::filesystem::path file_;
  WorkLog& log_;
  UserPrompts& prompts_;
  QSettings& settings_;
  QPrinter printer_;
  QString html_;
  QLineEdit* By;
  QPrintPreviewWidget* preview_;
};

}  // namespace qdm
