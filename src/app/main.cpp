#include "app/start_up.h"

#include <QApplication>

int main(int argc, char** argv) {
  qdm::TellWhatIsAsked(argc, argv);
  QApplication application(argc, argv);
  return qdm::RunEditor(application);
}
