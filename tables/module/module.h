#pragma once

#include <nanobind/nanobind.h>

// The parts of the module tabulon._tables. They convert, call and wrap; all else stands in tables/.

namespace Tabulon::Module {

namespace nb = nanobind;

void AddErrors(nb::module_& module);
void AddSelection(nb::module_& module);
void AddFigures(nb::module_& module);
void AddGroupTable(nb::module_& module);
void AddRunList(nb::module_& module);
void AddVocabulary(nb::module_& module);

}  // namespace Tabulon::Module
