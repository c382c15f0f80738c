#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

/// The family of every failure that the library reports.
///
/// An exception is a numbered code with its table text, further information (where it happened) and
/// the text of the lower failure that caused it. The text is composed once, at construction.
class CExceptionBase : public std::exception {
 public:
  /// The composed text: table text, full stop, "\nFurther information: ...", "\nInner exception:
  /// ...".
  const char* what() const noexcept override;

  /// The table text of the code, without context.
  virtual std::string ErrorText() const = 0;

  std::int32_t ErrorCode() const noexcept { return m_errorCode; }
  std::string Text() const { return m_text; }

 protected:
  explicit CExceptionBase(std::string message);
  explicit CExceptionBase(std::int32_t code, std::string furtherInformation = {},
                          std::string innerException = {});

  CExceptionBase(const CExceptionBase&) = default;
  CExceptionBase& operator=(const CExceptionBase&) = default;

  /// Called last by each derived constructor, when `ErrorText` can be asked.
  void ComposeMessage();

 private:
  std::string m_text;
  std::string m_message;
  std::string m_furtherInformation;
  std::string m_innerException;
  std::int32_t m_errorCode = 0;
};

/// A failure of a file or of its text: codes 5000 to 5028.
class CIOException final : public CExceptionBase {
 public:
  explicit CIOException(std::int32_t code, std::string furtherInformation = {},
                        std::string innerException = {});

  std::string ErrorText() const override;

 private:
  std::int32_t m_ioCode;
};

namespace Sumara {

/// A failure of the results model or of the public interface: codes 0 to 180.
class CException final : public CExceptionBase {
 public:
  explicit CException(std::string message);
  explicit CException(std::int32_t code, std::string furtherInformation = {},
                      std::string innerException = {});

  std::string ErrorText() const override;

 private:
  std::int32_t m_modelCode;
};

/// The text of an I/O code, for example "IO error 5008: Data requested past end of file".
std::string IOErrorText(std::int32_t code);

/// The text of a model code; codes from 4999 read as I/O codes do.
std::string ModelErrorText(std::int32_t code);

}  // namespace Sumara
