#pragma once

#include <nanobind/nanobind.h>

#include <string>
#include <string_view>
#include <vector>

namespace Tabulon::Module {

namespace nb = nanobind;

/// Text of a file: UTF-8, with bytes that are none kept as lone surrogates, as Python keeps those
/// of file names.
nb::str Text(std::string_view text);
nb::list Texts(const std::vector<std::string>& texts);

/// A path as the system has it.
nb::str PathText(std::string_view path);

/// A path that a script gives: text, or what `os.fspath` makes text of.
struct PathArgument {
  std::string bytes;
};

}  // namespace Tabulon::Module

namespace nanobind::detail {

template <>
struct type_caster<Tabulon::Module::PathArgument> {
  NB_TYPE_CASTER(Tabulon::Module::PathArgument, const_name("str | os.PathLike[str]"))

  bool from_python(handle source, std::uint8_t, cleanup_list*) noexcept {
    PyObject* bytes = nullptr;
    if (PyUnicode_FSConverter(source.ptr(), &bytes) == 0) {
      PyErr_Clear();
      return false;
    }
    value.bytes.assign(PyBytes_AS_STRING(bytes), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes)));
    Py_DECREF(bytes);
    return true;
  }
};

}  // namespace nanobind::detail
