#include "download/forms/find_panel_form.h"

#include "download/forms/my_comm.h"
#include "support/closed_ports.h"
#include "support/form_time.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

SimulatedPanel PanelAt(Identification who, std::string settings) {
  return SimulatedPanel({.Panel = who, .Settings = std::move(settings), .Faults = {}});
}

struct Session {
  FormTime Time;
  ClosedPorts Ports{Time};
  std::unique_ptr<FindPanel> Form;

  void Open() {
    Form = std::make_unique<FindPanel>(Ports, Time);
    Form->show();
  }
  // The searches of all ports begin together, as their timers would have them.
  void RunAll() {
    std::vector<MyComm*> pending;
    for (MyComm* comm : Form->findChildren<MyComm*>()) {
      if (comm->Pending()) pending.push_back(comm);
    }
    ASSERT_FALSE(pending.empty());
    for (std::size_t i = 1; i < pending.size(); ++i) {
      Time.Plan({}, [comm = pending[i]] {
        if (comm->Pending()) comm->Timer1_Timer();
      });
    }
    pending.front()->Timer1_Timer();
  }
  MyComm* Comm(int port) const {
    for (MyComm* comm : Form->findChildren<MyComm*>()) {
      if (comm->Port() == port) return comm;
    }
    return nullptr;
  }
  QRadioButton* Option1(int port) const {
    return Comm(port)->findChild<QRadioButton*>(QStringLiteral("Option1"));
  }
  QLabel* Label1(int port) const { return Comm(port)->findChild<QLabel*>(QStringLiteral("Label1")); }
  std::string Text(const char* label) const {
    return Form->findChild<QLabel*>(QLatin1String(label))->text().toStdString();
  }
  void Click(const char* button) {
    QTest::mouseClick(Form->findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
  }
};

TEST(MyComm, ShowsSearchingForHalfASecondFirst) {
  Session session;
  session.Ports.AttachLine(3, "ttyUSB0");
  MyComm comm(session.Ports, session.Time);
  comm.StartSearch(3);
  EXPECT_EQ(comm.findChild<QLabel*>(QStringLiteral("Label1"))->text(), QStringLiteral("Searching"));
  EXPECT_EQ(comm.findChild<QRadioButton*>(QStringLiteral("Option1"))->text(), QStringLiteral("3"));
  EXPECT_TRUE(comm.Pending());
  EXPECT_EQ(comm.findChild<QTimer*>(QStringLiteral("Timer1"))->interval(), 500);
  comm.StopSearch();
  EXPECT_FALSE(comm.Pending());
  EXPECT_EQ(comm.findChild<QLabel*>(QStringLiteral("Label1"))->text(), QStringLiteral("No QDM found"));

  comm.StartSearch(4);  // no such port
  EXPECT_FALSE(comm.Opened());
  EXPECT_TRUE(comm.findChild<QLabel*>(QStringLiteral("Label1"))->isHidden());
  EXPECT_TRUE(comm.findChild<QRadioButton*>(QStringLiteral("Option1"))->isHidden());
}

TEST(FindPanel, SearchesEveryPortThatExistsAtTheSameTime) {
  Session session;
  session.Ports.AttachPanel(1, "ttyUSB0", PanelAt({1, 1, 3}, "19200,e,8,2"));
  session.Ports.AttachPanel(3, "ttyUSB1", PanelAt({3, 2, 10}, "9600,n,8,2"));
  session.Ports.AttachPanel(4, "ttyUSB2", PanelAt({4, 1, 2}, "115200,o,8,2"));
  session.Ports.AttachLine(9, "ttyS0");
  session.Open();
  session.RunAll();
  EXPECT_EQ(session.Label1(1)->text(), QStringLiteral("QDM7 1.3"));
  EXPECT_EQ(session.Label1(3)->text(), QStringLiteral("QDM4 2.10"));
  EXPECT_EQ(session.Label1(4)->text(), QStringLiteral("1.2")) << "the control has no name for the amplifier";
  EXPECT_EQ(session.Label1(9)->text(), QStringLiteral("No QDM found"));
  EXPECT_FALSE(session.Option1(9)->isVisible());
  EXPECT_EQ(session.Time.Elapsed(), milliseconds(15000)) << "as long as the one silent port";

  QTest::mouseClick(session.Option1(1), Qt::LeftButton, {}, QPoint(6, 6));
  EXPECT_EQ(session.Text("Chosen"), "COM1 (ttyUSB0): QDM7 1.3 at 19200,e,8,2");
  QTest::mouseClick(session.Option1(4), Qt::LeftButton, {}, QPoint(6, 6));
  EXPECT_EQ(session.Text("Chosen"), "COM4 (ttyUSB2): TL-VOX 1.2 at 115200,o,8,2");
  EXPECT_FALSE(session.Option1(1)->isChecked());
}

TEST(FindPanel, StopsAtOnceAndSearchesAgain) {
  Session session;
  session.Ports.AttachPanel(2, "ttyUSB0", PanelAt({2, 1, 3}, "38400,n,8,2"));
  session.Open();
  session.Time.Plan(milliseconds(1300), [&] { session.Click("Stopper"); });
  session.RunAll();
  EXPECT_EQ(session.Time.Elapsed(), milliseconds(1300));
  EXPECT_EQ(session.Label1(2)->text(), QStringLiteral("No QDM found"));
  EXPECT_THAT(session.Text("Instruction"), HasSubstr("No panel answered"));
  session.Click("Find");
  session.RunAll();
  EXPECT_EQ(session.Label1(2)->text(), QStringLiteral("QDM6 1.3"));
}

TEST(FindPanel, MayBeClosedOrDeletedInTheMiddle) {
  for (const bool deleted : {false, true}) {
    Session session;
    session.Ports.AttachLine(1, "ttyUSB0");
    session.Ports.AttachLine(2, "ttyUSB1");
    session.Open();
    session.Time.Plan(milliseconds(2300),
                      [&] { deleted ? session.Form.reset() : void(session.Form->close()); });
    session.RunAll();
    EXPECT_EQ(session.Time.Elapsed(), milliseconds(2300));
    EXPECT_TRUE(deleted || !session.Form->isVisible());
  }
}

TEST(FindPanel, TellsWhichGroupOpensAPort) {
  Session session;
  session.Ports.AttachLine(1, "ttyUSB0");
  session.Ports.AttachLine(2, "ttyUSB1");
  session.Ports.Groups = {{1, "dialout"}};
  session.Open();
  const auto* const hint = session.Form->findChild<QLabel*>(QStringLiteral("PortHint"));
  EXPECT_TRUE(hint->isVisible());
  EXPECT_THAT(session.Text("PortHint"), HasSubstr("ttyUSB0 belongs to the group dialout"));
  EXPECT_TRUE(session.Comm(2)->Pending());

  session.Ports.Groups.clear();
  session.RunAll();
  session.Click("Find");
  EXPECT_FALSE(hint->isVisible());
}

TEST(FindPanel, SaysWhenThereIsNoPort) {
  Session session;
  session.Open();
  EXPECT_THAT(session.Text("Instruction"), HasSubstr("no serial port"));
}

}  // namespace
}  // namespace qdm
