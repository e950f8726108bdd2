#include "forms/download/download_form.h"

#include "config/panel_configuration.h"
#include "forms/shared/globals.h"
#include "panels/frame.h"
#include "support/closed_ports.h"
#include "support/dialog_script.h"
#include "support/fake_prompts.h"
#include "support/form_time.h"
#include "support/panel_descriptions.h"
#include "work_log/known_panel.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::HasSubstr;

constexpr const char* kProgramed = "The QDM panel has been programed";
constexpr const char* kFailed = "The QDM panel failed to program";
constexpr const char* kNoRestart = "The QDM panel failed to restart";

SimulatedPanel PanelWith(int type, const char* settings, const std::vector<std::string>& faults = {}) {
  return SimulatedPanel(Described(type, settings, faults));
}

// The window over simulated ports, from just after loading on.
struct Session {
  FormTime Time;
  FakePrompts Prompts;
  Globals Shared;
  PanelConfiguration Configuration;
  ClosedPorts Ports{Time};
  std::unique_ptr<Download> Form;

  explicit Session(std::int16_t controllerType = kQdm7) {
    Configuration.ControllerType = controllerType;
    Configuration.Projector.VolumeBytePosition = 0;
    Form = std::make_unique<Download>(Shared, Configuration, Ports, Time, Prompts);
    ShowActive(*Form);
  }
  void Search() { Form->Timer1_Timer(); }
  void AttachAllFour() {
    Ports.AttachPanel(1, "ttyUSB0", PanelWith(kQdm7, "19200,e,8,2"));
    Ports.AttachPanel(2, "ttyUSB1", PanelWith(kQdm6, "9600,n,8,2"));
    Ports.AttachPanel(3, "ttyUSB2", SimulatedPanel(Described(kQdm4, "115200,o,8,2", {}, 2, 0)));
    Ports.AttachPanel(4, "ttyUSB3", PanelWith(kTlVox, "9600,o,8,2"));
    Ports.AttachLine(5, "ttyS0");
  }

  template <class Widget = QPushButton>
  Widget* Find(const char* name) const {
    return Form->findChild<Widget*>(QLatin1String(name));
  }
  QRadioButton* Option1(int slot) const {
    return Form->findChild<QRadioButton*>(QStringLiteral("Option1_%1").arg(slot));
  }
  std::string Status(int slot) const {
    return Form->findChild<QLabel*>(QStringLiteral("Label1_%1").arg(slot))->text().toStdString();
  }
  std::string Text(const char* label) const { return Find<QLabel>(label)->text().toStdString(); }
  template <class Button = QPushButton>
  void Click(const char* button) {
    QTest::mouseClick(Find<Button>(button), Qt::LeftButton);
  }
  void ClickOption(int slot) {
    QTest::mouseClick(Option1(slot), Qt::LeftButton, {}, QPoint(8, Option1(slot)->height() / 2));
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const Message& message : Prompts.Shown) texts.push_back(message.Text);
    return texts;
  }
};

TEST(DownloadForm, OffersOnlyPanelsOfTheConfiguredType) {
  const char* const found[] = {"QDM7 1.3", "QDM6 1.3", "QDM4 2.0", "TL-VOX 1.3"};
  for (std::int16_t type = kQdm7; type <= kTlVox; ++type) {
    Session session(type);
    session.AttachAllFour();
    session.Search();
    for (int slot = 0; slot < 4; ++slot) {
      EXPECT_EQ(session.Status(slot), found[slot]);
      EXPECT_EQ(session.Option1(slot)->isEnabled(), slot == type);
      EXPECT_EQ(session.Text(("Note_" + std::to_string(slot)).c_str()).empty(), slot == type)
          << "the others say why";
      EXPECT_EQ(session.Ports.PanelAt(slot + 1)->Restarts(), 1);
    }
    EXPECT_EQ(session.Status(5), "No Port");
  }
}

TEST(DownloadForm, TellsInTheRowWhyAPortDidNotOpenAndSearchesAgain) {
  using Reason = OpenFailure::Reason;
  Session session;
  session.AttachAllFour();
  session.Ports.Closed = {{1, {Reason::NotAllowed, "dialout"}},
                          {4, {Reason::Held, "minicom (4711)"}},
                          {5, {Reason::NotAllowed, "dialout"}}};
  session.Time.Plan(milliseconds(1200), [&] { QTest::keyClick(session.Form.get(), Qt::Key_Escape); });
  session.Search();
  EXPECT_LT(session.Time.Elapsed(), milliseconds(1600)) << "it was stopped";
  const auto* const hint = session.Find<QLabel>("PortHint");
  EXPECT_EQ(hint->text().toStdString(),
            "ttyUSB0, ttyS0 belong to the group dialout: join it (sudo adduser $USER dialout) and log in "
            "again.");
  EXPECT_EQ(session.Status(0), "No Port");
  EXPECT_EQ(session.Text("Note_0"), "No permission: only members of the group dialout may open it");
  EXPECT_EQ(session.Text("Note_3"), "In use by minicom (4711)");
  EXPECT_EQ(session.Text("Note_2"), "Asked at 3 of 15 line settings.");
  EXPECT_THAT(session.Text("ClickSelectLabel"), HasSubstr("may still be there"))
      << "nothing is claimed of settings that were not tried";
  session.Ports.Closed.clear();  // joined
  session.Click("Find");
  EXPECT_FALSE(hint->isVisible());
  EXPECT_EQ(session.Status(0), "QDM7 1.3");
}

// An adapter that comes or goes after the search changes no row.
TEST(DownloadForm, APanelKeepsTheDeviceOnWhichItWasFound) {
  Session session;
  session.Ports.AttachPanel(1, "ttyUSB1", PanelWith(kQdm7, "9600,n,8,2"));
  session.Search();
  session.Ports.Made.at(1)->UnplugAt(session.Time.Now());
  session.Ports.AttachLine(1, "ttyUSB0");
  session.ClickOption(0);
  EXPECT_EQ(session.Prompts.Shown.front().Detail, "COM1 (ttyUSB1)");
  EXPECT_THAT(session.Text("ClickSelectLabel"),
              AllOf(HasSubstr("COM1 (ttyUSB1) was not programmed"), HasSubstr("The device is gone")));
}

TEST(DownloadForm, ProgramNowEndsTheSearchAndRestartsBeforeItProgramsThePanel) {
  Session session;
  session.AttachAllFour();
  session.Time.Plan(milliseconds(2600), [&] { session.Find<QToolButton>("ProgramNow_0")->click(); });
  session.Search();
  EXPECT_EQ(session.Texts(), std::vector<std::string>{kProgramed});
  EXPECT_EQ(session.Ports.PanelAt(1)->Restarts(), 2);
  for (const int number : {1, 2, 4}) EXPECT_FALSE(session.Ports.PanelAt(number)->InSetUpMode()) << number;
  EXPECT_THAT(session.Text("Note_0"), HasSubstr("✓ Programmed at "));
  EXPECT_FALSE(session.Find<QToolButton>("Identify_0")->isVisible()) << "there is one of its kind";
}

TEST(DownloadForm, StopAsksAndRestartsThePanelBeforeItTellsAnything) {
  for (const bool yes : {false, true}) {
    Session session;
    session.Ports.AttachPanel(1, "ttyUSB0", PanelWith(kQdm7, "9600,n,8,2", {"late-ack:%1:100"}));
    session.Search();
    session.Prompts.Answers = {yes};
    int restartsWhenTold = 0;
    session.Prompts.WhileShowing = [&] { restartsWhenTold = session.Ports.PanelAt(1)->Restarts(); };
    session.Time.Plan(milliseconds(3000), [&] { session.Click("Stop"); });
    session.ClickOption(0);
    EXPECT_THAT(session.Texts().front(), HasSubstr("partly written and will not work"));
    EXPECT_EQ(session.Texts().back(), yes ? kFailed : kProgramed);
    EXPECT_EQ(restartsWhenTold, yes ? 2 : 1);
    EXPECT_TRUE(session.Form->isVisible());
    EXPECT_THAT(session.Text("ClickSelectLabel"), HasSubstr(yes ? "of 64 records" : "has been programmed"));
  }
}

TEST(DownloadForm, ProgramsThePanelThatIsClickedOrChosenByKeysButNotByOneMeantForStopFinding) {
  Session session;
  session.Ports.AttachPanel(1, "ttyUSB0", PanelWith(kQdm7, "9600,n,8,2"));
  session.Ports.AttachPanel(3, "ttyUSB1", PanelWith(kQdm7, "9600,n,8,2"));
  session.Search();
  QTest::keyClick(session.Option1(0), Qt::Key_Space);
  EXPECT_EQ(session.Prompts.Shown.size(), 0U) << "it came too soon";
  WaitUntil(session.Time, std::chrono::seconds(1), [] { return false; });
  QTest::keyClick(session.Option1(0), Qt::Key_Down);
  QTest::keyClick(session.Option1(2), Qt::Key_Return);
  EXPECT_EQ(session.Ports.PanelAt(3)->Memory(), BuildPanelImage(session.Configuration));
  EXPECT_EQ(session.Ports.PanelAt(1)->RecordsWritten(), 0);

  bool locked = false;
  session.Time.Plan(milliseconds(100), [&] { locked = !session.Find<QWidget>("CommFrame")->isEnabled(); });
  session.ClickOption(0);
  EXPECT_TRUE(locked);
  EXPECT_EQ(session.Prompts.Shown,
            (std::vector<Message>{{kProgramed, "Done!", MessageIcon::None, "COM3 (ttyUSB1)"},
                                  {kProgramed, "Done!", MessageIcon::None, "COM1 (ttyUSB0)"}}));
  EXPECT_EQ(session.Ports.PanelAt(1)->RecordsWritten(), kRecords);
}

KnownPanel Yesterday(const char* settings) {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  return {"COM3", settings, now - std::chrono::days(1)};
}

TEST(DownloadForm, AsksAKnownPanelFirstAndEveryPortWhereItDoesNotAnswer) {
  for (const bool answers : {true, false}) {
    Session session;
    session.Ports.AttachPanel(3, "ttyUSB0", PanelWith(kQdm7, answers ? "115200,o,8,2" : "9600,n,8,2"));
    session.Ports.AttachLine(5, "ttyS0");
    session.Form->Offer(Yesterday("115200,o,8,2"));
    session.Time.Plan(milliseconds(100), [&] {
      EXPECT_THAT(session.Text("SearchLabel"), HasSubstr("COM3 (ttyUSB0), 115200,o, answered yesterday at "));
    });
    session.Search();
    EXPECT_EQ(session.Time.Elapsed(), milliseconds(answers ? 500 : 16 * 500));
    EXPECT_TRUE(session.Option1(2)->isEnabled());
    EXPECT_EQ(session.Ports.PanelAt(3)->Restarts(), 1) << "it is not left waiting";
    EXPECT_EQ(session.Text("Note_4"),
              answers ? "Not asked: press Find to ask every port." : "Nobody answered at any line setting.");
    session.Click("Find");
    EXPECT_EQ(session.Text("Note_4"), "Nobody answered at any line setting.") << "Find asks all";
  }
}

TEST(DownloadForm, ProgramNowOnAKnownPanelNeedsOneExchangeUntilRecordsFlow) {
  for (const int type : {kQdm7, kQdm6}) {
    Session session;
    session.Ports.AttachPanel(3, "ttyUSB0", PanelWith(type, "19200,e,8,2"));
    session.Form->Offer(Yesterday("19200,e,8,2"));
    session.Click<QToolButton>("ProgramNow_2");
    const bool meant = type == kQdm7;
    EXPECT_EQ(session.Ports.PanelAt(3)->RecordsWritten(), meant ? kRecords : 0) << "a QDM 6 is not";
    EXPECT_EQ(session.Time.Elapsed() < milliseconds(510), meant);
    EXPECT_EQ(session.Ports.PanelAt(3)->Restarts(), 1);
  }
}

TEST(DownloadForm, ShowsABoxForEverythingThatIsToldAndLetsTheUserTryAgain) {
  Session session;
  session.Ports.AttachPanel(7, "ttyUSB0", PanelWith(kQdm7, "38400,n,8,2", {"no-restart-ack"}));
  session.Search();
  session.ClickOption(6);
  EXPECT_EQ(session.Texts(), (std::vector<std::string>{kNoRestart, kProgramed, kNoRestart}));
  EXPECT_TRUE(session.Option1(6)->isEnabled());
  EXPECT_THAT(session.Text("ClickSelectLabel"),
              AllOf(HasSubstr("has been programmed"), HasSubstr("failed to restart")));
}

TEST(DownloadForm, OffersNothingWithoutAnImage) {
  Session session;
  session.AttachAllFour();
  session.Configuration.Projector.VolumeBytePosition = -1;
  session.Search();
  EXPECT_THAT(session.Prompts.LastText(), HasSubstr("VolumeBytePosition"));
  EXPECT_FALSE(session.Find("Find")->isEnabled());
}

// Who has answered is not left waiting: it restarts in every case.
TEST(DownloadForm, MayBeClosedOrDeletedInTheMiddle) {
  for (const bool programming : {false, true}) {
    for (const bool deleted : {false, true}) {
      Session session;
      session.Ports.AttachPanel(1, "ttyUSB0", PanelWith(kQdm7, "9600,e,8,2", {"late-ack:%1:400"}));
      if (programming) session.Search();
      session.Time.Plan(milliseconds(programming ? 5000 : 600),
                        [&] { deleted ? session.Form.reset() : void(session.Form->close()); });
      Download* form = session.Form.get();
      programming ? session.ClickOption(0) : form->Timer1_Timer();
      EXPECT_TRUE(deleted ? session.Form == nullptr : !session.Form->isVisible());
      EXPECT_TRUE(session.Texts().empty()) << "nobody would answer";
      EXPECT_EQ(session.Ports.PanelAt(1)->Restarts(), programming ? 2 : 1);
    }
  }
}

}  // namespace
}  // namespace qdm
