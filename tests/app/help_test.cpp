#include "app/help.h"

#include "app/about_form.h"
#include "app/help_window.h"
#include "config/version.h"
#include "support/fake_prompts.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

#include <gmock/gmock.h>

namespace qdm {
namespace {

// The help file that this build made.
std::filesystem::path ProgramFolder() { return std::filesystem::path(QDM_BINARY_DIR) / "bin"; }

std::unique_ptr<ChmFile> OpenHelp() {
  return ChmFile::Open(QString::fromStdString((ProgramFolder() / "qdm.chm").string()));
}

TEST(Help, EveryPageOfTheContentsIsThereWithItsPictures) {
  const auto file = OpenHelp();
  ASSERT_TRUE(file);
  const std::vector<HelpTopic> topics = file->Contents();
  ASSERT_GT(topics.size(), 15U);
  static const QRegularExpression kReference(QStringLiteral("(?:src|href)=\"([^\":#]+)\""));
  for (const HelpTopic& topic : topics) {
    const auto page = file->Read(topic.Path);
    ASSERT_TRUE(page) << topic.Path.toStdString();
    for (auto found = kReference.globalMatch(QString::fromUtf8(*page)); found.hasNext();) {
      const QString target = QLatin1Char('/') + found.next().captured(1);
      EXPECT_TRUE(file->Read(target)) << topic.Path.toStdString() << " refers to " << target.toStdString();
    }
  }
}

TEST(Help, EveryFormHasAPageThatExists) {
  const auto file = OpenHelp();
  ASSERT_TRUE(file);
  FakePrompts prompts;
  const AboutForm unknown(ProgramFolder(), prompts);
  EXPECT_TRUE(Help::PageFor(&unknown).isEmpty());
  for (const QString& page : Help::Pages())
    EXPECT_TRUE(file->Read(QLatin1Char('/') + page)) << page.toStdString();
}

TEST(Help, AMissingOrBrokenFileIsToldInABox) {
  FakePrompts prompts;
  Help help(ProgramFolder() / "no such folder", prompts);
  help.Show(nullptr, {});
  ASSERT_EQ(prompts.Shown.size(), 1U);
  EXPECT_THAT(prompts.LastText(), testing::HasSubstr("qdm.chm"));
  EXPECT_FALSE(ChmFile::Open(QString::fromUtf8(QDM_SOURCE_DIR) + QStringLiteral("/LICENSE")));
}

TEST(HelpWindow, FindsPagesByTheirWordsAndGoesBackAndForward) {
  HelpWindow window(OpenHelp());
  window.ShowPage(QStringLiteral("download.html"));
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const auto* browser = window.findChild<QTextBrowser*>(QStringLiteral("Browser"));
  const auto* contents = window.findChild<QTreeWidget*>(QStringLiteral("Contents"));
  EXPECT_THAT(browser->toPlainText().toStdString(), testing::HasSubstr("64 records"));
  EXPECT_EQ(contents->currentItem()->text(0), QStringLiteral("Programming a panel"));

  QTest::keyClicks(window.findChild<QLineEdit*>(QStringLiteral("SearchText")),
                   QStringLiteral("DIALOUT group"));
  auto* found = window.findChild<QListWidget*>(QStringLiteral("Found"));
  ASSERT_EQ(found->count(), 1);
  found->setCurrentRow(0);
  EXPECT_EQ(browser->source().path(), QStringLiteral("/ports.html"));

  QTest::keyClick(&window, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(browser->source().path(), QStringLiteral("/download.html"));
  QTest::keyClick(&window, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(browser->source().path(), QStringLiteral("/ports.html"));
}

TEST(AboutForm, ShowsTheVersionAndOpensTheLicenceBesideTheProgram) {
  FakePrompts prompts;
  const QString folder =
      QDir::tempPath() + QStringLiteral("/qdm-about-%1").arg(QCoreApplication::applicationPid());
  ASSERT_TRUE(QDir().mkpath(folder));
  AboutForm form(folder.toStdString(), prompts);
  EXPECT_THAT(form.findChild<QLabel*>(QStringLiteral("VersionLabel"))->text().toStdString(),
              testing::HasSubstr(VersionText()));

  QString opened;
  form.OpenFile = [&opened](const QString& name) {
    opened = name;
    return true;
  };
  auto* licence = form.findChild<QPushButton*>(QStringLiteral("Licence"));
  licence->click();
  EXPECT_EQ(prompts.Shown.size(), 1U) << "there is no licence file yet";
  QFile file(folder + QStringLiteral("/licence.txt"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  licence->click();
  EXPECT_EQ(opened, file.fileName());
  EXPECT_EQ(prompts.Shown.size(), 1U);
  QDir(folder).removeRecursively();
}

}  // namespace
}  // namespace qdm
