#include <nanobind/nanobind.h>

#include <exception>

#include "tables/module/module.h"
#include "tables/module/text.h"
#include "tables/table_error.h"

namespace Tabulon::Module {
namespace {

constexpr const char* kDoc =
    "A file that is missing, damaged or cut off.\n\n"
    "`args` are the attributes `text`, `code` (of the reader: 81 for a header that does not open,\n"
    "5000 for a missing data file, 25 for missing rows, 127 for an unknown FORMAT, ...), `path`, "
    "`field` (the label of the header, or \"rows\";\n"
    "empty if there is none) and `found` (what stands there).";

/// A read-only attribute that is one of the exception's arguments.
nb::object Argument(const char* type, int place) {
  const nb::object getter =
      nb::cpp_function([place](nb::handle self) { return nb::object(self.attr("args")[place]); },
                       nb::is_method(), nb::sig(type));
  return nb::module_::import_("builtins").attr("property")(getter);
}

/// Made at import and kept by the module.
nb::object MakeErrorType() {
  nb::dict members;
  members["text"] = Argument("def text(self) -> str", 0);
  members["code"] = Argument("def code(self) -> int", 1);
  members["path"] = Argument("def path(self) -> str", 2);
  members["field"] = Argument("def field(self) -> str", 3);
  members["found"] = Argument("def found(self) -> str", 4);
  members["__str__"] =
      nb::cpp_function([](nb::handle self) { return nb::str(nb::object(self.attr("args")[0])); },
                       nb::is_method(), nb::sig("def __str__(self) -> str"));
  return nb::steal(PyErr_NewExceptionWithDoc("tabulon._tables.TableError", kDoc, PyExc_Exception,
                                             members.ptr()));
}

void Raise(nb::handle type, const TableError& error) {
  const nb::tuple arguments =
      nb::make_tuple(Text(error.Text()), error.Code(), PathText(error.Path()), Text(error.Field()),
                     Text(error.Found()));
  PyErr_SetObject(type.ptr(), arguments.ptr());
}

}  // namespace

void AddErrors(nb::module_& module) {
  const nb::object type = MakeErrorType();
  module.attr("TableError") = type;
  nb::register_exception_translator(
      [](const std::exception_ptr& thrown, void* errorType) {
        try {
          std::rethrow_exception(thrown);
        } catch (const TableError& error) {
          Raise(static_cast<PyObject*>(errorType), error);
        } catch (const Stopped&) {
          // The handler of the signal has set what Python raises.
        }
      },
      type.inc_ref().ptr());
}

}  // namespace Tabulon::Module
