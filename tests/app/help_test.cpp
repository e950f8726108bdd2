#include "app/help.h"

#include "app/help_window.h"
#include "support/fake_prompts.h"

#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTest>
#include <QTextBrowser>

#include <gmock/gmock.h>

namespace qdm {
namespace {

// The help file that this build made.
std::filesystem::path ProgramFolder() { return std::filesystem::path(QDM_BINARY_DIR) / "bin"; }

std::unique_ptr<ChmFile> OpenHelp() {
  return ChmFile::Open(QString::fromStdString((ProgramFolder() / "qdm.chm").string()));
}

TEST(Help, EveryPageIsThereWithItsPictures) {
  const auto file = OpenHelp();
  ASSERT_TRUE(file);
  QStringList pages;
  for (const QString& page : Help::Pages()) pages << QLatin1Char('/') + page;  // the forms' own
  for (const HelpTopic& topic : file->Contents()) pages << topic.Path;
  ASSERT_GT(pages.size(), 15);
  static const QRegularExpression kReference(QStringLiteral("(?:src|href)=\"([^\":#]+)\""));
  for (const QString& path : pages) {
    const auto page = file->Read(path);
    ASSERT_TRUE(page) << path.toStdString();
    for (auto found = kReference.globalMatch(QString::fromUtf8(*page)); found.hasNext();) {
      const QString target = QLatin1Char('/') + found.next().captured(1);
      EXPECT_TRUE(file->Read(target)) << path.toStdString() << " refers to " << target.toStdString();
    }
  }
}

TEST(Help, AMissingOrBrokenFileIsToldInABox) {
  FakePrompts prompts;
  Help help(ProgramFolder() / "no such folder", prompts);
  help.Show(nullptr, {});
  ASSERT_EQ(prompts.Shown.size(), 1U);
  EXPECT_THAT(prompts.LastText(), testing::HasSubstr("qdm.chm"));
  EXPECT_FALSE(ChmFile::Open(QString::fromUtf8(QDM_SOURCE_DIR) + QStringLiteral("/LICENSE")));
}

TEST(HelpWindow, FindsPagesByTheirWordsAndGoesBack) {
  HelpWindow window(OpenHelp());
  window.ShowPage(QStringLiteral("download.html"));
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const auto* browser = window.findChild<QTextBrowser*>(QStringLiteral("Browser"));
  EXPECT_THAT(browser->toPlainText().toStdString(), testing::HasSubstr("64 records"));
  QTest::keyClicks(window.findChild<QLineEdit*>(QStringLiteral("SearchText")),
                   QStringLiteral("DIALOUT group"));
  auto* found = window.findChild<QListWidget*>(QStringLiteral("Found"));
  ASSERT_EQ(found->count(), 1);
  found->setCurrentRow(0);
  EXPECT_EQ(browser->source().path(), QStringLiteral("/ports.html"));
  QTest::keyClick(&window, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(browser->source().path(), QStringLiteral("/download.html"));
}

}  // namespace
}  // namespace qdm
