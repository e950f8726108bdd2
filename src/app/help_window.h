// The help window of systems without a viewer of their own: contents, back and forward, search, over the
// pages of a compiled help file.
#pragma once

#include "app/chm_file.h"

#include <QWidget>

#include <memory>
#include <vector>

class QLineEdit;
class QListWidget;
class QTextBrowser;
class QTreeWidget;

namespace qdm {

class HelpWindow : public QWidget {
  Q_OBJECT

 public:
  explicit HelpWindow(std::unique_ptr<ChmFile> file);

  // "download.html"; an empty name is the first page.
  void ShowPage(const QString& page);

 private:
  void NameControls();
  QWidget* MakeToolbar();
  QWidget* MakePanes();
  void ConnectControls();
  void FillContents();
  void FollowInContents(const QString& path);
  void Search();

  std::unique_ptr<ChmFile> file_;
  std::vector<HelpTopic> topics_;
  QTextBrowser* browser_;
  QTreeWidget* contents_;
  QLineEdit* searchText_;
  QListWidget* found_;
};

}  // namespace qdm
