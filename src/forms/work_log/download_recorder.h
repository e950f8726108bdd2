// Writes the editor's downloads into the work log. Trouble with the log is told once, not at every download.
#pragma once

#include "forms/shared/user_prompts.h"
#include "work_log/download_record.h"

namespace qdm {

class DownloadRecorder {
 public:
  DownloadRecorder(WorkLog& log, UserPrompts& prompts) : log_(log), prompts_(prompts) {}

  void Write(QWidget* parent, const PanelConfiguration& configuration, const PanelImage& image,
             const FinishedDownload& download) {
    for (const Message& message : Record(log_, configuration, image, download)) {
      if (!told_) prompts_.Show(parent, message);
      told_ = true;
    }
  }

 private:
  WorkLog& log_;
  UserPrompts& prompts_;
  bool told_ = false;
};

}  // namespace qdm
