// The main window as a window: its toolbar, its place on the screen, what the desktop brings it. The commands
// stand in projector_panel_editor.cpp.
#include "forms/editor/projector_panel_editor.h"

#include "forms/editor/recent_files.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/window_place.h"
#include "ui_projector_panel_editor.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace qdm {
namespace {

const QString kGeometryKey = QStringLiteral("mainWindow/geometry");
const QString kSplitterKey = QStringLiteral("mainWindow/splitter");
constexpr QSize kFirstSize(1366, 730);
constexpr int kTreeWidth = 240;
constexpr int kNarrowTreeWidth = 160;

QKeySequence RecentFilesKey() { return {Qt::CTRL | Qt::SHIFT | Qt::Key_O}; }

bool HasSuffix(const QString& fileName, const char* suffix) {
  return fileName.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

QString DroppedFile(const QMimeData* data) {
  for (const QUrl& url : data->urls()) {
    QString fileName = url.toLocalFile();
    if (HasSuffix(fileName, ".BVC") || HasSuffix(fileName, ".BVD")) return fileName;
  }
  return {};
}

}  // namespace

ProjectorPanelEditor::ProjectorPanelEditor(Globals& globals, UserPrompts& prompts, QSettings& settings,
                                           EditorWindows windows)
    : globals_(globals),
      prompts_(prompts),
      settings_(settings),
      windows_(std::move(windows)),
      ui_(std::make_unique<Ui::ProjectorPanelEditor>()),
      recentFiles_(new RecentFiles(settings, this)),
      history_([this](const PanelConfiguration& past) { Restore(past); }) {
  ui_->setupUi(this);
  ui_->TreeView1->RememberIn(settings_);
  ui_->TreeView1->SetLibrary(globals_.ProjectorDatabase);
  ui_->Filter->SetView(ui_->TreeView1);
  SetUpToolbar();
  work_ = new WorkCommands(*this, *ui_->Toolbar1, *ui_->Splitter, settings_, windows_.Work,
                           [this] { return RecordAsShown(); });
  ConnectControls();
  RestoreWindow();
}

// The focus still moves while the base class takes the window apart.
ProjectorPanelEditor::~ProjectorPanelEditor() { disconnect(qApp, nullptr, this, nullptr); }

void ProjectorPanelEditor::SetUpToolbar() {
  auto* open = qobject_cast<QToolButton*>(ui_->Toolbar1->widgetForAction(ui_->OPEN));
  open->setPopupMode(QToolButton::MenuButtonPopup);
  open->setMenu(recentFiles_);
  connect(new QShortcut(RecentFilesKey(), this), &QShortcut::activated, open, &QToolButton::showMenu);
  for (QAction* action : ui_->Toolbar1->actions()) {
    ui_->Toolbar1->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  }
  ui_->UNDO->setShortcut(Qt::CTRL | Qt::Key_Z);
  QList<QKeySequence> redo{Qt::CTRL | Qt::SHIFT | Qt::Key_Z};
#ifdef _WIN32
  redo.prepend(Qt::CTRL | Qt::Key_Y);
#endif
  ui_->REDO->setShortcuts(redo);

  const struct {
    QAction* Action;
    bool There;
  } windows[] = {{ui_->EDITPROJECTOR, windows_.Selector != nullptr},
                 {ui_->DOWNLOAD, windows_.Download != nullptr},
                 {ui_->HELP, windows_.Help != nullptr},
                 {ui_->ABOUT, windows_.About != nullptr}};
  for (const auto& window : windows) {
    if (window.There) continue;
    window.Action->setEnabled(false);
    window.Action->setToolTip(tr("%1: not available in this version").arg(window.Action->toolTip()));
  }
  ui_->StatusBar->EnableFindPanel(windows_.FindPanel != nullptr);
  ui_->StatusBar->EnableBench(windows_.Bench != nullptr);
  ShowToolTips();
}

// The commands' established words, and the keys behind them; EXIT has no words.
void ProjectorPanelEditor::ShowToolTips() {
  const QUndoStack& steps = history_.Steps();
  ui_->UNDO->setEnabled(steps.canUndo());
  ui_->REDO->setEnabled(steps.canRedo());
  ui_->UNDO->setToolTip(steps.canUndo() ? tr("Undo: %1").arg(steps.undoText()) : tr("Nothing to undo"));
  ui_->REDO->setToolTip(steps.canRedo() ? tr("Redo: %1").arg(steps.redoText()) : tr("Nothing to redo"));
  for (QAction* action : ui_->Toolbar1->actions()) {
    QString keys = action->shortcut().toString(QKeySequence::NativeText);
    if (action == ui_->OPEN) keys = tr("%1, recent files %2", "keys").arg(keys, RecentFilesKey().toString());
    if (action == ui_->HELP && action->isEnabled()) keys = QKeySequence(Qt::Key_F1).toString();
    const QString tip = action == ui_->EXIT ? keys
                        : keys.isEmpty()    ? action->toolTip()
                                            : tr("%1 (%2)", "tip, keys").arg(action->toolTip(), keys);
    ui_->Toolbar1->widgetForAction(action)->setToolTip(tip);
  }
}

void ProjectorPanelEditor::ConnectControls() {
  connect(ui_->NEW, &QAction::triggered, this, &ProjectorPanelEditor::New);
  connect(ui_->OPEN, &QAction::triggered, this, &ProjectorPanelEditor::Open);
  connect(ui_->SAVE, &QAction::triggered, this, &ProjectorPanelEditor::Save);
  connect(ui_->SAVEAS, &QAction::triggered, this, &ProjectorPanelEditor::SaveAs);
  connect(ui_->UNDO, &QAction::triggered, this, &ProjectorPanelEditor::Undo);
  connect(ui_->REDO, &QAction::triggered, this, &ProjectorPanelEditor::Redo);
  connect(ui_->EDITPROJECTOR, &QAction::triggered, this, &ProjectorPanelEditor::EditProjector);
  connect(ui_->DOWNLOAD, &QAction::triggered, this, &ProjectorPanelEditor::Download);
  connect(ui_->EXIT, &QAction::triggered, this, &ProjectorPanelEditor::Exit);
  connect(ui_->HELP, &QAction::triggered, this, &ProjectorPanelEditor::Help);
  connect(ui_->ABOUT, &QAction::triggered, this, &ProjectorPanelEditor::About);
  connect(ui_->StatusBar, &EditorStatusBar::FindPanel_Click, this, &ProjectorPanelEditor::FindPanel);
  connect(ui_->StatusBar, &EditorStatusBar::Bench_Click, this, &ProjectorPanelEditor::Bench);
  connect(recentFiles_, &RecentFiles::Chosen, this, &ProjectorPanelEditor::RecentFile_Click);

  connect(ui_->TreeView1, &ProjectorTree::ElementChosen, this, &ProjectorPanelEditor::TreeView1_NodeClick);
  connect(ui_->TreeView1, &ProjectorTree::SelectionChanged, this,
          &ProjectorPanelEditor::TreeView1_SelectionChange);
  connect(ui_->Filter, &QLineEdit::textChanged, this, &ProjectorPanelEditor::Filter_Change);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui_->Filter,
          [this] { ui_->Filter->setFocus(Qt::ShortcutFocusReason); });

  connect(ui_->Options, &OptionControls::ControllerTypeChosen, this,
          [this](int type) { record_.ControllerType = static_cast<std::int16_t>(type); });
  using Change = ConfigurationHistory::Change;
  connect(ui_->Options, &OptionControls::Changed, this, [this] { NoteChange(Change::Step); });
  connect(ui_->Options, &OptionControls::Typed, this, [this] { NoteChange(Change::Typing); });
  connect(qApp, &QApplication::focusChanged, this, [this] { history_.EndTyping(); });
}

void ProjectorPanelEditor::RestoreWindow() {
  // A dropped file is for the window, not its name for the entry that it falls on.
  for (QLineEdit* entry : findChildren<QLineEdit*>()) entry->setAcceptDrops(false);
  ui_->ProjectorArea->setMinimumWidth(kNarrowTreeWidth);
  ui_->Splitter->setStretchFactor(0, 0);
  ui_->Splitter->setStretchFactor(1, 0);
  ui_->Splitter->setStretchFactor(2, 1);
  resize(kFirstSize.boundedTo(screen()->availableSize()));
  // On a narrow screen the options go first: they are of no use cut.
  const QMargins around = ui_->CentreLayout->contentsMargins();
  const int room = width() - around.left() - around.right() - ui_->Splitter->handleWidth();
  const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  const int spare = room - scrollBar - ui_->Options->FitColumns(room - scrollBar - kNarrowTreeWidth);
  const int tree = std::clamp(spare, kNarrowTreeWidth, kTreeWidth);
  ui_->Splitter->setSizes({tree, tree, width() - tree});
  restoreGeometry(settings_.value(kGeometryKey).toByteArray());
  ui_->Splitter->restoreState(settings_.value(kSplitterKey).toByteArray());
  FitToScreen();
}

// Frame included, which the desktop adds: until the window has one, what the style thinks of it.
void ProjectorPanelEditor::FitToScreen() {
  if (isMaximized() || isFullScreen()) return;
  const QRect inner = geometry();
  const QRect outer = frameGeometry();
  QMargins frame(inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
                 outer.bottom() - inner.bottom());
  if (frame.isNull() && !isVisible()) {
    constexpr int kBorder = 4;
    frame = QMargins(kBorder, style()->pixelMetric(QStyle::PM_TitleBarHeight), kBorder, kBorder);
  }
  const QScreen* there = QGuiApplication::screenAt(outer.center());
  const QRect available = (there != nullptr ? there : screen())->availableGeometry();
  if (const QRect fitted = FittedTo(available, inner, frame); fitted != inner) setGeometry(fitted);
}

// The desktop gives the window its frame a moment after it is shown.
void ProjectorPanelEditor::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  QTimer::singleShot(0, this, &ProjectorPanelEditor::FitToScreen);
}

// Somebody else may have saved the library while another window was in front.
void ProjectorPanelEditor::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::ActivationChange || !isActiveWindow()) return;
  QTimer::singleShot(0, this, &ProjectorPanelEditor::ReadLibraryAgain);
}

void ProjectorPanelEditor::ReadLibraryAgain() {
  if (QApplication::activeModalWidget() != nullptr) return;
  if (!qdm::ReadLibraryAgain(globals_, prompts_, this)) return;
  RebuildTree();
  ShowProjector();
  ShowStatus(tr("The projectors were changed by another program and have been read again"));
}

void ProjectorPanelEditor::closeEvent(QCloseEvent* event) {
  if (!exiting_ && !MayDiscard()) {
    event->ignore();
    return;
  }
  settings_.setValue(kGeometryKey, saveGeometry());
  settings_.setValue(kSplitterKey, ui_->Splitter->saveState());
  event->accept();
}

void ProjectorPanelEditor::dragEnterEvent(QDragEnterEvent* event) {
  if (!BusyWork::Underway() && !DroppedFile(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

// A box inside the drop would hold up the program that the file came from.
void ProjectorPanelEditor::dropEvent(QDropEvent* event) {
  const QString fileName = DroppedFile(event->mimeData());
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, fileName] { OpenDropped(fileName); });
}

void ProjectorPanelEditor::OpenDropped(const QString& fileName) {
  if (HasSuffix(fileName, ".BVD")) {
    ImportProjectors(fileName);
  } else if (MayDiscard()) {
    OpenConfiguration(fileName);
  }
}

// Nothing can be done in the window before the library is there. The option controls take as long to lay out
// and to paint as all the rest, so they come with the second image.
void ProjectorPanelEditor::ShowFirstImage() {
  constexpr int kLongest = 500;  // ms; an image that nobody sees is not waited for
  ui_->Options->hide();
  show();
  QTimer patience;
  patience.setSingleShot(true);
  patience.start(kLongest);
  while (patience.isActive() && !windowHandle()->isExposed())
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace qdm
