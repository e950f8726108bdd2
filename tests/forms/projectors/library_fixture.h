// A library in a folder of its own, with the records and the prompts that the forms work on.
#pragma once

#include "forms/shared/globals.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "support/dialog_script.h"
#include "support/distinct_projector.h"
#include "support/fake_prompts.h"
#include "support/temp_folder.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace qdm {

inline ProjectorDefinition Named(std::string_view manufacturer, std::string_view model, int delay = 0) {
  ProjectorDefinition projector = NamedProjector(manufacturer, model);
  projector.InterCommandDelay = static_cast<std::int16_t>(delay);
  return projector;
}

// "ACME / X 1 = 5", the number being the delay between commands.
inline std::string Line(const ProjectorDefinition& projector) {
  return projector.Manufacturer.TrimmedUtf8() + " / " + projector.Model.TrimmedUtf8() + " = " +
         std::to_string(projector.InterCommandDelay);
}

class LibraryFixture : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  LibraryFixture() { globals_.DataFolder = folder_.Path(); }

  void Put(std::initializer_list<ProjectorDefinition> projectors) {
    for (const ProjectorDefinition& projector : projectors) globals_.ProjectorDatabase.Append(projector);
  }
  Lines InMemory() const { return LinesOf(globals_.ProjectorDatabase.Elements()); }
  Lines OnDisk() const {
    return std::filesystem::exists(files_.Library) ? LinesOf(ReadDefinitions(files_.Library)) : Lines{};
  }
  static Lines LinesOf(const std::vector<ProjectorDefinition>& projectors) {
    Lines lines;
    for (const ProjectorDefinition& projector : projectors) lines.push_back(Line(projector));
    return lines;
  }
  // Saving fails from here on: a folder that is not empty stands where the temporary file goes.
  void BlockSaving() { std::filesystem::create_directories(files_.Temporary / "in the way"); }
  void UnblockSaving() { std::filesystem::remove_all(files_.Temporary); }
  void SaveLibrary() {
    globals_.ProjectorDatabase.MarkUnchanged(
        WriteProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase));
  }

  // Another program saves that.
  void OthersSave(const std::vector<ProjectorDefinition>& projectors) {
    ProjectorLibrary theirs;
    for (const ProjectorDefinition& projector : projectors) theirs.Append(projector);
    WriteProjectorDatabase(globals_.DataFolder, theirs);
  }

  // Pastes that text into the window "From a manual".
  static DialogScript::Step Reads(const char* page, const char* button = "Done") {
    return [=](QWidget& dialog) {
      QGuiApplication::clipboard()->setText(QString::fromUtf8(page));
      Click(dialog, "AddPage");
      Click(dialog, button);
    };
  }
  static DialogScript::Step Types(const char* manufacturer, const char* model, const char* button = "Done") {
    return [=](QWidget& dialog) {
      Child<QLineEdit>(dialog, "Text1").setText(QString::fromUtf8(manufacturer));
      Child<QLineEdit>(dialog, "Text2").setText(QString::fromUtf8(model));
      Click(dialog, button);
    };
  }
  static DialogScript::Step Clicks(const char* button) {
    return [=](QWidget& dialog) { Click(dialog, button); };
  }
  static void Closes(QWidget& dialog) { dialog.close(); }

  TempFolder folder_;
  ProjectorFiles files_{folder_.Path()};
  Globals globals_;
  FakePrompts prompts_;
};

}  // namespace qdm
