#include "core/exceptions.h"

#include <utility>

CExceptionBase::CExceptionBase(std::string message) : m_message(std::move(message)) {}

CExceptionBase::CExceptionBase(std::int32_t code, std::string furtherInformation,
                               std::string innerException)
    : m_furtherInformation(std::move(furtherInformation)),
      m_innerException(std::move(innerException)),
      m_errorCode(code) {}

const char* CExceptionBase::what() const noexcept { return m_text.c_str(); }

void CExceptionBase::ComposeMessage() {
  m_text = m_message.empty() ? ErrorText() : m_message;
  if (m_text.empty() || m_text.back() != '.') m_text += '.';
  if (!m_furtherInformation.empty()) {
    m_text.append("\nFurther information: ").append(m_furtherInformation);
  }
  if (!m_innerException.empty()) m_text.append("\nInner exception: ").append(m_innerException);
}

CIOException::CIOException(std::int32_t code, std::string furtherInformation,
                           std::string innerException)
    : CExceptionBase(code, std::move(furtherInformation), std::move(innerException)),
      m_ioCode(code) {
  ComposeMessage();
}

std::string CIOException::ErrorText() const { return Sumara::IOErrorText(m_ioCode); }

namespace Sumara {

CException::CException(std::string message) : CExceptionBase(std::move(message)), m_modelCode(0) {
  ComposeMessage();
}

CException::CException(std::int32_t code, std::string furtherInformation,
                       std::string innerException)
    : CExceptionBase(code, std::move(furtherInformation), std::move(innerException)),
      m_modelCode(code) {
  ComposeMessage();
}

std::string CException::ErrorText() const { return ModelErrorText(m_modelCode); }

}  // namespace Sumara
