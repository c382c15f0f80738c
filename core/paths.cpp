#include "core/paths.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <new>
#include <system_error>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/file.h"
#include "core/paths_platform.h"
#include "core/text.h"
#include "core/time_text.h"

namespace Sumara {
namespace {

constexpr const char* kLastWriteWord = "last_write_time";

std::error_code SystemError(int error) { return {error, std::generic_category()}; }

/// A name with a null byte would be cut by the system's calls, and so mean another file.
void RequireSystemName(const char* word, const std::string& path) {
  if (path.find('\0') != std::string::npos) {
    throw std::filesystem::filesystem_error(word, SystemError(EINVAL));
  }
}

std::string Canonical(const std::string& path) {
  for (;;) {
    std::error_code error;
    const auto canonical = std::filesystem::canonical(SystemPath(path), error);
    if (!error) return canonical.string();
    if (error == std::errc::not_enough_memory) throw std::bad_alloc();
    if (error != std::errc::interrupted) {
      throw std::filesystem::filesystem_error("cannot make canonical path", path, error);
    }
  }
}

/// Reads to the end of the file, which may be at another place than its size says.
int ReadToEnd(const File& file, std::string& text) {
  constexpr std::size_t kStep = std::size_t{64} * 1024;
  text.resize(static_cast<std::size_t>(file.Size()) + 1);
  std::size_t end = 0;
  int error = 0;
  for (;;) {
    end += file.ReadAt(end, {text.data() + end, text.size() - end}, error);
    if (error != 0 || end < text.size()) break;
    text.resize(text.size() + std::max(kStep, text.size() / 2));
  }
  text.resize(end);
  return error;
}

Platform::FileTime LastWrite(const std::string& path) {
  Platform::FileTime time;
  if (const int error = Platform::LastWrite(path, time)) {
    throw std::filesystem::filesystem_error(kLastWriteWord, path, SystemError(error));
  }
  return time;
}

}  // namespace

bool Exists(const std::string& path) {
  const int error = Platform::StatusOf(path).error;
  if (error == 0 || Platform::MeansMissing(error)) return error == 0;
  throw CIOException(5026, FileContext(path), SystemErrorText(error));
}

bool IsDirectory(const std::string& path) {
  const Platform::PathStatus status = Platform::StatusOf(path);
  if (status.error == 0 || Platform::MeansMissing(status.error)) {
    return status.type == EntryType::kDirectory;
  }
  throw CIOException(5027, DirectoryContext(path), SystemErrorText(status.error));
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  const Platform::PathStatus status = Platform::StatusOf(path);
  return status.type == EntryType::kFile ? std::optional(status.size) : std::nullopt;
}

void CreateDirectories(const std::string& path) {
  if (IsDirectory(path)) return;
  try {
    RequireSystemName("create_directories", path);
    std::filesystem::create_directories(SystemPath(path));
  } catch (const std::filesystem::filesystem_error& failure) {
    throw CIOException(5028, DirectoryContext(path), failure.what());
  }
}

std::string NormaliseFilePath(const std::string& path) {
  if (!Exists(path)) throw CIOException(5022, FileContext(path));
  try {
    return Canonical(path);
  } catch (const std::filesystem::filesystem_error& failure) {
    throw CIOException(5024, FileContext(path), failure.what());
  }
}

std::string NormaliseDirectory(const std::string& path) {
  if (!Exists(path)) throw CIOException(5023, DirectoryContext(path));
  try {
    return Canonical(path);
  } catch (const std::filesystem::filesystem_error& failure) {
    throw CIOException(5025, DirectoryContext(path), failure.what());
  }
}

std::int64_t LastWriteTicks(const std::string& path) {
  constexpr std::uint64_t kTicksPerSecond = 10'000'000;
  const auto [seconds, nanoseconds] = LastWrite(path);
  // Unsigned, for the sake of a file system that holds absurd years.
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(seconds) * kTicksPerSecond +
                                   static_cast<std::uint64_t>(nanoseconds) / 100);
}

std::string LastWriteTimeText(const std::string& path) {
  if (!Exists(path)) {
    throw CIOException(5022, FileContext(path), "Attempting to get last modified time");
  }
  std::tm local{};
  if (!Platform::LocalTime(LastWrite(path).seconds, local)) {
    throw std::filesystem::filesystem_error(kLastWriteWord, path, SystemError(EOVERFLOW));
  }
  return TimeText(local);
}

std::string ReadWholeFile(const std::string& path, const std::string& context, bool trim) {
  if (!Exists(path)) throw CIOException(5022, FileContext(path), context);
  File file;
  std::string text;
  int error = file.Open(path, File::Access::kRead);
  if (error == 0) error = ReadToEnd(file, text);
  if (error != 0) throw CIOException(5009, FileContext(path), SystemErrorText(error));
  Platform::TranslateLineEnds(text);
  if (trim) TrimTrailing(text);
  return text;
}

std::string DirectoryOf(std::string_view path) {
  return std::string(path.substr(0, path.find_last_of("/\\") + 1));  // npos + 1 is 0
}

void WithTrailingSeparator(std::string& path) {
  if (!path.empty() && path.back() != kSeparator) path += kSeparator;
}

std::string SystemErrorText(int error) { return std::generic_category().message(error); }

}  // namespace Sumara
