#include <nanobind/nanobind.h>
#include <nanobind/stl/string_view.h>

#include <string_view>

#include "tables/module/module.h"
#include "tables/module/text.h"
#include "tables/run_list.h"
#include "tables/utf8.h"
#include "vocabulary/calculation_kinds.h"
#include "vocabulary/completion_phrases.h"
#include "vocabulary/quantity_codes.h"
#include "vocabulary/run_files.h"

namespace Tabulon::Module {

using namespace nb::literals;
using SumaraApi::CalculationType;

void AddVocabulary(nb::module_& module) {
  module.def(
      "completion_state",
      [](const PathArgument& path) {
        const nb::gil_scoped_release unlocked;
        return static_cast<int>(CompletionOf(path.bytes));
      },
      "termination_path"_a, "Code of how a run ended, by the text of its termination file.");
  module.def(
      "calculation_of_header",
      [](const PathArgument& path) {
        const nb::gil_scoped_release unlocked;
        return static_cast<int>(CalculationOfHeader(path.bytes));
      },
      "path"_a, "Code of the kind of calculation of a header, which is read up to CONTENT only.");
  module.def(
      "calculation_of_content",
      [](std::string_view content) {
        return static_cast<int>(SumaraApi::CalculationTypeOf(content));
      },
      "content"_a);
  module.def(
      "calculation_of_extension",
      [](std::string_view extension) {
        return static_cast<int>(SumaraApi::CalculationTypeOfExtension(extension));
      },
      "extension"_a, "Of a file that a calculation without header leaves: \".$mx\" and the like.");
  module.def(
      "calculation_name",
      [](int calculation) {
        return Text(SumaraApi::DescriptiveNameOf(static_cast<CalculationType>(calculation)));
      },
      "calculation"_a, "For example \"Power production simulation\".");
  module.def(
      "unit_of_quantity",
      [](std::string_view code) {
        return Text(Utf8OfLatin1(SumaraApi::UnitOfQuantityCode(code, /*lenient=*/true)));
      },
      "code"_a, "SI unit of a quantity code; empty if the code is not known.");
}

}  // namespace Tabulon::Module
