// Record texts, paths and messages to Qt's strings and back.
#pragma once

#include "base/words.h"

#include <QString>

#include <filesystem>
#include <string>
#include <string_view>

namespace qdm {

inline QString ToQString(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

inline QString ToText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// A word or a sentence of the core's tables in the user's language.
inline QString Said(std::string_view english) { return QString::fromStdString(Say(english)); }

inline QString SaidEach(std::string_view english) { return QString::fromStdString(SayEach(english)); }

inline std::filesystem::path ToPath(const QString& fileName) {
  return std::filesystem::path(fileName.toStdU16String());
}

}  // namespace qdm
