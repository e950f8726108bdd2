#include "app/editor_application.h"
#include "app/start_up.h"

int main(int argc, char** argv) {
  qdm::TellWhatIsAsked(argc, argv);
  if (qdm::SheetIsAsked(argc, argv)) return qdm::WriteSheetOnly(argc, argv);
  qdm::EditorApplication application(argc, argv);
  return qdm::RunEditor(application);
}
