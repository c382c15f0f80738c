#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "binding/python_object.h"
#include "core/pages.h"

namespace Binding {

/// The codes by which the buffer protocol calls an element type, in native size and order.
template <class T>
constexpr const char* BufferCodes() {
  if constexpr (std::is_same_v<T, double>) {
    return "d";
  } else if constexpr (std::is_same_v<T, float>) {
    return "f";
  } else if constexpr (std::is_same_v<T, int>) {
    return sizeof(long) == sizeof(int) ? "il" : "i";
  } else {
    return "";
  }
}

/// A view of a one-dimensional buffer, for as long as this object lives.
class Buffer {
 public:
  /// \throws ErrorAlreadySet
  explicit Buffer(PyObject* object) {
    m_held =
        PyObject_CheckBuffer(object) && PyObject_GetBuffer(object, &m_view, PyBUF_FULL_RO) == 0;
    ClearError();
  }
  ~Buffer() {
    if (m_held) {
      PyBuffer_Release(&m_view);
    }
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  /// Whether its elements are T, as the machine holds them.
  template <class T>
  bool Holds() const {
    const std::string codes = BufferCodes<T>();
    const std::string format = m_held && m_view.format ? m_view.format : "";
    const bool isCode =
        format.size() == 1 || (format.size() == 2 && (format[0] == '@' || format[0] == '='));
    return isCode && m_view.ndim == 1 && m_view.itemsize == sizeof(T) &&
           codes.find(format.back()) != std::string::npos;
  }

  /// Copies all elements in one go. \throws std::bad_alloc \throws ErrorAlreadySet
  template <class T>
  void CopyTo(std::vector<T>& elements) {
    if (PyBuffer_IsContiguous(&m_view, 'C') &&
        reinterpret_cast<std::uintptr_t>(m_view.buf) % alignof(T) == 0) {
      const T* const first = static_cast<const T*>(m_view.buf);
      const std::size_t count = static_cast<std::size_t>(m_view.len) / sizeof(T);
      Sumara::Pages::Reserve(elements, count);
      elements.assign(first, first + count);
      return;
    }
    elements.resize(static_cast<std::size_t>(m_view.len) / sizeof(T));
    if (PyBuffer_ToContiguous(elements.data(), &m_view, m_view.len, 'C') != 0) {
      throw ErrorAlreadySet();
    }
  }

 private:
  Py_buffer m_view;
  bool m_held;
};

}  // namespace Binding
