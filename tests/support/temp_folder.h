// A folder of its own for one test, gone with it.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

namespace qdm {

class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> made{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("qdm-test-" + std::to_string(now) + "-" + std::to_string(made++));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  // A name in UTF-8.
  std::filesystem::path operator/(const std::string& name) const {
    return path_ / std::u8string(name.begin(), name.end());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace qdm
