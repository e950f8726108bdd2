#include "forms/controls/integer_entry.h"
#include "forms/editor/editor_fixture.h"
#include "forms/editor/unsaved_work.h"
#include "support/slow_disk.h"

#include <QLabel>
#include <QPlainTextEdit>

#include <map>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using EditorFiles = EditorFixture;

TEST_F(EditorFiles, OpensTheFileOfItsCommandLine) {
  const QString file = Write("Board room.BVC");
  const QString lower = Write("small.bvc");
  const struct {
    QString CommandLine;
    std::string Title;
  } cases[] = {
      {file, "Board room"},
      {QLatin1Char('"') + file + QLatin1Char('"'), "Board room"},
      {QLatin1Char('"') + file, "Board room"},
      {lower, kStartTitle},
      {Path("missing.BVC"), kStartTitle},
      {QString(), kStartTitle},
  };
  for (const auto& c : cases) {
    Start(c.CommandLine);
    EXPECT_EQ(Title(), c.Title) << c.CommandLine.toStdString();
    EXPECT_THAT(Boxes(), IsEmpty());
  }
}

TEST_F(EditorFiles, ImportsTheDefinitionsOfItsCommandLine) {
  Put({Named("ACME", "X 1", 1)});
  ExportDefinitions(folder_ / "New.BVD", {Named("acme", "X 1", 2), Named("acme", "X 2", 3)});
  const DialogScript script({[](QWidget& dialog) { qdm::Click(dialog, "ReplaceInDataBase"); }});
  Start(Path("New.BVD"));
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 2", "ACME / X 2 = 3"));
  EXPECT_EQ(OnDisk(), InMemory()) << "nothing else would save them";
  EXPECT_EQ(Title(), kStartTitle);
  EXPECT_EQ(Tree().Model().ElementsOf(Tree().Model().index(0, 0)).size(), 2U);
  EXPECT_EQ(Status(), "Imported from New.BVD (" + folder_.Path().string() + "): 1 added, 1 replaced");
  Child<QAction>(*window_, "SORT").trigger();
  Start();
  EXPECT_TRUE(Child<QAction>(*window_, "SORT").isChecked()) << "remembered";
}

TEST_F(EditorFiles, OpensAFile) {
  PanelConfiguration configuration;
  configuration.ControllerType = kTlVox;
  configuration.VolumeMin = -12;
  configuration.Projector = Named("ACME", "X 1", 1);
  configuration.Projector.Notes.AssignUtf8("Behind the lectern");
  const QString file = Write("Hall.BVC", configuration);
  Start();
  prompts_.Files = {file};
  Press("OPEN");
  EXPECT_EQ(window_->FileName(), file);
  EXPECT_EQ(Status(), "Opened Hall.BVC (" + folder_.Path().string() + ")");
  EXPECT_EQ(Label("ProjectorLabel"), "Manufacturer = ACME\nModel = X 1");
  EXPECT_EQ(Child<QPlainTextEdit>(*window_, "NotesText").toPlainText(), QStringLiteral("Behind the lectern"));
  EXPECT_EQ(Tree().SelectedElement(), 0U);
  EXPECT_EQ(Child<IntegerEntry>(*window_, "VolumeMin").Value(), -12);
  EXPECT_FALSE(window_->Modified());
}

TEST_F(EditorFiles, LeavesEverythingWhenAFileCannotBeReadOrWritten) {
  const QString file = Write("Good.BVC");
  WriteAndFlush(folder_ / "Short.BVC", Bytes(3160));
  Start(file);
  Check("LockUsingButtonsCheck");
  const PanelConfiguration before = window_->Configuration();
  prompts_.SaveAnswers = {SaveAnswer::DontSave, SaveAnswer::DontSave, SaveAnswer::DontSave};
  prompts_.Files = {Path("Short.BVC"), Path("missing.BVC"), std::nullopt};
  for (const char* reason : {"3160", "missing.BVC"}) {
    prompts_.Shown.clear();
    Press("OPEN");
    ASSERT_EQ(prompts_.Shown.size(), 2U);
    EXPECT_EQ(prompts_.Shown[1].Title, "Sorry");
    EXPECT_THAT(prompts_.Shown[1].Text, testing::HasSubstr(reason));
  }
  Press("OPEN");  // and cancel
  EXPECT_EQ(window_->Configuration(), before);
  std::filesystem::create_directories(folder_ / "Folder.BVC");
  prompts_.Files = {Path("Folder.BVC")};
  Press("SAVEAS");
  EXPECT_EQ(prompts_.Shown.back().Title, "Sorry");
  EXPECT_THAT(prompts_.LastText(), testing::HasSubstr("Folder.BVC"));
  EXPECT_EQ(Title(), "Good");
  EXPECT_TRUE(window_->Modified());
}

TEST_F(EditorFiles, SavesOverItsOwnFileWithoutATailAndOverAnotherWithIt) {
  const QString file = Write("Room.BVC");
  std::filesystem::resize_file(folder_ / "Room.BVC", 5000);
  Start(file);
  Check("OutputsOption_1");
  Press("SAVE");
  ASSERT_EQ(prompts_.Shown.size(), 1U);
  EXPECT_EQ(prompts_.Shown[0], (Message{saved_, "File Saved.", MessageIcon::None}));
  EXPECT_EQ(std::filesystem::file_size(folder_ / "Room.BVC"), kStoredConfigurationSize);
  EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").OutputsOption, kOutputsScreen);
  EXPECT_FALSE(window_->Modified());
  EXPECT_EQ(Status(), "Saved Room.BVC (" + folder_.Path().string() + ")");

  prompts_.Shown.clear();
  WriteAndFlush(folder_ / "Other.BVC", Bytes(4000, 7));
  prompts_.Files = {std::nullopt, Path("Other.BVC")};
  Press("SAVEAS");  // and cancel
  EXPECT_EQ(Title(), "Room");
  Press("SAVEAS");
  EXPECT_THAT(Boxes(), ElementsAre(saved_));
  EXPECT_EQ(Title(), "Other");
  EXPECT_EQ(std::filesystem::file_size(folder_ / "Other.BVC"), 4000U) << "the tail stays";
  EXPECT_EQ(ReadConfiguration(folder_ / "Other.BVC").OutputsOption, kOutputsScreen);
}

TEST_F(EditorFiles, AsksForANameOnlyWhenThereIsNone) {
  Put({Named("ACME", "X 1")});
  Start();
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre("Cannot proceed, no projector has been defined!"));
  ClickProjector("ACME", "X 1");
  prompts_.Files = {Path("First.BVC")};
  Press("SAVE");
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre(saved_, saved_));
  EXPECT_EQ(Title(), "First");
}

TEST_F(EditorFiles, AsksBeforeItSavesOverWhatOthersDid) {
  const QString file = Write("Room.BVC");
  const PanelConfiguration opened = ReadConfiguration(folder_ / "Room.BVC");
  PanelConfiguration theirs = opened;
  theirs.VolumeMax = 6;
  const std::vector<std::pair<const char*, std::string>> answers = {
      {"Cancel", "Room"}, {"Save &as", "Other"}, {"&Open theirs", "Room"}, {"Save &mine", "Room"}};
  for (const auto& [answer, title] : answers) {
    WriteConfiguration(folder_ / "Room.BVC", opened, OldTail::Dropped);
    Start(file);
    ChangeSomething();
    WriteConfiguration(folder_ / "Room.BVC", theirs, OldTail::Dropped);
    prompts_.Choices = {QLatin1String(answer)};
    prompts_.Files = {Path("Other.BVC")};
    prompts_.Shown.clear();
    Press("SAVE");
    EXPECT_THAT(prompts_.Shown.at(0).Detail, testing::HasSubstr("Maximum volume: mine 18, theirs 6"));
    EXPECT_EQ(Title(), title) << answer;
    EXPECT_EQ(window_->Modified(), std::string(answer) == "Cancel");
    EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").VolumeMax,
              std::string(answer) == "Save &mine" ? 18 : 6);
  }
  Press("SAVE");  // over what was saved here: no question
  std::filesystem::remove(folder_ / "Room.BVC");
  prompts_.Choices = {QStringLiteral("Save &here again")};
  Press("SAVE");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Room.BVC"));
}

TEST_F(EditorFiles, AsksBeforeItGivesUpChanges) {
  const QString file = Write("Room.BVC");
  const QString other = Write("Other.BVC");
  const struct {
    const char* What;
    std::function<void()> Do;
    std::string TitleAfter;
  } ways[] = {
      {"NEW", [&] { Press("NEW"); }, kStartTitle},
      {"OPEN",
       [&] {
         prompts_.Files = {other};
         Press("OPEN");
       },
       "Other"},
      {"a recent file", [&] { RecentFiles().at(1)->trigger(); }, "Other"},
      {"a dropped file", [&] { Drop(other); }, "Other"},
      {"the close box", [&] { window_->close(); }, "Room"},
  };
  for (const auto& way : ways) {
    for (const SaveAnswer answer : {SaveAnswer::Cancel, SaveAnswer::DontSave, SaveAnswer::Save}) {
      WriteConfiguration(folder_ / "Room.BVC", ReadConfiguration(folder_ / "Other.BVC"), OldTail::Dropped);
      Start(other);
      window_.reset();
      Start(file);
      ChangeSomething();
      EXPECT_TRUE(Child<QLabel>(*window_, "UnsavedMark").isVisible());
      prompts_.SaveAnswers = {answer};
      prompts_.Files.clear();
      way.Do();
      const bool goesOn = answer != SaveAnswer::Cancel;
      EXPECT_EQ(Title(), goesOn ? way.TitleAfter : "Room") << way.What;
      EXPECT_EQ(window_->isVisible(), way.TitleAfter != "Room" || !goesOn) << way.What;
      EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").LockUsingButtons != 0, answer == SaveAnswer::Save);
      EXPECT_TRUE(prompts_.SaveAnswers.empty()) << way.What << " did not ask";
      prompts_.Shown.clear();
    }
  }
}

TEST_F(EditorFiles, ExitsAtOnceAndKeepsWhatWasNotSaved) {
  const QString file = Write("Room.BVC");
  for (const char* kept : {"Unsaved.BVC", "Unsaved 2.BVC"}) {
    prompts_.Choices.assign(static_cast<std::size_t>(KeptWork(settings_).size()), QStringLiteral("&Later"));
    Start(file);
    Boxes();
    ChangeSomething();
    Press("EXIT");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").LockUsingButtons, 0);
    EXPECT_EQ(ReadConfiguration(folder_ / kept).LockUsingButtons, -1);
  }
  prompts_.Choices = {QStringLiteral("&Discard"), QStringLiteral("&Open")};
  Start(file);
  EXPECT_THAT(Boxes(), ElementsAre(testing::HasSubstr("Unsaved 2.BVC (" + folder_.Path().string() + ")"),
                                   testing::HasSubstr("Unsaved.BVC")))
      << "also when a file is opened at the start";
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Unsaved 2.BVC"));
  EXPECT_EQ(Title(), "Unsaved");
  Press("EXIT");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Unsaved 2.BVC")) << "nothing to keep";
  Start(file);
  EXPECT_THAT(Boxes(), IsEmpty()) << "opened once is dealt with";

  globals_.DataFolder /= "missing";
  ChangeSomething();
  prompts_.Choices = {QStringLiteral("&Stay"), QStringLiteral("&Exit anyway")};
  for (const bool stays : {true, false}) {
    Press("EXIT");
    EXPECT_EQ(window_->isVisible(), stays);
  }
}

TEST_F(EditorFiles, KeepsDefinitionsThatAreNotSavedUntilTheyAre) {
  inSelector_ = [this] {
    globals_.UnstoredProjector = [] { return Named("", "New", 7); };
    Put({Named("ACME", "Added", 8)});
    EXPECT_TRUE(window_->KeepWork() && window_->KeepWork());
    globals_.UnstoredProjector = nullptr;
  };
  Start();
  Press("EDITPROJECTOR");
  EXPECT_THAT(KeptWork(settings_), IsEmpty()) << "the user gave them up";
  globals_.ProjectorDatabase.Clear();
  Start();
  window_->LeaveUnasked();
  Press("EDITPROJECTOR");
  EXPECT_EQ(KeptWork(settings_), QStringList(Path("Unsaved.BVD")));
  globals_.ProjectorDatabase.Clear();
  globals_.Leaving = false;
  prompts_.Choices = {QStringLiteral("&Open")};
  Start();
  EXPECT_THAT(OnDisk(), ElementsAre("ACME / Added = 8", "UNSAVED / New = 7"));
  EXPECT_THAT(KeptWork(settings_), IsEmpty());
}

TEST_F(EditorFiles, SaysWhatTakesSoLongWheneverItTouchesAFile) {
  Put({Named("ACME", "X 1", 1)});
  ExportDefinitions(folder_ / "New.BVD", {Named("ACME", "X 1", 1)});
  const QString file = Write("Room.BVC");
  const struct {
    FileStep Step;
    const char* Path;
    const char* Told;
    std::function<void()> Do;
  } cases[] = {
      {FileStep::Open, "Projectors.DEF", "Still reading the projector data base.", [this] { Start(); }},
      {FileStep::Open, "Room.BVC", "Still opening Room.BVC",
       [&] {
         prompts_.Files = {file};
         Press("OPEN");
       }},
      {FileStep::Open, "Room.BVC", "Still reading Room.BVC.", [this] { Press("SAVE"); }},
      {FileStep::Flush, ".qdm-", "Still saving Room.BVC", [this] { Press("SAVE"); }},
      {FileStep::Read, "New.BVD", "Still reading New.BVD.", [this] { Drop(Path("New.BVD")); }},
      {FileStep::Create, "Unsaved.BVC", "Still keeping what is not saved.",
       [this] {
         ChangeSomething();
         Press("EXIT");
       }},
  };
  for (const auto& c : cases) EXPECT_THAT(ToldOfSlowDisk(c.Step, c.Path, c.Do), testing::StartsWith(c.Told));
}

TEST_F(EditorFiles, RemembersTheLastTenFiles) {
  Start();
  EXPECT_THAT(RecentNames(), ElementsAre(""));
  Lines expected;
  for (int i = 1; i <= 12; ++i) {
    const std::string name = "Room " + std::to_string(i) + ".BVC";
    prompts_.Files = {Write(name.c_str())};
    Press("OPEN");
    expected.insert(expected.begin(), name);
  }
  expected.resize(10);
  EXPECT_EQ(RecentNames(), expected);
  Start();
  EXPECT_EQ(RecentNames(), expected) << "also next time";
  std::filesystem::remove(folder_ / "Room 12.BVC");
  RecentFiles().constFirst()->trigger();
  EXPECT_EQ(prompts_.Shown.back().Title, "Sorry");
  EXPECT_EQ(RecentNames().front(), "Room 11.BVC") << "a file that is gone leaves the list";
}

}  // namespace
}  // namespace qdm
