// What becomes of a configuration that was not saved when the editor ends, or when something went wrong: it
// is kept in the data folder, beside those of earlier times, and the next start offers it until somebody has
// opened or discarded it.
#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>

class QSettings;

namespace qdm {

struct PanelConfiguration;

// "Unsaved.BVC", "Unsaved 2.BVC", ...; gives the file. FileError when it cannot be written.
std::filesystem::path WriteUnsavedWork(const std::filesystem::path& folder,
                                       const PanelConfiguration& configuration);
// The next start offers it.
void NoteKeptWork(const QString& fileName, QSettings& settings);

// The files that wait for somebody, newest first.
QStringList KeptWork(QSettings& settings);
// It has been opened; the file stays.
void ForgetKeptWork(const QString& fileName, QSettings& settings);
// It is no longer wanted, or has been saved under a name: the file goes as well. FileError when it does not.
void DiscardKeptWork(const QString& fileName, QSettings& settings);

}  // namespace qdm
