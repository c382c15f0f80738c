#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

#include "binding/exception_translation.h"
#include "binding/python_object.h"
#include "binding/vectors.h"

namespace swig {

/// An iterator over an array: an index, so that it stands a change of the array's size.
///
/// The name is that of the exported class. An iterator holds the array's script object.
class SwigPyIterator {
 public:
  virtual ~SwigPyIterator() = default;

  /// A new reference. \throws Binding::StopIteration at the end.
  virtual PyObject* value() const = 0;
  /// \throws Binding::StopIteration at the end, where it then stands.
  virtual SwigPyIterator* incr(std::size_t n = 1) = 0;
  virtual SwigPyIterator* decr(std::size_t = 1) { throw Binding::StopIteration(); }
  virtual std::ptrdiff_t distance(const SwigPyIterator&) const { Unsupported(); }
  virtual bool equal(const SwigPyIterator&) const { Unsupported(); }
  virtual SwigPyIterator* copy() const = 0;

  PyObject* next() {
    Binding::PyRef element(value());
    if (element) {
      incr();
    }
    return element.Release();
  }
  PyObject* __next__() { return next(); }
  PyObject* previous() {
    decr();
    return value();
  }
  SwigPyIterator* advance(std::ptrdiff_t n) {
    const auto count = static_cast<std::size_t>(n);
    return n > 0 ? incr(count) : decr(-count);
  }

  bool __eq__(const SwigPyIterator& x) const { return equal(x); }
  bool __ne__(const SwigPyIterator& x) const { return !equal(x); }
  SwigPyIterator* __iadd__(std::ptrdiff_t n) { return advance(n); }
  SwigPyIterator* __isub__(std::ptrdiff_t n) { return retreat(n); }
  SwigPyIterator* __add__(std::ptrdiff_t n) const {
    std::unique_ptr<SwigPyIterator> moved(copy());
    moved->advance(n);
    return moved.release();
  }
  SwigPyIterator* __sub__(std::ptrdiff_t n) const {
    std::unique_ptr<SwigPyIterator> moved(copy());
    moved->retreat(n);
    return moved.release();
  }
  std::ptrdiff_t __sub__(const SwigPyIterator& x) const { return x.distance(*this); }

 private:
  SwigPyIterator* retreat(std::ptrdiff_t n) {
    const auto count = static_cast<std::size_t>(n);
    return n < 0 ? incr(-count) : decr(count);
  }
  [[noreturn]] static void Unsupported() { throw std::invalid_argument("operation not supported"); }
};

}  // namespace swig

namespace Binding {

/// The iterator of an array of T.
template <class T>
class ArrayIterator final : public swig::SwigPyIterator {
 public:
  explicit ArrayIterator(PyObject* array) : m_array(PyRef::Borrowed(array)) {}

  PyObject* value() const override {
    const std::vector<T>& elements = Elements();
    if (m_index >= elements.size()) {
      throw StopIteration();
    }
    return Element<T>::ToPython(elements[m_index]);
  }

  SwigPyIterator* incr(std::size_t n) override {
    const std::size_t size = Elements().size();
    const std::size_t rest = size > m_index ? size - m_index : 0;
    m_index += std::min(n, rest);
    return n <= rest ? this : throw StopIteration();
  }

  SwigPyIterator* decr(std::size_t n) override {
    const bool within = n <= m_index;
    m_index = within ? m_index - n : 0;
    return within ? this : throw StopIteration();
  }

  std::ptrdiff_t distance(const SwigPyIterator& x) const override {
    return static_cast<std::ptrdiff_t>(SameKind(x).m_index) - static_cast<std::ptrdiff_t>(m_index);
  }

  bool equal(const SwigPyIterator& x) const override {
    const ArrayIterator& other = SameKind(x);
    return m_index == other.m_index && &Elements() == &other.Elements();
  }

  SwigPyIterator* copy() const override { return new ArrayIterator(*this); }

 private:
  const std::vector<T>& Elements() const {
    HeldPointer array;
    if (!array.Take(m_array.Get(), TypeOf<std::vector<T>>(), false) && PyErr_Occurred()) {
      throw ErrorAlreadySet();
    }
    const auto* const elements = static_cast<const std::vector<T>*>(array.Get());
    return elements ? *elements : throw std::invalid_argument("the array was deleted");
  }

  static const ArrayIterator& SameKind(const SwigPyIterator& x) {
    const auto* other = dynamic_cast<const ArrayIterator*>(&x);
    return other ? *other : throw std::invalid_argument("bad iterator type");
  }

  PyRef m_array;
  std::size_t m_index = 0;
};

}  // namespace Binding
