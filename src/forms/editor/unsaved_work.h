// What becomes of a configuration, and of projector definitions, that were not saved when the editor ends, or
// when something went wrong: they are kept in the data folder, beside those of earlier times, and the next
// start offers them until somebody has opened or discarded them.
#pragma once

#include "base/record_codec.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <vector>

class QSettings;

namespace qdm {

struct Globals;
struct ProjectorDefinition;

// `bytes` as "Unsaved.BVC", "Unsaved 2.BVC", ... or with another ending; gives the file. FileError when it
// cannot be written.
std::filesystem::path WriteUnsavedWork(const std::filesystem::path& folder, const char* ending,
                                       const Bytes& bytes);

// Definitions that are not in the saved library: its own changes, and what the setup dialog holds, under
// names with which it can be imported.
std::vector<ProjectorDefinition> UnsavedDefinitions(const Globals& globals);
// The next start offers it.
void NoteKeptWork(const QString& fileName, QSettings& settings);

// The files that wait for somebody, newest first.
QStringList KeptWork(QSettings& settings);
// It has been opened; the file stays.
void ForgetKeptWork(const QString& fileName, QSettings& settings);
// It is no longer wanted, or has been saved under a name: the file goes as well. FileError when it does not.
void DiscardKeptWork(const QString& fileName, QSettings& settings);

}  // namespace qdm
