#include "serial_io/port_list.h"
#include "serial_io/pseudo_terminal.h"
#include "support/another_user.h"

#include <QTemporaryDir>
#include <QtGlobal>

#include <gmock/gmock.h>

#include <fstream>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qdm {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

// QDM_PORTS for the length of a test.
struct PortsVariable {
  explicit PortsVariable(const char* value) {
    if (value != nullptr) {
      qputenv("QDM_PORTS", value);
    } else {
      qunsetenv("QDM_PORTS");
    }
  }
  ~PortsVariable() { qunsetenv("QDM_PORTS"); }
};

fs::path FolderOf(const QTemporaryDir& folder) { return folder.path().toStdString(); }

void MakeFile(const fs::path& file, const char* text = "") {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

TEST(PortList, TheVariableNamesTheDevicesInTheOrderOfTheirNumbers) {
  const struct {
    const char* Value;
    std::optional<PortDevices> Expected;
  } cases[] = {
      {nullptr, std::nullopt},
      {"", PortDevices{}},
      {"/dev/ttyUSB0, /dev/pts/7 ", PortDevices{"/dev/ttyUSB0", "/dev/pts/7"}},
      {",/dev/b,", PortDevices{"", "/dev/b", ""}},
      {"1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18",
       PortDevices{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14", "15", "16"}},
  };
  for (const auto& [value, expected] : cases) {
    const PortsVariable variable(value);
    EXPECT_EQ(DevicesFromEnvironment(), expected) << (value != nullptr ? value : "not set");
  }
}

TEST(PortList, ListsAdaptersAndThosePortsOnTheBoardThatHaveHardware) {
  const QTemporaryDir folder;
  const fs::path devices = FolderOf(folder) / "dev";
  const fs::path classes = FolderOf(folder) / "class";
  for (const char* name :
       {"ttyUSB10", "ttyUSB2", "ttyACM0", "ttyS0", "ttyS1", "ttyS2", "tty1", "null", "ptmx"}) {
    MakeFile(devices / name);
  }
  MakeFile(classes / "ttyS0" / "type", "0\n");
  MakeFile(classes / "ttyS1" / "type", "4\n");
  const auto listed = [&] { return DevicesListedIn(devices, classes); };
  const auto path = [&](const char* name) { return (devices / name).string(); };
  EXPECT_THAT(listed(), ElementsAre(path("ttyACM0"), path("ttyS1"), path("ttyUSB2"), path("ttyUSB10")));

  for (int i = 20; i < 40; ++i) MakeFile(devices / ("ttyUSB" + std::to_string(i)));
  EXPECT_EQ(listed().size(), std::size_t{kPortSlots});
  EXPECT_THAT(DevicesListedIn(devices / "missing", classes), IsEmpty());
}

TEST(PortList, PortsAreThoseOfTheMomentTheyAreAskedFor) {
  const auto ports = MakeSystemPorts();
  const PseudoTerminal first;
  const PseudoTerminal second;
  const PortsVariable variable((first.Device() + ",," + second.Device() + ",/dev/missing").c_str());
  EXPECT_EQ("/dev/" + ports->DeviceName(1), first.Device());
  EXPECT_EQ("/dev/" + ports->DeviceName(3), second.Device());
  for (const int number : {1, 3}) EXPECT_TRUE(ports->Port(number)->Open()) << number;
  for (const int number : {2, 4, 5, 16}) {
    EXPECT_EQ(ports->DeviceName(number), "") << number;
    EXPECT_FALSE(ports->Port(number)->Open()) << number;
  }
  qputenv("QDM_PORTS", second.Device().c_str());
  EXPECT_EQ("/dev/" + ports->DeviceName(1), second.Device());
  EXPECT_EQ(ports->DeviceName(3), "");
}

TEST(PortList, TellsWhichGroupOpensAPortThatIsClosedToTheUser) {
  const QTemporaryDir folder;
  ASSERT_EQ(::chmod(FolderOf(folder).c_str(), 0755), 0);
  const fs::path device = FolderOf(folder) / "ttyUSB0";
  MakeFile(device);
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(device.c_str(), AnotherUser::kNobody, ::getegid()), 0);
  }
  fs::create_symlink(device, FolderOf(folder) / "by-id");
  const AnotherUser user;
  // Closed to its owner, to whom this test belongs, open to its group.
  ASSERT_EQ(::chmod(device.c_str(), 0060), 0);
  using Reason = OpenFailure::Reason;
  const OpenFailure notAllowed{Reason::NotAllowed, ::getgrgid(::getegid())->gr_name};
  EXPECT_EQ(WhyDeviceIsClosed(device.string()), notAllowed);
  const PortsVariable variable(device.c_str());
  EXPECT_EQ(MakeSystemPorts()->WhyClosed(1), notAllowed);
  EXPECT_EQ(MakeSystemPorts()->WhyClosed(2), OpenFailure{Reason::Gone}) << "no such port";
  const std::unique_ptr<SerialPort> port = PortAt(FolderOf(folder) / "by-id");
  EXPECT_FALSE(port->Open());
  EXPECT_EQ(port->WhyClosed(), notAllowed);

  ASSERT_EQ(::chmod(device.c_str(), 0), 0);
  EXPECT_EQ(WhyDeviceIsClosed(device.string()), OpenFailure{Reason::NotAllowed}) << "no group would do";
  ASSERT_EQ(::chmod(device.c_str(), 0600), 0);
  EXPECT_EQ(WhyDeviceIsClosed(device.string()).value().Why, Reason::Refused) << "it is a file";
}

}  // namespace
}  // namespace qdm
