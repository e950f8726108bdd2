// What a file says, what it always said, and what is said where something fails.
#pragma once

#include "base/file_access.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>

namespace qdm {

inline std::string TextOfFile(const std::filesystem::path& path) {
  const Bytes bytes = ReadWholeFile(path);
  return {bytes.begin(), bytes.end()};
}

// The text is that of a file below tests/. QDM_WRITE_GOLDEN=1 writes the file anew: read the difference
// before committing it.
inline void ExpectGolden(const char* file, const std::string& text) {
  const std::filesystem::path golden = PathFromUtf8(QDM_SOURCE_DIR "/tests") / file;
  if (std::getenv("QDM_WRITE_GOLDEN") != nullptr) WriteFileSafely(golden, Bytes(text.begin(), text.end()));
  EXPECT_EQ(text, TextOfFile(golden));
}

template <class Action>
std::string FailureOf(const Action& action) {
  try {
    action();
    return "no failure";
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace qdm
