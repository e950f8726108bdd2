// Version, maker, addresses, and the way to the licence text that lies beside the program.
#pragma once

#include "forms/shared/user_prompts.h"

#include <QDialog>

#include <filesystem>
#include <functional>
#include <memory>

namespace Ui {
class AboutForm;
}

namespace qdm {

class AboutForm : public QDialog {
  Q_OBJECT

 public:
  AboutForm(const std::filesystem::path& programFolder, UserPrompts& prompts, QWidget* parent = nullptr);
  ~AboutForm() override;

  // Opens a file in the desktop's program for it; false when there is none.
  std::function<bool(const QString& fileName)> OpenFile;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowLinks();
  void Licence_Click();

  std::unique_ptr<Ui::AboutForm> ui_;
  std::filesystem::path licence_;
  UserPrompts& prompts_;
};

}  // namespace qdm
