#include "forms/download/find_panel_form.h"

#include "forms/download/my_comm.h"
#include "simulation/simulated_line.h"
#include "support/form_time.h"

#include <QLabel>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace qdm {
namespace {

using std::chrono::milliseconds;

struct Session {
  FormTime Time;
  SimulatedPorts Ports{Time};
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
  std::string Status(int port) const {
    return Comm(port)->findChild<QLabel*>(QStringLiteral("Label1"))->text().toStdString();
  }
};

TEST(FindPanel, SearchesEveryPortThatExistsAtTheSameTime) {
  Session session;
  session.Ports.AttachPanel(1, "ttyUSB0",
                            SimulatedPanel({.Panel = {1, 1, 3}, .Settings = "19200,e,8,2", .Faults = {}}));
  session.Ports.AttachPanel(4, "ttyUSB2",
                            SimulatedPanel({.Panel = {4, 1, 2}, .Settings = "115200,o,8,2", .Faults = {}}));
  session.Ports.AttachLine(9, "ttyS0");
  session.Open();
  session.RunAll();
  EXPECT_EQ(session.Status(1), "QDM7 1.3");
  EXPECT_EQ(session.Status(4), "1.2") << "the control has no name for the amplifier";
  EXPECT_EQ(session.Status(9), "No QDM found");
  EXPECT_EQ(session.Time.Elapsed(), milliseconds(15000)) << "as long as the one silent port";
  QTest::mouseClick(session.Comm(4)->findChild<QRadioButton*>(), Qt::LeftButton, {}, QPoint(6, 6));
  EXPECT_EQ(session.Form->findChild<QLabel*>(QStringLiteral("Chosen"))->text(),
            QStringLiteral("COM4 (ttyUSB2): TL-VOX 1.2 at 115200,o,8,2"));
}

}  // namespace
}  // namespace qdm
