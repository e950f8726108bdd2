#include "serial_io/win32_serial_port.h"

#include "serial_io/port_list.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace qdm {
namespace {

TEST(Win32SerialPort, WhatIsNoPortOpensNotAtAll) {
  QTemporaryFile file;
  ASSERT_TRUE(file.open());
  const std::string absent[] = {"", "COM0", "COM251", "no such port", file.fileName().toStdString()};
  for (const std::string& device : absent) {
    EXPECT_FALSE(DeviceExists(device)) << device;
    Win32SerialPort port(device);
    port.SetSettings("9600,n,8,2");
    EXPECT_FALSE(port.Open()) << device;
    EXPECT_FALSE(port.IsOpen()) << device;
    EXPECT_FALSE(port.Write(Bytes{1})) << device;
    EXPECT_EQ(port.BytesWaiting(), 0U) << device;
    EXPECT_TRUE(port.ReadAll().empty()) << device;
    port.Close();
  }
}

TEST(Win32SerialPort, ADeviceThatIsNoSerialLineIsNotOpened) {
  ASSERT_TRUE(DeviceExists("NUL"));
  Win32SerialPort port("NUL");
  EXPECT_FALSE(port.Open());
}

TEST(Win32SerialPort, ListsThePortsThatAreThere) {
  const PortDevices devices = SystemDevices();
  ASSERT_EQ(devices.size(), static_cast<std::size_t>(kPortSlots));
  for (std::size_t i = 0; i < devices.size(); ++i) {
    const std::string name = "COM" + std::to_string(i + 1);
    EXPECT_EQ(devices[i], DeviceExists(name) ? name : std::string()) << name;
  }
}

}  // namespace
}  // namespace qdm
