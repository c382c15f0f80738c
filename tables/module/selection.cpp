#include "tables/selection.h"

#include <nanobind/nanobind.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/vector.h>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "tables/module/module.h"

namespace Tabulon::Module {

using namespace nb::literals;

namespace {

constexpr const char* kDoc =
    "Columns and rows that are wanted.\n\n"
    "Parameters\n----------\n"
    "variables : positions of variables in the header.\n"
    "secondary : positions on the secondary axis; None takes all.\n"
    "first : row of the file.\n"
    "count : rows; None takes those up to the last that the header expects, or that is there if "
    "it\n"
    "    expects none.\n"
    "step : rows of the file from one wanted row to the next.";

}  // namespace

void AddSelection(nb::module_& module) {
  nb::class_<Selection>(module, "Selection", kDoc)
      .def(
          "__init__",
          [](Selection* self, std::vector<std::size_t> variables,
             std::optional<std::vector<std::size_t>> secondary, std::uint64_t first,
             std::optional<std::uint64_t> count, std::uint64_t step) {
            new (self) Selection{std::move(variables), std::move(secondary), first, count, step};
          },
          "variables"_a, "secondary"_a = nb::none(), "first"_a = 0, "count"_a = nb::none(),
          "step"_a = 1)
      .def_ro("variables", &Selection::variables)
      .def_ro("secondary", &Selection::secondary)
      .def_ro("first", &Selection::first)
      .def_ro("count", &Selection::count)
      .def_ro("step", &Selection::step);
}

}  // namespace Tabulon::Module
