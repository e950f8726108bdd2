#include "app/help_window.h"

#include "forms/controls/screen_fit.h"
#include "forms/shared/link_colour.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QIcon>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace qdm {
namespace {

constexpr int kPathRole = Qt::UserRole;

// Pages, style sheets and pictures come out of the help file.
class HelpBrowser : public QTextBrowser {
 public:
  explicit HelpBrowser(const ChmFile& file) : file_(file) {
    setOpenExternalLinks(true);
    ColourLinks();
  }

  QVariant loadResource(int type, const QUrl& name) override {
    const QUrl whole = source().resolved(name);
    const std::optional<QByteArray> bytes = file_.Read(whole.path());
    if (!bytes) return {};
    if (type == QTextDocument::ImageResource) return QImage::fromData(*bytes);
    return QString::fromUtf8(*bytes);
  }

 protected:
  void changeEvent(QEvent* event) override {
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return;
    ColourLinks();
    reload();
  }

 private:
  void ColourLinks() {
    document()->setDefaultStyleSheet(
        QStringLiteral("a { color: %1 }").arg(LinkColour(palette(), QPalette::Base).name()));
  }

  const ChmFile& file_;
};

QString PlainTextOf(const QByteArray& page) {
  QTextDocument document;
  document.setHtml(QString::fromUtf8(page));
  return document.toPlainText();
}

}  // namespace

HelpWindow::HelpWindow(std::unique_ptr<ChmFile> file)
    : file_(std::move(file)),
      topics_(file_->Contents()),
      browser_(new HelpBrowser(*file_)),
      contents_(new QTreeWidget),
      searchText_(new QLineEdit),
      found_(new QListWidget) {
  setWindowTitle(tr("Brevan QDM Editor Help"));
  setWindowIcon(QApplication::windowIcon());
  resize(1220, 720);
  FitToScreen(this);
  NameControls();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(MakeToolbar());
  layout->addWidget(MakePanes(), 1);
  FillContents();
  ConnectControls();
}

void HelpWindow::NameControls() {
  contents_->setObjectName(QStringLiteral("Contents"));
  contents_->setAccessibleName(tr("Contents"));
  contents_->header()->hide();
  searchText_->setObjectName(QStringLiteral("SearchText"));
  searchText_->setPlaceholderText(tr("Words to look for"));
  searchText_->setAccessibleName(tr("Words to look for"));
  searchText_->setClearButtonEnabled(true);
  found_->setObjectName(QStringLiteral("Found"));
  found_->setAccessibleName(tr("Pages found"));
  browser_->setObjectName(QStringLiteral("Browser"));
  browser_->setAccessibleName(tr("Help page"));
}

QWidget* HelpWindow::MakeToolbar() {
  auto* const tools = new QToolBar;
  QAction* const back = tools->addAction(style()->standardIcon(QStyle::SP_ArrowBack), tr("Back"));
  QAction* const forward = tools->addAction(style()->standardIcon(QStyle::SP_ArrowForward), tr("Forward"));
  QAction* const home = tools->addAction(style()->standardIcon(QStyle::SP_DirHomeIcon), tr("First page"));
  back->setShortcuts(QKeySequence::Back);
  forward->setShortcuts(QKeySequence::Forward);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
  connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
  connect(home, &QAction::triggered, this, [this] { ShowPage({}); });
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  return tools;
}

// Contents and search beside the page.
QWidget* HelpWindow::MakePanes() {
  auto* const search = new QWidget;
  auto* const searchLayout = new QVBoxLayout(search);
  searchLayout->addWidget(searchText_);
  searchLayout->addWidget(found_);
  auto* const tabs = new QTabWidget;
  tabs->setAccessibleName(tr("Contents and search"));
  tabs->addTab(contents_, tr("&Contents"));
  tabs->addTab(search, tr("&Search"));

  auto* const splitter = new QSplitter;
  splitter->addWidget(tabs);
  splitter->addWidget(browser_);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({270, 950});
  return splitter;
}

void HelpWindow::ConnectControls() {
  connect(browser_, &QTextBrowser::sourceChanged, this,
          [this](const QUrl& url) { FollowInContents(url.path()); });
  connect(contents_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item != nullptr) ShowPage(item->data(0, kPathRole).toString());
  });
  connect(searchText_, &QLineEdit::textChanged, this, &HelpWindow::Search);
  connect(found_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
    if (item != nullptr) ShowPage(item->data(kPathRole).toString());
  });
}

void HelpWindow::ShowPage(const QString& page) {
  QString path = page;
  if (path.isEmpty() && !topics_.empty()) path = topics_.front().Path;
  if (!path.startsWith(QLatin1Char('/'))) path.prepend(QLatin1Char('/'));
  if (browser_->source().path() == path) return;
  QUrl url;
  url.setPath(path);
  browser_->setSource(url);
}

void HelpWindow::FillContents() {
  std::vector<QTreeWidgetItem*> open;
  for (const HelpTopic& topic : topics_) {
    open.resize(std::min(open.size(), static_cast<std::size_t>(topic.Level)));
    auto* const item = open.empty() ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(open.back());
    item->setText(0, topic.Title);
    item->setData(0, kPathRole, topic.Path);
    open.push_back(item);
  }
  contents_->expandAll();
}

void HelpWindow::FollowInContents(const QString& path) {
  for (QTreeWidgetItemIterator item(contents_); *item != nullptr; ++item) {
    if ((*item)->data(0, kPathRole).toString() != path) continue;
    contents_->setCurrentItem(*item);
    return;
  }
}

// Pages that hold every word, in the order of the contents.
void HelpWindow::Search() {
  found_->clear();
  const QStringList words = searchText_->text().simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  if (words.isEmpty()) return;
  for (const HelpTopic& topic : topics_) {
    const QString text = PlainTextOf(file_->Read(topic.Path).value_or(QByteArray()));
    const bool holdsAll = std::all_of(words.begin(), words.end(), [&text](const QString& word) {
      return text.contains(word, Qt::CaseInsensitive);
    });
    if (!holdsAll) continue;
    auto* const item = new QListWidgetItem(topic.Title, found_);
    item->setData(kPathRole, topic.Path);
  }
}

}  // namespace qdm
