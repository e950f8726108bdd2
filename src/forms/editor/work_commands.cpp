#include "forms/editor/work_commands.h"

#include "config/panel_configuration.h"
#include "forms/work_log/words_page.h"

#include <QMainWindow>
#include <QMenu>
#include <QScrollArea>
#include <QSettings>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <utility>

namespace qdm {
namespace {

const QString kWordsKey = QStringLiteral("mainWindow/words");
constexpr int kWordsColumn = 1;
constexpr int kOptionsColumn = 2;
constexpr int kWordsWidth = 240;

}  // namespace

WorkCommands::WorkCommands(QMainWindow& window, QToolBar& toolbar, QSplitter& columns, QSettings& settings,
                           const WorkWindows& windows, std::function<PanelConfiguration()> shown)
    : QObject(&window),
      window_(window),
      columns_(columns),
      settings_(settings),
      shown_(std::move(shown)),
      page_(new WordsPage(&columns)) {
  columns.insertWidget(kWordsColumn, page_);
  page_->hide();

  auto* menu = new QMenu(&window);
  if (windows.Rooms) {
    AddCommand(*menu, tr("&Rooms..."), Qt::CTRL | Qt::Key_R,
               [this, open = windows.Rooms] { open(&window_); });
  }
  if (windows.WorkLog) {
    AddCommand(*menu, tr("Work &Log..."), Qt::CTRL | Qt::Key_L,
               [this, open = windows.WorkLog] { open(&window_); });
  }
  if (windows.Sheet) {
    AddCommand(*menu, tr("&Sheet..."), Qt::CTRL | Qt::SHIFT | Qt::Key_P,
               [this, open = windows.Sheet] { open(&window_, shown_()); });
  }
  QAction* words = menu->addAction(tr("In &Words"));
  words->setCheckable(true);
  words->setShortcut(Qt::CTRL | Qt::Key_W);
  window.addAction(words);
  connect(words, &QAction::toggled, this, &WorkCommands::ShowWords);
  // The columns have their widths when the window is there.
  QTimer::singleShot(0, words,
                     [words, on = settings.value(kWordsKey, false).toBool()] { words->setChecked(on); });

  auto* button = new QToolButton(&toolbar);
  button->setObjectName(QStringLiteral("WORK"));
  button->setText(tr("Roo&ms"));
  button->setToolTip(tr("Rooms, work log, commissioning sheet, and the configuration in words"));
  button->setIcon(QIcon(QStringLiteral(":/icons/work.png")));
  button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setFocusPolicy(Qt::TabFocus);
  button->setMenu(menu);
  toolbar.addSeparator();
  toolbar.addWidget(button);
}

void WorkCommands::AddCommand(QMenu& menu, const QString& text, const QKeySequence& key,
                              std::function<void()> run) {
  QAction* action = menu.addAction(text, this, std::move(run));
  action->setShortcut(key);
  window_.addAction(action);
}

// Where there is no room for all three, the page takes the place of the first column: the options must not be
// cut.
void WorkCommands::ShowWords(bool visible) {
  QWidget* first = columns_.widget(0);
  if (first->isVisible()) firstWidth_ = first->width();
  const auto* options = qobject_cast<QScrollArea*>(columns_.widget(kOptionsColumn));
  const int spare = columns_.width() - options->widget()->minimumSizeHint().width() - firstWidth_;
  const int left = !visible || spare >= kWordsWidth ? firstWidth_ : 0;
  const int words = visible ? kWordsWidth : 0;
  page_->setVisible(visible);
  first->setVisible(left > 0);
  columns_.setSizes({left, words, columns_.width() - left - words});
  settings_.setValue(kWordsKey, visible);
  ConfigurationChanged();
}

void WorkCommands::ConfigurationChanged() {
  if (!page_->isHidden()) page_->ShowWords(shown_());
}

}  // namespace qdm
