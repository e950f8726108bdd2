#include "app/program_windows.h"

#include "app/about_form.h"
#include "app/help.h"
#include "forms/bench/projector_bench_form.h"
#include "forms/bench/serial_test_form.h"
#include "forms/download/download_form.h"
#include "forms/download/find_panel_form.h"
#include "forms/projectors/projector_selector.h"
#include "forms/projectors/projector_setup_form.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/serial_editor.h"
#include "forms/work_log/rooms_form.h"
#include "forms/work_log/sheet_form.h"
#include "forms/work_log/work_log_form.h"

namespace qdm {

ProgramWindows::ProgramWindows(const SharedParts& shared)
    : shared_(shared), recorder_(shared.Log, shared.Prompts) {}

EditorWindows ProgramWindows::ForEditor() {
  return {
      .Selector = [this](QWidget* parent) { OpenSelector(parent); },
      .Download =
          [this](QWidget* parent, const PanelConfiguration& configuration) {
            OpenDownload(parent, configuration, editor_->FileName());
          },
      .FindPanel = [this](QWidget* parent) { FindPanel(shared_.Ports, shared_.Time, parent).exec(); },
      .Bench = [this](QWidget* parent, ProjectorDefinition& projector) { OpenBench(parent, projector); },
      .Help = [this](QWidget* parent) { shared_.Help.Show(parent, {}); },
      .About =
          [this](QWidget* parent) {
            AboutForm(shared_.Globals.ProgramFolder, shared_.Prompts, parent).exec();
          },
      .Work =
          {
              .WorkLog = [this](QWidget* parent) { OpenWorkLog(parent); },
              .Rooms = [this](QWidget* parent) { OpenRooms(parent); },
              .Sheet = [this](QWidget* parent,
                              const PanelConfiguration& configuration) { OpenSheet(parent, configuration); },
          },
  };
}

void ProgramWindows::OpenSelector(QWidget* parent) {
  ProjectorSelector selector(
      shared_.Globals, shared_.Prompts, [this](QWidget* above) { SetUpProjector(above); }, parent);
  selector.RememberIn(shared_.Settings);
  selector.exec();
}

void ProgramWindows::SetUpProjector(QWidget* parent) {
  const SlotWindows windows{
      .Edit = [this](QWidget* above, int firstByte) { EditString(above, firstByte); },
      .Test = [this](QWidget* above) { OpenConsole(above); },
      .Bench = [this](QWidget* above) { OpenBench(above, shared_.Globals.CurrentProjector); },
  };
  ProjectorSetupForm(shared_.Globals, shared_.Prompts, windows, parent).exec();
}

void ProgramWindows::EditString(QWidget* parent, int firstByte) {
  SerialEditor editor(
      shared_.Globals, shared_.Prompts, [this](QWidget* above) { OpenConsole(above); }, parent);
  editor.FocusByte(firstByte);
  editor.exec();
}

void ProgramWindows::OpenConsole(QWidget* parent) {
  SerialTestForm console(shared_.Globals, shared_.Ports, shared_.Time, shared_.Prompts, shared_.Settings,
                         parent);
  console.SetBench([this](QWidget* above) { OpenBench(above, shared_.Globals.CurrentProjector); });
  console.exec();
}

void ProgramWindows::OpenBench(QWidget* parent, ProjectorDefinition& projector) {
  ProjectorBench(projector, shared_.Ports, shared_.Time, shared_.Prompts, shared_.Settings, parent).exec();
}

void ProgramWindows::OpenDownload(QWidget* parent, const PanelConfiguration& configuration,
                                  const QString& file) {
  Download form(shared_.Globals, configuration, shared_.Ports, shared_.Time, shared_.Prompts, parent);
  const auto known = recorder_.Known(configuration.ControllerType, ToPath(file), shared_.Ports);
  if (known) form.Offer(*known);
  form.TellFinished([&](FinishedDownload finished) {
    finished.File = ToPath(file);
    recorder_.Write(&form, configuration, shared_.Globals.Image, finished);
  });
  form.exec();
}

void ProgramWindows::OpenWorkLog(QWidget* parent) {
  const auto open = [this](QWidget*, const PanelConfiguration& configuration) {
    return editor_->ShowUnsaved(configuration);
  };
  const auto download = [this](QWidget* above, const PanelConfiguration& configuration, const QString& file) {
    OpenDownload(above, configuration, file);
  };
  WorkLogForm(shared_.Log, shared_.Prompts, {open, download}, parent).exec();
}

void ProgramWindows::OpenRooms(QWidget* parent) {
  const auto open = [this](QWidget*, const QString& file) { return editor_->OpenRoom(file); };
  RoomsForm({shared_.Globals.ProjectorDatabase, shared_.Ports, shared_.Time, shared_.Log, shared_.Prompts,
             shared_.Settings, open},
            parent)
      .exec();
}

void ProgramWindows::OpenSheet(QWidget* parent, const PanelConfiguration& configuration) {
  SheetForm(configuration, ToPath(editor_->FileName()), shared_.Log, shared_.Prompts, shared_.Settings,
            parent)
      .exec();
}

}  // namespace qdm
