#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

class CExceptionBase;

namespace Tabulon {

/// A file that is missing, damaged or cut off, told by its reader.
class TableError : public std::exception {
 public:
  TableError(std::string text, std::int32_t code, std::string path, std::string field = {},
             std::string found = {});

  /// A reader's failure, with what the caller knows of its place.
  static TableError Of(const CExceptionBase& failure, const std::string& path,
                       std::string field = {}, std::string found = {});

  const char* what() const noexcept override { return m_text.c_str(); }
  const std::string& Text() const { return m_text; }
  /// The reader's code: 5000 for a missing file, 25 for missing rows, 127 for an unknown FORMAT.
  std::int32_t Code() const { return m_code; }
  const std::string& Path() const { return m_path; }
  /// The label of the header, or "rows" of a data file; empty if the failure has no such place.
  const std::string& Field() const { return m_field; }
  /// What stands there, cut to a line; empty if nothing does.
  const std::string& Found() const { return m_found; }

 private:
  std::string m_text;
  std::int32_t m_code;
  std::string m_path;
  std::string m_field;
  std::string m_found;
};

/// A call that ended because its `StopQuestion` was answered with true.
class Stopped : public std::exception {
 public:
  const char* what() const noexcept override { return "stopped"; }
};

/// Asked between the blocks of a long call, on its thread: whether to stop.
using StopQuestion = std::function<bool()>;

/// \throws Stopped
void Ask(const StopQuestion& stop);

}  // namespace Tabulon
