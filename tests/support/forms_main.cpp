#include "app/editor_application.h"
#include "app/resources.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qdm::EditorApplication application(argc, argv);
  application.SetOnException([](const std::string& what) { ADD_FAILURE() << "nobody caught: " << what; });
  qdm::InitialiseResources();
  return RUN_ALL_TESTS();
}
