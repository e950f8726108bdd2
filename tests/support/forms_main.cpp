#include "app/resources.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <cstdlib>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  qdm::InitialiseResources();
  return RUN_ALL_TESTS();
}
