#include "tables/header_contents.h"

#include <optional>
#include <utility>

#include "core/error_context.h"
#include "core/file_clock.h"
#include "core/file_lease.h"
#include "core/paths.h"
#include "core/text.h"
#include "groupfiles/header_reader.h"
#include "tables/header_failure.h"
#include "tables/steady_read.h"
#include "tables/utf8.h"
#include "tables/watched.h"
#include "vocabulary/calculation_kinds.h"
#include "vocabulary/quantity_codes.h"
#include "vocabulary/run_files.h"

namespace Tabulon {
namespace {

using Sumara::AxisDescription;
using Sumara::AxisMethod;
using SumaraApi::AxisTypeId;
using OpenHeader = Watched<Sumara::CHeaderReader>;

AxisTypeId KindOf(AxisMethod method) {
  switch (method) {
    case AxisMethod::kStrings:
      return AxisTypeId::LabelledStringAxis;
    case AxisMethod::kValues:
      return AxisTypeId::LabelledValueAxis;
    default:
      return AxisTypeId::IntervalAxis;
  }
}

std::string UnitOf(const std::string& quantity) {
  return Utf8OfLatin1(SumaraApi::UnitOfQuantityCode(quantity, /*lenient=*/true));
}

/// \throws Sumara::CException 32, 33 for an axis that the results model refuses too.
AxisInfo InfoOf(AxisDescription axis) {
  if (axis.method == AxisMethod::kInterval && axis.step == 0.0)
    throw Sumara::CException(33, Sumara::AxisContext(axis.name));
  if (axis.method != AxisMethod::kInterval && axis.values.empty() && axis.labels.empty())
    throw Sumara::CException(32, Sumara::AxisContext(axis.name));
  std::string unit = UnitOf(axis.quantity);
  return {std::move(axis.name),
          std::move(axis.quantity),
          std::move(unit),
          KindOf(axis.method),
          axis.pointCount,
          axis.minimum,
          axis.step,
          std::move(axis.values),
          std::move(axis.labels)};
}

std::vector<VariableInfo> InfosOf(const Sumara::HeaderVariables& variables) {
  std::vector<VariableInfo> infos;
  infos.reserve(variables.names.Size());
  for (std::size_t i = 0; i < variables.names.Size(); ++i) {
    std::string quantity(variables.quantities[i]);
    // Neighbours often are of one kind.
    const bool isAsBefore = i > 0 && quantity == infos.back().quantity;
    std::string unit = isAsBefore ? infos.back().unit : UnitOf(quantity);
    infos.push_back({std::string(variables.names[i]), std::move(quantity), std::move(unit)});
  }
  return infos;
}

/// The fields in the order of the file. \param axis counts the axis blocks that were read.
void ReadFields(OpenHeader& header, HeaderContents& contents, int& axis) {
  contents.top = header.ReadTop();
  contents.axes.clear();
  for (axis = 0; axis < static_cast<int>(contents.top.axisCount); ++axis) {
    AxisInfo info = InfoOf(header.ReadAxis(contents.top, static_cast<std::size_t>(axis) + 1));
    contents.axes.insert(contents.axes.begin(), std::move(info));  // the primary axis comes last
  }
  contents.parameters = header.ReadNamedParameters();
  std::string label;
  contents.figures.reset();
  if (header.PeekLabel(label) && label == "ULOADS") contents.figures = header.Position();
  contents.variables = InfosOf(header.ReadVariables());
}

void ReadOpened(OpenHeader& header, HeaderContents& contents) {
  int axis = 0;
  try {
    ReadFields(header, contents, axis);
  } catch (const CExceptionBase& failure) {
    throw HeaderFailure(header, failure, axis);
  }
}

/// Of what may differ while a header grows.
std::uint64_t FingerprintOfFields(const HeaderContents& contents) {
  const std::uint64_t figures = contents.figures.value_or(0);
  std::uint64_t sum = FingerprintOf(&figures, sizeof(figures), contents.variables.size());
  for (const auto& [name, quantity, unit] : contents.variables)
    sum = FingerprintOf(name.data(), name.size(), sum);
  return sum;
}

}  // namespace

HeaderContents ReadHeader(const std::string& path) {
  HeaderContents contents;
  contents.path = path;
  contents.number = SumaraApi::HeaderNumberOf(Sumara::ExtensionOf(Sumara::FileNameOf(path)));
  OpenHeader header(path);
  try {
    std::optional<Sumara::FileLease> lease;
    const auto start = [&]() -> SteadyStart {
      lease.reset();
      header.Close();
      header.Start();
      const Sumara::FileState state = header.State();
      if (!Sumara::ChangedJustNow(state)) return {state};  // a header is read in no time
      lease = Sumara::FileLease::Of(header.OpenFile());
      return {header.State(), lease.has_value()};
    };
    contents.file = ReadSteadily(
        path, {start, [&] { return header.State(); }, [&] { ReadOpened(header, contents); },
               [&] { return FingerprintOfFields(contents); }});
  } catch (const CExceptionBase& failure) {
    throw TableError::Of(failure, path);
  }
  contents.dataPath = Sumara::DirectoryOf(path) + contents.top.dataFileName;
  contents.layout = Sumara::DataLayout::Of(
      Sumara::DataDimensions(contents.top.dimensions, contents.top.axisCount),
      contents.top.headerRecordCount);
  contents.calculation = SumaraApi::CalculationTypeOf(contents.top.content);
  return contents;
}

}  // namespace Tabulon
