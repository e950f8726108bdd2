#include "serial_io/posix_serial_port.h"
#include "serial_io/pseudo_terminal.h"
#include "support/event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QLockFile>
#include <QSocketNotifier>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <numeric>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Bytes EveryByte() {
  Bytes bytes(256);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  return bytes;
}

bool Readable(int descriptor) {
  pollfd line{.fd = descriptor, .events = POLLIN, .revents = 0};
  return ::poll(&line, 1, 10'000) == 1;
}

// A port with the raw other end of its line.
struct PosixSerialPortTest : testing::Test {
  bool OtherEndReceives(const Bytes& expected) {
    Bytes received;
    while (received.size() < expected.size() && Readable(otherEnd->Descriptor())) {
      const Bytes more = otherEnd->Read();
      received.insert(received.end(), more.begin(), more.end());
    }
    return received == expected;
  }
  // Bytes take a moment to pass through the system.
  bool Waiting(std::size_t count) {
    return Eventually(time, [&] { return port.BytesWaiting() == count; });
  }

  EventLoopWaiting time;
  std::unique_ptr<PseudoTerminal> otherEnd = std::make_unique<PseudoTerminal>();
  PosixSerialPort port{otherEnd->Device()};
};

TEST_F(PosixSerialPortTest, CarriesEveryByteBothWaysUntouched) {
  port.SetSettings("9600,n,8,2");
  ASSERT_TRUE(port.Open());
  // Written at once: no event loop has run.
  ASSERT_TRUE(port.Write(EveryByte()));
  EXPECT_TRUE(OtherEndReceives(EveryByte()));

  otherEnd->Write(EveryByte());
  ASSERT_TRUE(Waiting(256));
  EXPECT_EQ(port.ReadAll(), EveryByte());
  EXPECT_THAT(port.ReadAll(), IsEmpty());
  EXPECT_THAT(otherEnd->Read(), IsEmpty()) << "an echo";
}

TEST_F(PosixSerialPortTest, AppliesWhatTheDeviceAcceptsOfTheSettings) {
  const struct {
    const char* Settings;
    int Speed;
    int StopBits;
  } cases[] = {
      {"9600,n,8,1", 9600, 1},
      {"19200,e,8,2", 19200, 2},   // pseudo-terminals refuse parity
      {"38400,o,8,1", 38400, 1},   //
      {"38400,e,8,1", 38400, 1},   // nothing that could be accepted has changed
      {"115200,0,8,2", 115200, 2}  // no port accepts this parity
  };
  port.SetSettings("57600,e,8,2");
  ASSERT_TRUE(port.Open());
  EXPECT_EQ(otherEnd->Settings().Speed, 57600);
  EXPECT_EQ(otherEnd->Settings().StopBits, 2);
  for (const bool reopened : {false, true}) {
    for (const auto& [settings, speed, stopBits] : cases) {
      if (reopened) port.Close();
      port.SetSettings(settings);
      if (reopened) {
        ASSERT_TRUE(port.Open()) << settings;
      }
      EXPECT_TRUE(port.IsOpen()) << settings;
      EXPECT_EQ(otherEnd->Settings().Speed, speed) << settings;
      EXPECT_EQ(otherEnd->Settings().StopBits, stopBits) << settings;
      ASSERT_TRUE(port.Write(EveryByte())) << settings;
      EXPECT_TRUE(OtherEndReceives(EveryByte())) << settings;
    }
  }
  port.SetSettings("9600,o,8,1");
  EXPECT_THAT(port.RefusedSettings(), ElementsAre(LineParameter::Parity));
  port.SetSettings("9600,n,8,1");
  EXPECT_THAT(port.RefusedSettings(), IsEmpty());
}

TEST_F(PosixSerialPortTest, ReadsAsClosedWhenTheDeviceGoesAway) {
  using Notices = std::function<bool(PosixSerialPort&)>;
  const Notices ways[] = {
      [](PosixSerialPort& gone) {
        return !gone.Write(Bytes{1, 2, 3});
      },
      [](PosixSerialPort& gone) { return gone.BytesWaiting() == 0; },
      [](PosixSerialPort& gone) { return gone.ReadAll().empty(); },
      [this](PosixSerialPort& gone) { return Eventually(time, [&] { return !gone.IsOpen(); }); },
  };
  for (const Notices& notices : ways) {
    otherEnd = std::make_unique<PseudoTerminal>();
    PosixSerialPort unplugged(otherEnd->Device());
    ASSERT_TRUE(unplugged.Open());
    otherEnd.reset();
    EXPECT_TRUE(notices(unplugged));
    EXPECT_FALSE(unplugged.IsOpen());
    EXPECT_FALSE(unplugged.Write(Bytes{1}));
    EXPECT_EQ(unplugged.BytesWaiting(), 0U);
    unplugged.SetSettings("19200,n,8,2");
    unplugged.Close();
    EXPECT_FALSE(unplugged.Open());
  }
}

TEST_F(PosixSerialPortTest, OpensQuietlyOrNotAtAll) {
  ASSERT_TRUE(port.Open());
  EXPECT_TRUE(port.Open()) << "again";

  const QTemporaryDir folder;
  const QString link = folder.filePath("adapter by another name");
  ASSERT_TRUE(QFile::link(QString::fromStdString(otherEnd->Device()), link));
  const std::string busy[] = {otherEnd->Device(), link.toStdString()};
  const std::string absent[] = {"", "/dev/missing", "missing", "/dev/null", folder.path().toStdString()};
  const std::string holder = "serial_io_tests (" + std::to_string(::getpid()) + ")";
  for (const std::string& device : busy) {
    PosixSerialPort second(device);
    EXPECT_FALSE(second.Open()) << device;
    EXPECT_EQ(second.WhyClosed(), (OpenFailure{OpenFailure::Reason::Held, holder})) << device;
  }
  for (const std::string& device : absent) {
    PosixSerialPort none(device);
    EXPECT_FALSE(none.Open()) << device;
    EXPECT_TRUE(none.WhyClosed()) << device;
  }
  EXPECT_TRUE(port.IsOpen());
  port.Close();
  for (const std::string& device : busy) EXPECT_TRUE(PosixSerialPort(device).Open()) << device;
}

// Programs that use Qt for their lines, and those that only write a number, as minicom.
TEST_F(PosixSerialPortTest, AgreesWithOtherProgramsOnWhoHasTheDevice) {
  if (::access("/var/lock", W_OK) != 0) GTEST_SKIP() << "lock files are elsewhere";
  const std::string number = otherEnd->Device().substr(otherEnd->Device().rfind('/') + 1);
  const QString file = QStringLiteral("/var/lock/LCK..pts_") + QString::fromStdString(number);
  const std::string self = std::to_string(::getpid());
  const struct {
    std::string Content;
    bool Held;
  } cases[] = {{"         " + std::to_string(::getppid()) + "\n", true},
               {"999999999\n", false},
               {self + "\nanother program that bore this number\n", false},
               {"", false}};
  for (const auto& [content, held] : cases) {
    std::ofstream(file.toStdString()) << content;
    EXPECT_EQ(port.Open(), !held) << content;
    EXPECT_EQ(port.WhyClosed().has_value(), held) << content;
    port.Close();
    QFile::remove(file);
  }
  QLockFile others(file);
  ASSERT_TRUE(others.tryLock(0));
  EXPECT_FALSE(port.Open());
  others.unlock();
  ASSERT_TRUE(port.Open());
  EXPECT_FALSE(others.tryLock(0));
  EXPECT_FALSE(others.removeStaleLockFile());
  port.Close();
  EXPECT_FALSE(QFile::exists(file));
}

// Two lines become readable in one turn of the event loop, and what the one brings makes somebody read the
// other: what was to be told of that one is then out of date.
TEST_F(PosixSerialPortTest, GoesOnListeningWhenItIsToldOfInputThatHasBeenRead) {
  const int watched = ::open(otherEnd->Device().c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
  ASSERT_GE(watched, 0);
  // In which order the event loop looks at the two is its own affair.
  for (const bool otherLineFirst : {true, false}) {
    PseudoTerminal otherLine;
    PosixSerialPort sender(otherLine.Device());
    ASSERT_TRUE(sender.Open());
    std::unique_ptr<QSocketNotifier> reader;
    const auto readWithTheOtherLine = [&] {
      reader = std::make_unique<QSocketNotifier>(otherLine.Descriptor(), QSocketNotifier::Read);
      QObject::connect(reader.get(), &QSocketNotifier::activated, reader.get(), [&] {
        otherLine.Read();
        port.ReadAll();
      });
    };
    if (otherLineFirst) readWithTheOtherLine();
    ASSERT_TRUE(port.Open());
    if (!otherLineFirst) readWithTheOtherLine();
    otherEnd->Write(Bytes{1, 2});
    sender.Write(Bytes{1});
    ASSERT_TRUE(Readable(watched) && Readable(otherLine.Descriptor()));
    time.Yield(time.Now() + kFarLimit);
    EXPECT_TRUE(port.IsOpen());

    reader.reset();
    sender.Close();
    while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
    }
    otherEnd->Write(Bytes{7});
    const Microseconds start = time.Now();
    time.Yield(start + std::chrono::seconds(2));
    EXPECT_LT(time.Now() - start, std::chrono::seconds(1)) << otherLineFirst;
    port.Close();
  }
  ::close(watched);
}

}  // namespace
}  // namespace qdm
