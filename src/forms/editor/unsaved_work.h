// What EXIT does with a configuration that was not saved: keeps it in the data folder, beside those of
// earlier times, and leaves word of it for the next start.
#pragma once

#include <QString>

#include <filesystem>

class QSettings;

namespace qdm {

struct PanelConfiguration;

// "Unsaved.BVC", "Unsaved 2.BVC", ... FileError when it cannot be written.
void KeepUnsavedWork(const std::filesystem::path& folder, const PanelConfiguration& configuration,
                     QSettings& settings);

// The file that the last EXIT kept, named once; empty when there is none.
QString TakeUnsavedWork(QSettings& settings);

}  // namespace qdm
