// The main window as the program starts it, on a library and settings of its own folder.
#pragma once

#include "config/configuration_file.h"
#include "config/version.h"
#include "forms/editor/projector_panel_editor.h"
#include "forms/projectors/library_fixture.h"
#include "forms/projectors/projector_tree.h"
#include "forms/shared/qt_text.h"

#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSettings>
#include <QToolBar>
#include <QToolButton>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qdm {

inline const std::string kStartTitle = "Brevan QDM Editor " + VersionText();

class EditorFixture : public LibraryFixture {
 protected:
  EditorFixture() {
    windows_.Selector = [this](QWidget*) {
      if (inSelector_) inSelector_();
    };
    windows_.Download = [this](QWidget*, const PanelConfiguration& configuration) {
      opened_.push_back("download");
      downloaded_ = configuration;
    };
  }

  // The window as the program starts it, on the library of the fixture.
  ProjectorPanelEditor& Start(const QString& commandLine = {}) {
    window_.reset();
    globals_.ProjectorDatabase.MarkUnchanged(
        WriteProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase));
    window_ = std::make_unique<ProjectorPanelEditor>(globals_, prompts_, settings_, windows_);
    window_->Form_Load();
    window_->show();
    window_->OpenNamedFile(commandLine);
    window_->OfferKeptWork();
    return *window_;
  }

  // A file with this configuration; the projector is in the library.
  QString Write(const char* name, PanelConfiguration configuration = {}) {
    if (!HasBothNames(configuration.Projector)) configuration.Projector = Named("ACME", "X 1", 1);
    if (!globals_.ProjectorDatabase.FindProjector(configuration.Projector)) Put({configuration.Projector});
    WriteConfiguration(folder_ / name, configuration, OldTail::Dropped);
    return QString::fromStdString((folder_ / name).string());
  }
  QString Path(const char* name) const { return QString::fromStdString((folder_ / name).string()); }

  void Press(const char* key) { Child<QAction>(*window_, key).trigger(); }
  void Check(const char* name) { Child<QAbstractButton>(*window_, name).click(); }
  // An option that every type shows.
  void ChangeSomething() { Check("LockUsingButtonsCheck"); }
  std::string Title() const { return window_->windowTitle().toStdString(); }
  std::string Label(const char* name) const { return Child<QLabel>(*window_, name).text().toStdString(); }
  std::string Status() const { return Label("StatusText"); }
  std::vector<std::string> Boxes() {
    std::vector<std::string> texts;
    for (const Message& message : prompts_.Shown) texts.push_back(message.Text);
    prompts_.Shown.clear();
    return texts;
  }
  QList<QAction*> RecentFiles() const {
    return qobject_cast<QToolButton*>(ButtonOf(*window_, "OPEN"))->menu()->actions();
  }
  Lines RecentNames() const {
    Lines names;
    for (const QAction* action : RecentFiles())
      names.push_back(action->text().section(QStringLiteral("  "), 1).toStdString());
    return names;
  }
  ProjectorTree& Tree() const { return Child<ProjectorTree>(*window_, "TreeView1"); }
  void ClickProjector(const char* manufacturer, const char* model) {
    Tree().expandAll();
    const QModelIndex index = Tree().Model().IndexOf(Named(manufacturer, model));
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(index).center());
  }
  void Drop(const QString& fileName) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(fileName)});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window_.get(), &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window_.get(), &drop);
    QCoreApplication::processEvents();
  }

  const std::string saved_ = "QDM configuration saved";
  EditorWindows windows_;
  QSettings settings_{QString::fromStdString((folder_ / "settings.ini").string()), QSettings::IniFormat};
  std::unique_ptr<ProjectorPanelEditor> window_;
  std::vector<std::string> opened_;
  PanelConfiguration downloaded_;
  std::function<void()> inSelector_;
};

}  // namespace qdm
