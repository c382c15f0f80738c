#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>

#include <optional>
#include <vector>

#include "tables/module/arrays.h"
#include "tables/module/module.h"
#include "tables/reduction.h"
#include "tables/stored_figures.h"

namespace Tabulon::Module {
namespace {

constexpr const char* kReductionDoc =
    "Figures of columns: arrays with an element a column, in the order of the selection.\n\n"
    "Values that are not finite are counted and left out; without a finite one figures are NaN "
    "and\n"
    "rows -1. The deviation is that of the population.";

constexpr const char* kStoredDoc =
    "Figures that a header holds: arrays (variables, secondary values), one secondary value with "
    "one\n"
    "axis. Times are values of the primary axis. NaN stands for a block that the header does not\n"
    "have.";

/// The array owns its values: it need not keep the figures alive.
constexpr auto kOwned = nb::rv_policy::reference;

template <class T>
auto Column(std::vector<T> Reduction::*member) {
  return [member](const Reduction& figures) {
    const std::vector<T>& values = figures.*member;
    return Array<T>(values, {values.size()});
  };
}

using Values = std::vector<double> StoredFigures::*;

nb::ndarray<nb::numpy, double> Table(const StoredFigures& figures, Values member) {
  const std::vector<double>& values = figures.*member;
  const std::size_t secondary = figures.secondary;
  return Array<double>(values, {secondary == 0 ? 0 : values.size() / secondary, secondary});
}

auto TableOf(Values member) {
  return [member](const StoredFigures& figures) { return Table(figures, member); };
}

auto TableIfAsked(Values member) {
  return [member](const StoredFigures& figures) -> std::optional<nb::ndarray<nb::numpy, double>> {
    if ((figures.*member).empty()) return std::nullopt;
    return Table(figures, member);
  };
}

}  // namespace

void AddFigures(nb::module_& module) {
  nb::class_<Reduction>(module, "Reduction", kReductionDoc)
      .def_prop_ro("minimum", Column(&Reduction::minimum), kOwned)
      .def_prop_ro("maximum", Column(&Reduction::maximum), kOwned)
      .def_prop_ro("minimum_row", Column(&Reduction::minimumRow), kOwned,
                   "Row of the file; the first of equals.")
      .def_prop_ro("maximum_row", Column(&Reduction::maximumRow), kOwned)
      .def_prop_ro("mean", Column(&Reduction::mean), kOwned)
      .def_prop_ro("deviation", Column(&Reduction::deviation), kOwned)
      .def_prop_ro("count", Column(&Reduction::count), kOwned, "Finite values.")
      .def_prop_ro("not_finite", Column(&Reduction::notFinite), kOwned);
  nb::class_<StoredFigures>(module, "StoredFigures", kStoredDoc)
      .def_prop_ro("minimum", TableOf(&StoredFigures::minimum), kOwned)
      .def_prop_ro("maximum", TableOf(&StoredFigures::maximum), kOwned)
      .def_prop_ro("mean", TableOf(&StoredFigures::mean), kOwned)
      .def_prop_ro("minimum_time", TableOf(&StoredFigures::minimumTime), kOwned)
      .def_prop_ro("maximum_time", TableOf(&StoredFigures::maximumTime), kOwned)
      .def_prop_ro("at_minimum", TableIfAsked(&StoredFigures::atMinimum), kOwned,
                   "All variables of the group where the one asked for has its minimum.")
      .def_prop_ro("at_maximum", TableIfAsked(&StoredFigures::atMaximum), kOwned);
}

}  // namespace Tabulon::Module
