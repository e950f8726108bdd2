#include "forms/download/find_panel_form.h"

#include "forms/download/my_comm.h"
#include "support/closed_ports.h"
#include "support/form_time.h"
#include "support/panel_descriptions.h"

#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

struct FindSession {
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
  // "COM1<tab>ttyUSB0<tab>..." of every row that is shown, as Copy takes them.
  std::vector<std::string> Rows() const {
    QTest::mouseClick(Form->findChild<QPushButton*>(QStringLiteral("Copy")), Qt::LeftButton);
    std::vector<std::string> rows;
    for (const QString& row : QGuiApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts)) {
      rows.push_back(row.toStdString());
    }
    return rows;
  }
  std::string Instruction() const {
    return Form->findChild<QLabel*>(QStringLiteral("Instruction"))->text().toStdString();
  }
};

TEST(FindPanel, SearchesEveryPortThatExistsAtTheSameTimeAndRestartsWhatItFound) {
  FindSession session;
  SimulatedPanel& panel =
      session.Ports.AttachPanel(1, "ttyUSB0", SimulatedPanel(Described(kQdm7, "19200,e,8,2")));
  SimulatedPanel& amplifier =
      session.Ports.AttachPanel(4, "ttyUSB2", SimulatedPanel(Described(kTlVox, "115200,o,8,2", {}, 1, 2)));
  session.Ports.AttachPanel(5, "ttyUSB3",
                            SimulatedPanel(Described(kQdm4, "9600,n,8,2", {"no-restart-ack"}, 1, 2)));
  session.Ports.AttachLine(9, "ttyS0");
  session.Ports.AttachLine(11, "ttyS1");
  session.Ports.Closed = {{11, {OpenFailure::Reason::Held, "minicom (4711)"}}};
  session.Open();
  session.Time.Plan(milliseconds(4100), [&] { EXPECT_FALSE(panel.InSetUpMode()) << "not at the end alone"; });
  session.RunAll();
  EXPECT_THAT(
      session.Rows(),
      ElementsAre("COM1\tttyUSB0\tQDM7 1.3\t19200,e,8,2\tFound and restarted",
                  "COM4\tttyUSB2\tTL-VOX 1.2\t115200,o,8,2\tFound and restarted",
                  "COM5\tttyUSB3\tQDM4 1.2\t9600,n,8,2\tIt failed to restart: switch its power off and on",
                  "COM9\tttyS0\t\t\tNo QDM found", "COM11\tttyS1\t\t\tIn use by minicom (4711)"));
  EXPECT_FALSE(amplifier.InSetUpMode());
  EXPECT_EQ(session.Time.Elapsed(), milliseconds(15000)) << "as long as the one silent port";
}

TEST(FindPanel, ClaimsNothingOfWhatItWasStoppedBefore) {
  FindSession session;
  session.Ports.AttachPanel(1, "ttyUSB0", SimulatedPanel(Described(kQdm7, "115200,o,8,2")));
  session.Open();
  session.Time.Plan(milliseconds(2500), [&] { QTest::keyClick(session.Form.get(), Qt::Key_Escape); });
  session.RunAll();
  EXPECT_THAT(session.Rows(), ElementsAre("COM1\tttyUSB0\t\t\tNo QDM found, asked at 2 of 15 line settings"));
  EXPECT_THAT(session.Instruction(), testing::HasSubstr("Stopped before every line setting was tried"));
  EXPECT_TRUE(session.Form->isVisible());
}

}  // namespace
}  // namespace qdm
