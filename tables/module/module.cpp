#include "tables/module/module.h"

NB_MODULE(_tables, module) {
  // What lives until the interpreter ends is no leak.
  nanobind::set_leak_warnings(false);
  module.doc() =
      "Group files without state: any number of threads, only the wanted columns, in one pass.\n\n"
      "The interpreter's lock is released in all that touches a file. No call changes what "
      "another\n"
      "returned.";
  Tabulon::Module::AddErrors(module);
  Tabulon::Module::AddSelection(module);
  Tabulon::Module::AddFigures(module);
  Tabulon::Module::AddGroupTable(module);
  Tabulon::Module::AddRunList(module);
  Tabulon::Module::AddVocabulary(module);
}
