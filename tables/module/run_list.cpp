#include "tables/run_list.h"

#include <nanobind/nanobind.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/vector.h>

#include <optional>
#include <utility>
#include <vector>

#include "tables/module/module.h"
#include "tables/module/signals.h"
#include "tables/module/text.h"

namespace Tabulon::Module {

using namespace nb::literals;

namespace {

struct RunList {
  std::vector<RunFiles> runs;
  std::vector<UnreadableDirectory> unreadable;
};

using FileName = std::string RunFiles::*;

auto NameOrNone(FileName member) {
  return [member](const RunFiles& run) -> std::optional<nb::str> {
    if ((run.*member).empty()) return std::nullopt;
    return PathText(run.*member);
  };
}

void AddRecords(nb::module_& module) {
  nb::class_<HeaderFile>(module, "HeaderFile", "A group header by its file name.")
      .def_prop_ro("name", [](const HeaderFile& file) { return PathText(file.name); })
      .def_ro("number", &HeaderFile::number);
  nb::class_<RunFiles>(module, "RunRecord",
                       "The files of a run, by their names as the directory lists them.")
      .def_prop_ro(
          "path", [](const RunFiles& run) { return PathText(run.Path()); }, "Without an extension.")
      .def_prop_ro(
          "directory", [](const RunFiles& run) { return PathText(run.directory); },
          "With a trailing separator.")
      .def_prop_ro("name", [](const RunFiles& run) { return PathText(run.name); })
      .def_prop_ro("termination", [](const RunFiles& run) { return PathText(run.termination); })
      .def_prop_ro("messages", NameOrNone(&RunFiles::messages))
      .def_prop_ro("verification", NameOrNone(&RunFiles::verification))
      .def_ro("headers", &RunFiles::headers, "In the order of their numbers.")
      .def_prop_ro(
          "extensions",
          [](const RunFiles& run) -> nb::typed<nb::list, nb::str> { return Texts(run.otherKinds); },
          "Of files that tell the kind of a calculation without header.")
      .def_prop_ro(
          "state",
          [](const RunFiles& run) -> std::optional<int> {
            if (!run.state) return std::nullopt;
            return static_cast<int>(*run.state);
          },
          "Code of the completion state, if it was asked for.");
  nb::class_<UnreadableDirectory>(module, "Unreadable", "A directory that could not be listed.")
      .def_prop_ro("path",
                   [](const UnreadableDirectory& directory) { return PathText(directory.path); })
      .def_prop_ro("text",
                   [](const UnreadableDirectory& directory) { return Text(directory.text); });
  nb::class_<RunList>(module, "RunList", "What a walk found.")
      .def_ro("runs", &RunList::runs,
              "A directory after the other, in the natural order of their names.")
      .def_ro("unreadable", &RunList::unreadable);
}

RunList List(const PathArgument& root, bool recursive, bool completion) {
  const nb::gil_scoped_release unlocked;
  RunList list;
  ListRuns(
      root.bytes, {recursive, completion},
      [&](RunFiles&& run) { list.runs.push_back(std::move(run)); },
      [&](UnreadableDirectory&& directory) { list.unreadable.push_back(std::move(directory)); },
      SignalWaits());
  return list;
}

}  // namespace

void AddRunList(nb::module_& module) {
  AddRecords(module);
  module.def("list_runs", &List, "root"_a, "recursive"_a = true, "completion"_a = false,
             "Runs below a directory in one walk. A missing root is a TableError.");
  module.def(
      "find_run",
      [](const PathArgument& path, bool completion) {
        const nb::gil_scoped_release unlocked;
        return FindRun(path.bytes, completion, SignalWaits());
      },
      "path"_a, "completion"_a = false,
      "The files of one run: the path of any of them, or one without extension.\n\n"
      "None if there is no termination file. Only its directory is listed.");
}

}  // namespace Tabulon::Module
