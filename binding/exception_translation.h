#pragma once

namespace Binding {

/// Thrown by an iterator at either end of its array.
struct StopIteration {};

// Each of these turns the exception in flight into a Python one. What is no `std::exception` is not
// theirs to handle.

/// Functions of the public classes, and constructors.
void TranslateException();
/// Functions of the arrays.
void TranslateArrayException();
/// Functions of the iterator.
void TranslateIteratorException();

}  // namespace Binding
