#pragma once

#include <memory>
#include <string>
#include <vector>

#include "binding/swig_runtime.h"

namespace Binding {

/// A type as SWIG spells it. That of a class stands in the interface file that exports the class.
template <class T>
struct TypeName;

template <>
struct TypeName<double> {
  static std::string Text() { return "double"; }
};
template <>
struct TypeName<float> {
  static std::string Text() { return "float"; }
};
template <>
struct TypeName<int> {
  static std::string Text() { return "int"; }
};
template <>
struct TypeName<std::string> {
  static std::string Text() { return "std::string"; }
};
template <class T>
struct TypeName<std::shared_ptr<T>> {
  static std::string Text() { return "std::shared_ptr< " + TypeName<T>::Text() + " >"; }
};
template <class T>
struct TypeName<std::vector<T>> {
  static std::string Text() {
    const std::string element = TypeName<T>::Text();
    return "std::vector< " + element + ",std::allocator< " + element + " > >";
  }
};

/// The type as which script objects hold a T.
template <class T>
swig_type_info* TypeOf() {
  static swig_type_info* const type = Swig::FindType((TypeName<T>::Text() + " *").c_str());
  return type;
}

}  // namespace Binding
