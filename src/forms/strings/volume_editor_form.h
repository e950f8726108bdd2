// Defines how a volume level becomes the bytes of a volume command: checked and shown on trial levels while
// it is changed. Written to the definition on Done, which is refused while a rule is broken.
#pragma once

#include "serial_strings/volume_format.h"

#include <QDialog>

#include <array>
#include <cstdint>
#include <memory>

class QButtonGroup;
class QRadioButton;

namespace Ui {
class VolumeEditorForm;
}

namespace qdm {

class HEXentry;
class IntegerEntry;
struct ProjectorDefinition;
class UserPrompts;

class VolumeEditorForm : public QDialog {
  Q_OBJECT

 public:
  VolumeEditorForm(ProjectorDefinition& projector, UserPrompts& prompts, QWidget* parent = nullptr);
  ~VolumeEditorForm() override;

 private:
  // A level with its two entries, of which each follows the other.
  struct Level {
    IntegerEntry* Entry;
    HEXentry* InHex;
    std::int16_t VolumeFormat::*Setting;
    int Lowest;
    const char* Caption;
  };

  void ConnectControls();
  void Load(const VolumeFormat& format);
  VolumeFormat Settings() const;

  void Refresh();
  void ShowVerdict(const VolumeFormat& format);
  void ShowPreview(const VolumeFormat& format);
  void Up_Click();
  void Down_Click();
  void PowerUp_Click();
  void Done_Click();
  void Try(std::int16_t level);

  std::unique_ptr<Ui::VolumeEditorForm> ui_;
  ProjectorDefinition& projector_;
  UserPrompts& prompts_;
  std::array<Level, 4> levels_{};
  QButtonGroup* NumberOfBytes;
  QButtonGroup* MessageFormat;
  QButtonGroup* FirstByteIs;
  std::int16_t trialLevel_ = 0;
};

}  // namespace qdm
