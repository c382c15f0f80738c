#include "tables/group_table.h"

#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tables/module/arrays.h"
#include "tables/module/module.h"
#include "tables/module/signals.h"
#include "tables/module/text.h"

namespace Tabulon::Module {

using namespace nb::literals;

namespace {

using SumaraApi::AxisTypeId;

constexpr const char* kDoc =
    "A group's header as it was when it was opened, and the road to its data file.\n\n"
    "Nothing is kept open and nothing changes: any number of threads may use one table. What a "
    "call\n"
    "returns is the data file at one time.";

constexpr const char* kReadDoc =
    "Read the selection in one pass: a new array (columns, rows).\n\n"
    "Column `v * S + s` is the v-th variable at the s-th secondary value asked for. `dtype` is\n"
    "\"float64\", \"float32\" or \"int32\".";

constexpr const char* kReadIntoDoc =
    "Read the selection into `out`, an array (columns, rows) of float64, float32 or int32.\n\n"
    "The values of a column must lie behind each other; columns may lie apart. An array of "
    "another\n"
    "type is a TypeError, one of another shape or layout a ValueError; neither is filled.";

template <class T>
void ReadInto(const GroupTable& table, const Selection& selection, const Target<T>& out) {
  const nb::gil_scoped_release unlocked;
  table.Read<T>(
      selection, [&](const Shape& shape) { return Checked(out, shape); }, SignalWaits());
}

template <class T>
nb::object ReadNew(const GroupTable& table, const Selection& selection, const nb::object& dtype) {
  nb::object made;
  const auto room = [&](const Shape& shape) {
    const nb::gil_scoped_acquire locked;
    made = nb::module_::import_("numpy").attr("empty")(nb::make_tuple(shape.columns, shape.rows),
                                                       dtype);
    return Checked(nb::cast<Target<T>>(made), shape);
  };
  {
    const nb::gil_scoped_release unlocked;
    table.Read<T>(selection, room, SignalWaits());
  }
  return made;
}

nb::object Read(const GroupTable& table, const Selection& selection, const nb::object& dtype) {
  const nb::object type = nb::module_::import_("numpy").attr("dtype")(dtype);
  const auto name = nb::cast<std::string>(type.attr("str"));  // outlives the text of Python
  if (name == "<f8") return ReadNew<double>(table, selection, type);
  if (name == "<f4") return ReadNew<float>(table, selection, type);
  if (name == "<i4") return ReadNew<int>(table, selection, type);
  throw nb::type_error("values are read as float64, float32 or int32");
}

const char* TypeName(const GroupTable& table) {
  switch (table.StoredType()) {
    case 1:
      return "float32";
    case 2:
      return "float64";
    default:
      return "int32";
  }
}

template <class Call>
auto Unlocked(const Call& call) {
  const nb::gil_scoped_release unlocked;  // nothing of Python below
  return call();
}

void AddInfos(nb::module_& module) {
  nb::class_<VariableInfo>(module, "VariableInfo", "A variable of a group.")
      .def_prop_ro("name", [](const VariableInfo& info) { return Text(info.name); })
      .def_prop_ro(
          "quantity", [](const VariableInfo& info) { return Text(info.quantity); },
          "The code of the header.")
      .def_prop_ro(
          "unit", [](const VariableInfo& info) { return Text(info.unit); },
          "SI unit of the code; empty if the code is not known.");
  nb::class_<AxisInfo>(module, "AxisInfo", "An axis of a group.")
      .def_prop_ro("name", [](const AxisInfo& info) { return Text(info.name); })
      .def_prop_ro("quantity", [](const AxisInfo& info) { return Text(info.quantity); })
      .def_prop_ro("unit", [](const AxisInfo& info) { return Text(info.unit); })
      .def_prop_ro(
          "kind", [](const AxisInfo& info) { return static_cast<int>(info.kind); },
          "INTERVAL_AXIS, VALUE_AXIS or LABEL_AXIS.")
      .def_ro("count", &AxisInfo::count, "The entry of DIMENS.")
      .def_ro("minimum", &AxisInfo::minimum, "Of an interval axis: value i is i * step + minimum.")
      .def_ro("step", &AxisInfo::step)
      .def_prop_ro(
          "values",
          [](const AxisInfo& info) -> std::optional<nb::ndarray<nb::numpy, double>> {
            if (info.kind != AxisTypeId::LabelledValueAxis) return std::nullopt;
            return Array<double>(info.values, {info.values.size()});
          },
          nb::rv_policy::reference, "Of an axis of values, as many as the header lists.")
      .def_prop_ro(
          "labels",
          [](const AxisInfo& info) -> std::optional<nb::typed<nb::list, nb::str>> {
            if (info.kind != AxisTypeId::LabelledStringAxis) return std::nullopt;
            return Texts(info.labels);
          },
          "Of an axis of labels, likewise.");
  nb::class_<Rows>(module, "Rows", "How far a data file has come.")
      .def_ro("expected", &Rows::expected, "The last entry of DIMENS.")
      .def_ro("found", &Rows::found,
              "Whole rows that are there now; more than expected in a long file.")
      .def_ro("torn", &Rows::torn, "Something stands behind the last whole row.");
}

void AddFacts(nb::class_<GroupTable>& table) {
  table.def_prop_ro("path", [](const GroupTable& t) { return PathText(t.Path()); })
      .def_prop_ro("data_path", [](const GroupTable& t) { return PathText(t.DataPath()); })
      .def_prop_ro("name", [](const GroupTable& t) { return Text(t.Name()); })
      .def_prop_ro("number", &GroupTable::Number, "Of the extension; -1 if it has none.")
      .def_prop_ro(
          "calculation", [](const GroupTable& t) { return static_cast<int>(t.Calculation()); },
          "Code of the kind of calculation that CONTENT names; -1 if it is not known.")
      .def_prop_ro("content", [](const GroupTable& t) { return Text(t.Content()); })
      .def_prop_ro("config", [](const GroupTable& t) { return Text(t.Config()); })
      .def_prop_ro(
          "parameters",
          [](const GroupTable& t) -> nb::typed<nb::list, nb::str> { return Texts(t.Parameters()); },
          "The lines that NVARS counts.")
      .def_prop_ro("binary", &GroupTable::IsBinary)
      .def_prop_ro("stored_type", &GroupTable::StoredType,
                   "1 float32, 2 float64, 3 int16, 4 int32, 5 the integer of FORMAT I*8 (32 bits).")
      .def_prop_ro("dtype", &TypeName, "The type in which values are read unchanged.")
      .def_prop_ro("header_records", &GroupTable::HeaderRecords)
      .def_prop_ro("dimensions", &GroupTable::Dimensions)
      .def_prop_ro("variables", &GroupTable::Variables)
      .def_prop_ro("axes", &GroupTable::Axes, "Primary first.")
      .def_prop_ro("has_figures", &GroupTable::HasFigures);
}

}  // namespace

void AddGroupTable(nb::module_& module) {
  module.attr("INTERVAL_AXIS") = static_cast<int>(AxisTypeId::IntervalAxis);
  module.attr("VALUE_AXIS") = static_cast<int>(AxisTypeId::LabelledValueAxis);
  module.attr("LABEL_AXIS") = static_cast<int>(AxisTypeId::LabelledStringAxis);
  AddInfos(module);
  nb::class_<GroupTable> table(module, "GroupTable", kDoc);
  AddFacts(table);
  table
      .def_static(
          "open",
          [](const PathArgument& path) {
            return Unlocked([&] { return GroupTable::Open(path.bytes); });
          },
          "path"_a, "Read a header once, without its figures.")
      .def(
          "data_size", [](const GroupTable& t) { return Unlocked([&] { return t.DataSize(); }); },
          "Bytes of the data file; None if there is no such file.")
      .def(
          "rows",
          [](const GroupTable& t) { return Unlocked([&] { return t.CountRows(SignalWaits()); }); },
          "Rows expected and found. Of a text file all lines are counted.")
      .def(
          "shape_of",
          [](const GroupTable& t, const Selection& selection) {
            const Shape shape = Unlocked([&] { return t.ShapeOf(selection, SignalWaits()); });
            return nb::make_tuple(shape.columns, shape.rows);
          },
          "selection"_a, nb::sig("def shape_of(self, selection: Selection) -> tuple[int, int]"),
          "Columns and rows that `read` gives.")
      .def("read", &Read, "selection"_a, "dtype"_a = "float64", kReadDoc,
           nb::sig("def read(self, selection: Selection, dtype: numpy.typing.DTypeLike = "
                   "\"float64\") -> numpy.typing.NDArray[typing.Any]"))
      .def("read_into", &ReadInto<double>, "selection"_a, "out"_a.noconvert(), kReadIntoDoc)
      .def("read_into", &ReadInto<float>, "selection"_a, "out"_a.noconvert())
      .def("read_into", &ReadInto<int>, "selection"_a, "out"_a.noconvert())
      .def(
          "reduce",
          [](const GroupTable& t, const Selection& selection) {
            return Unlocked([&] { return t.Reduce(selection, SignalWaits()); });
          },
          "selection"_a, "Figures of the selection in one pass, without making the series.")
      .def(
          "stored_figures",
          [](const GroupTable& t, const std::vector<std::size_t>& variables,
             std::optional<std::size_t> at) {
            return Unlocked([&] { return t.Figures(variables, at); });
          },
          "variables"_a, "at"_a = nb::none(),
          "Figures that the header holds of some variables, or None.\n\n"
          "`at` is a variable for whose extremes the values of all others are wanted.");
}

}  // namespace Tabulon::Module
