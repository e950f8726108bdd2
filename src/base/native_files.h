// One system's own way to do what file_system.h lists: native_files_posix.cpp and its twin
// native_files_win32.cpp.
#pragma once

#include "base/file_system.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

namespace qdm::native_files {

using Path = std::filesystem::path;
using Native = FileHandle::Native;

// A file that nobody works at is left alone that long: its owner may be about to rename it.
inline constexpr int kAbandonedAfterSeconds = 60;

std::error_code Look(const Path& path, FileFacts& facts);
std::error_code OpenForReading(const Path& path, FileHandle& file, FileFacts& facts);
std::error_code Read(Native file, std::span<std::uint8_t> into, std::size_t& got);
std::error_code Create(const Path& path, file_system::Privacy privacy, FileHandle& file);
std::error_code Write(Native file, std::span<const std::uint8_t> bytes, std::size_t& written);
std::error_code Flush(Native file);
std::error_code Protect(const Path& from, const Path& path, Native file);
std::error_code Close(Native file);
std::error_code Rename(const Path& from, const Path& to);
std::error_code Remove(const Path& path);
std::error_code Link(const Path& existing, const Path& name);
std::error_code FlushFolder(const Path& folder);
std::error_code Lock(const Path& path, FileHandle& file, bool& held);
bool IsAbandoned(const Path& path);
std::string OwnerOf(const Path& path);
Path SpellingOf(const Path& path);

}  // namespace qdm::native_files
