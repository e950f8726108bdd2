// Record texts, paths and messages to Qt's strings and back.
#pragma once

#include <QString>

#include <filesystem>
#include <string>
#include <string_view>

namespace qdm {

inline QString ToQString(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::filesystem::path ToPath(const QString& fileName) {
  return std::filesystem::path(fileName.toStdU16String());
}

}  // namespace qdm
