#include "forms/every_form/every_form.h"

#include "app/about_form.h"
#include "app/chm_file.h"
#include "app/help_window.h"
#include "base/file_access.h"
#include "config/configuration_file.h"
#include "forms/bench/projector_bench_form.h"
#include "forms/bench/serial_test_form.h"
#include "forms/download/download_form.h"
#include "forms/download/find_panel_form.h"
#include "forms/editor/projector_panel_editor.h"
#include "forms/manuals/manual_form.h"
#include "forms/projectors/library_conflict_form.h"
#include "forms/projectors/new_name_form.h"
#include "forms/projectors/projector_replace_form.h"
#include "forms/projectors/projector_selector.h"
#include "forms/projectors/projector_setup_form.h"
#include "forms/shared/busy_form.h"
#include "forms/strings/byte_mode_form.h"
#include "forms/strings/form_controlcode_form.h"
#include "forms/strings/serial_editor.h"
#include "forms/strings/text_reading_form.h"
#include "forms/strings/volume_editor_form.h"
#include "forms/work_log/rooms_form.h"
#include "forms/work_log/sheet_form.h"
#include "forms/work_log/work_log_form.h"
#include "projectors/library_conflict.h"
#include "projectors/library_file.h"
#include "projectors/projector_volume.h"
#include "serial_strings/text_parser.h"
#include "support/dialog_script.h"
#include "support/distinct_projector.h"
#include "support/panel_descriptions.h"
#include "support/strings.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTreeView>

namespace qdm {
namespace {

using enum ByteKind;

ProjectorDefinition Definition(const char* model, int delay = 4) {
  ProjectorDefinition projector = NamedProjector("4711", model);
  projector.Notes.Assign(u"0 1");
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    projector.Strings[slot] = String({{'1'}, {static_cast<std::uint8_t>(slot), HEX}, {13, CNT}});
    projector.Available[slot] = kFlagSet;
  }
  for (std::int16_t& required : projector.RequiresReply) required = kFlagSet;
  projector.Strings[kVolumeUpSlot] = String({{'1'}, {0, VAR}, {13, CNT}});
  StoreVolumeFormat(projector, {100, 0, 10, 50, false, 3, LevelFormat::DecimalInAscii, false});
  projector.VolumeBytePosition = 2;
  projector.InterCommandDelay = static_cast<std::int16_t>(delay);
  projector.WarmUpTime = 30;
  projector.CoolDownTime = 60;
  return projector;
}

void Present(QWidget& window, const LookAt& look) {
  window.show();
  window.activateWindow();
  for (int round = 0; round < 3; ++round) QCoreApplication::processEvents();  // sizes settle
  look(window);
  window.hide();
}

constexpr int kNone = -1;

// The main window on a file for that type, then what `work` does in it.
std::function<void(FormWorld&, const LookAt&)> Editor(int controllerType,
                                                      const std::function<void(QWidget&)>& work = {}) {
  return [=](FormWorld& world, const LookAt& look) {
    ProjectorPanelEditor editor(world.Shared, world.Prompts, world.Settings, EditorWindows{});
    editor.Form_Load();
    if (controllerType != kNone) {
      WriteConfiguration(world.Folder / "1.BVC", world.Configuration(controllerType), OldTail::Dropped);
      editor.OpenNamedFile(world.File("1.BVC"), {QStringLiteral("2.BVC")});
    }
    if (work) work(editor);
    Present(editor, look);
  };
}

std::function<void(FormWorld&, const LookAt&)> Searched(const std::function<void(QWidget&)>& work = {}) {
  return [=](FormWorld& world, const LookAt& look) {
    const PanelConfiguration configuration = world.Configuration(kQdm7);
    Download form(world.Shared, configuration, world.Ports, world.Time, world.Prompts);
    form.show();
    form.Timer1_Timer();
    if (work) work(form);
    Present(form, look);
  };
}

std::function<void(FormWorld&, const LookAt&)> Console(int slot, const std::vector<const char*>& buttons) {
  return [=](FormWorld& world, const LookAt& look) {
    world.ChooseSlot(slot);
    SerialTestForm form(world.Shared, world.Ports, world.Time, world.Prompts, world.Settings);
    form.SetBench([](QWidget*) {});
    form.show();
    for (const char* button : buttons) Click(form, button);
    form.TraceTimer_Timer();
    form.Timer1_Timer();
    Present(form, look);
  };
}

std::function<void(FormWorld&, const LookAt&)> Bench(int page) {
  return [=](FormWorld& world, const LookAt& look) {
    ProjectorBench form(world.Shared.CurrentProjector, world.Ports, world.Time, world.Prompts,
                        world.Settings);
    form.findChild<QTabWidget*>()->setCurrentIndex(page);
    Present(form, look);
  };
}

void Volume(FormWorld& world, const LookAt& look, const VolumeFormat& format) {
  StoreVolumeFormat(world.Shared.CurrentProjector, format);
  VolumeEditorForm form(world.Shared.CurrentProjector, world.Prompts);
  Present(form, look);
}

void Strings(FormWorld& world, const LookAt& look, int slot, const char* typed) {
  world.ChooseSlot(slot);
  SerialEditor form(world.Shared, world.Prompts, [](QWidget*) {});
  form.show();
  form.activateWindow();
  if (typed != nullptr) {
    auto& command = Child<QLineEdit>(form, "Command");
    command.setFocus();
    command.selectAll();
    QTest::keyClicks(&command, QLatin1String(typed));
  }
  Present(form, look);
}

void Manual(FormWorld& world, const LookAt& look, const char* page) {
  ManualForm form(world.Prompts);
  form.show();
  Child<QPlainTextEdit>(form, "PageText").insertPlainText(QLatin1String(page));
  if (*page != '\0') {
    EXPECT_TRUE(QTest::qWaitFor([&form] { return Child<QCheckBox>(form, "Take_1").isVisible(); }, 10'000));
  }
  Present(form, look);
}

void Replace(FormWorld& world, const LookAt& look, bool configured) {
  world.Shared.CurrentProjector = Definition("1", 9);
  if (configured) {
    ProjectorReplaceForm form(world.Shared, world.Prompts);
    return Present(form, look);
  }
  ProjectorReplaceForm2 form(world.Shared, world.Prompts, {2, 3}, 1);
  Present(form, look);
}

void Conflict(FormWorld&, const LookAt& look, bool deleted) {
  LibraryConflict conflict;
  conflict.Base = {Definition("1", 1)};
  conflict.Theirs = {Definition("1", 2)};
  if (!deleted) conflict.Ours = {Definition("1", 3)};
  LibraryConflictForm form(conflict, {2, 3});
  Present(form, look);
}

void Selector(FormWorld& world, const LookAt& look, const char* filter) {
  ProjectorSelector form(world.Shared, world.Prompts, [](QWidget*) {});
  form.show();
  auto& tree = Child<QTreeView>(form, "TreeView1");
  tree.expandAll();
  tree.setCurrentIndex(tree.model()->index(0, 0, tree.model()->index(0, 0)));
  Child<QLineEdit>(form, "Filter").setText(QLatin1String(filter));
  Present(form, look);
}

void Log(FormWorld& world, const LookAt& look) {
  WorkLogForm form(world.Log, world.Prompts, {});
  Child<QTableView>(form, "Entries").selectRow(0);
  Present(form, look);
}

void Rooms(FormWorld& world, const LookAt& look) {
  world.Settings.setValue(QStringLiteral("rooms/folder"), world.File(""));
  RoomsForm form({world.Shared.ProjectorDatabase,
                  world.Ports,
                  world.Time,
                  world.Log,
                  world.Prompts,
                  world.Settings,
                  {}});
  Child<QTableWidget>(form, "Table").selectRow(0);
  Present(form, look);
}

// A window that needs nothing but what `make` gives it.
template <class Make>
std::function<void(FormWorld&, const LookAt&)> Simple(Make make) {
  return [make](FormWorld& world, const LookAt& look) { Present(*make(world), look); };
}

QString Help() { return QStringLiteral(QDM_BINARY_DIR "/bin/qdm.chm"); }

}  // namespace

FormWorld::FormWorld() : Settings(File("settings.ini"), QSettings::IniFormat) {
  Shared.DataFolder = Folder.Path();
  Shared.CurrentProjector = Definition("2");
  for (const char* model : {"1", "2", "3"}) Shared.ProjectorDatabase.Append(Definition(model));
  Shared.ProjectorDatabase.MarkUnchanged(WriteProjectorDatabase(Folder.Path(), Shared.ProjectorDatabase));
  Ports.AttachPanel(1, "0", SimulatedPanel(Described(kQdm7, "19200,e,8,2")));
  Ports.AttachPanel(2, "1", SimulatedPanel(Described(kTlVox, "9600,n,8,2")));
  Ports.AttachLine(3, "2");
  for (int port : {4, 5, 6, 7}) Ports.AttachLine(port, std::to_string(port));
  Ports.Closed = {{4, {OpenFailure::Reason::Held, "7 (4711)"}},
                  {5, {OpenFailure::Reason::NotAllowed, "20"}},
                  {6, {OpenFailure::Reason::Refused, "5"}},
                  {7, {OpenFailure::Reason::Gone}}};
  WorkLogEntry entry;
  entry.Title = "1";
  entry.Panel = {.Model = 1, .Major = 1, .Minor = 3};
  entry.Port = "COM1";
  Log.Add(entry, Encode(Configuration(kQdm7)));
}

PanelConfiguration FormWorld::Configuration(int controllerType) const {
  PanelConfiguration configuration;
  configuration.ControllerType = static_cast<std::int16_t>(controllerType);
  configuration.Projector = Definition("2");
  configuration.LockUsingButtons = kFlagSet;
  configuration.VolumeMax = 300;
  return configuration;
}

QString FormWorld::File(const char* name) const { return QString::fromStdString(PathToUtf8(Folder / name)); }

const std::vector<FormState>& EveryForm() {
  using World = FormWorld&;
  using Look = const LookAt&;
  static const std::vector<FormState> kForms = {
      {"Editor.New", Editor(kNone)},
      {"Editor.Panel", Editor(kQdm7)},
      {"Editor.FourButtons", Editor(kQdm4, [](QWidget& form) { Child<QAction>(form, "SAVE").trigger(); })},
      {"Editor.Amplifier", Editor(kTlVox)},
      {"Selector.Model", [](World w, Look look) { Selector(w, look, ""); }},
      {"Selector.NothingFound", [](World w, Look look) { Selector(w, look, "99"); }},
      {"NewName", Simple([](World w) { return std::make_unique<NewNameForm>(w.Shared, w.Prompts); })},
      {"Rename",
       Simple([](World w) { return std::make_unique<NewNameForm>(w.Shared, w.Prompts, 0, nullptr); })},
      {"Replace.Configured", [](World w, Look look) { Replace(w, look, true); }},
      {"Replace.Imported", [](World w, Look look) { Replace(w, look, false); }},
      {"Conflict.Changed", [](World w, Look look) { Conflict(w, look, false); }},
      {"Conflict.Deleted", [](World w, Look look) { Conflict(w, look, true); }},
      {"Busy", Simple([](World) { return std::make_unique<BusyForm>(nullptr); })},
      {"Setup", Simple([](World w) {
         return std::make_unique<ProjectorSetupForm>(w.Shared, w.Prompts, SlotWindows{});
       })},
      {"Setup.Empty", Simple([](World w) {
         w.Shared.CurrentProjector = {};
         return std::make_unique<ProjectorSetupForm>(w.Shared, w.Prompts, SlotWindows{});
       })},
      {"Manual.Empty", [](World w, Look look) { Manual(w, look, ""); }},
      {"Manual.Read",
       [](World w, Look look) { Manual(w, look, "Power on  50 57 31 0D\nPower off  50 57 30 0D\n"); }},
      {"Strings.Command", [](World w, Look look) { Strings(w, look, kPowerOnSlot, nullptr); }},
      {"Strings.Volume", [](World w, Look look) { Strings(w, look, kVolumeUpSlot, "1<1"); }},
      {"Strings.Readings", [](World w, Look look) { Strings(w, look, kPowerOnSlot, "10 20 3"); }},
      {"Kinds", Simple([](World) { return std::make_unique<ByteModeForm>(2, true, nullptr); })},
      {"ControlCodes", Simple([](World) { return std::make_unique<FormControlcodeForm>(nullptr); })},
      {"TextReading", Simple([](World) {
         const QString text = QStringLiteral("10 20 30");
         return std::make_unique<TextReadingForm>(text, ParseSerialText(text.toStdU16String()));
       })},
      {"Volume.Valid",
       [](World w, Look look) {
         Volume(w, look, {100, 0, 10, 50, false, 3, LevelFormat::DecimalInAscii, false});
       }},
      {"Volume.Error",
       [](World w, Look look) {
         Volume(w, look, {0, 0, 0, 0, true, 1, LevelFormat::RawBytes, false});
       }},
      {"Console.Idle", Console(kPowerOnSlot, {})},
      {"Console.Sent", Console(kVolumeUpSlot, {"Send"})},
      {"Bench.First", Bench(0)},
      {"Bench.Second", Bench(1)},
      {"Bench.Third", Bench(2)},
      {"Bench.Fourth", Bench(3)},
      {"Download.Found", Searched()},
      {"Download.Done", Searched([](QWidget& form) { Child<QAbstractButton>(form, "Option1_0").click(); })},
      {"FindPanel",
       [](World w, Look look) {
         FindPanel form(w.Ports, w.Time);
         Present(form, look);
       }},
      {"WorkLog", Log},
      {"Rooms", Rooms},
      {"Sheet", Simple([](World w) {
         return std::make_unique<SheetForm>(w.Configuration(kQdm7), w.Folder / "1.BVC", w.Log, w.Prompts,
                                            w.Settings);
       })},
      {"About", Simple([](World w) { return std::make_unique<AboutForm>(w.Folder.Path(), w.Prompts); })},
      {"Help", Simple([](World) { return std::make_unique<HelpWindow>(ChmFile::Open(Help())); })},
  };
  return kForms;
}

}  // namespace qdm
