// SwigPyIterator, the one iterator class of all arrays.

%{
#include "binding/array_iterator.h"
%}

%owned_class(SwigPyIterator, swig::SwigPyIterator)

%feature("except") %translate(TranslateIteratorException)

// Operators report bad arguments as all functions do, and do not leave them to the other operand.
%feature("python:maybecall", "0") swig::SwigPyIterator::__eq__;
%feature("python:maybecall", "0") swig::SwigPyIterator::__ne__;
%feature("python:maybecall", "0") swig::SwigPyIterator::__add__;
%feature("python:maybecall", "0") swig::SwigPyIterator::__sub__;

// What moves an iterator returns that very object: a second one would not keep the first alive.
%typemap(out) swig::SwigPyIterator *incr, swig::SwigPyIterator *decr,
              swig::SwigPyIterator *advance, swig::SwigPyIterator *__iadd__,
              swig::SwigPyIterator *__isub__ "$result = Py_NewRef(swig_obj[0]);"
%newobject swig::SwigPyIterator::copy;
%newobject swig::SwigPyIterator::__add__;
%newobject swig::SwigPyIterator::__sub__(ptrdiff_t n) const;

namespace swig {

class SwigPyIterator {
 public:
  virtual ~SwigPyIterator();

  %feature("docstring") value "The current element; StopIteration at the end.";
  virtual PyObject *value() const = 0;
  %feature("docstring") incr "Moves n elements forward; StopIteration at the end.";
  virtual SwigPyIterator *incr(size_t n = 1) = 0;
  %feature("docstring") decr "Moves n elements back; StopIteration at the start.";
  virtual SwigPyIterator *decr(size_t n = 1);
  %feature("docstring") distance
"How many elements x is ahead; ValueError if it is of another kind.";
  virtual ptrdiff_t distance(const SwigPyIterator &x) const;
  %feature("docstring") equal
"Whether both are at one element; ValueError if x is of another kind.";
  virtual bool equal(const SwigPyIterator &x) const;
  %feature("docstring") copy "A new iterator at the same element.";
  virtual SwigPyIterator *copy() const = 0;

  %feature("docstring") next "The current element; then moves on. StopIteration at the end.";
  PyObject *next();
  %feature("docstring") __next__ "The current element; then moves on. StopIteration at the end.";
  PyObject *__next__();
  %feature("docstring") previous "Moves back and returns the element; StopIteration at the start.";
  PyObject *previous();
  %feature("docstring") advance "Moves n elements, back if n is negative; StopIteration at an end.";
  SwigPyIterator *advance(ptrdiff_t n);

  %feature("docstring") __eq__
"Whether both are at one element; ValueError if x is of another kind.";
  bool __eq__(const SwigPyIterator &x) const;
  %feature("docstring") __ne__
"Whether they are at different elements; ValueError if x is of another kind.";
  bool __ne__(const SwigPyIterator &x) const;
  %feature("docstring") __iadd__ "Moves n elements; StopIteration at an end.";
  SwigPyIterator *__iadd__(ptrdiff_t n);
  %feature("docstring") __isub__ "Moves n elements back; StopIteration at an end.";
  SwigPyIterator *__isub__(ptrdiff_t n);
  %feature("docstring") __add__ "A new iterator n elements on; StopIteration at an end.";
  SwigPyIterator *__add__(ptrdiff_t n) const;
  %feature("docstring") __sub__
"A new iterator n elements back, or the distance from another iterator.";
  SwigPyIterator *__sub__(ptrdiff_t n) const;
  ptrdiff_t __sub__(const SwigPyIterator &x) const;

  %pythoncode %{
    def __iter__(self):
        return self
  %}
};

}  // namespace swig

%feature("except") %translate(TranslateException)
