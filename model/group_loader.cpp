#include "model/group_loader.h"

#include <utility>
#include <vector>

#include "core/paths.h"
#include "core/text.h"
#include "groupfiles/data_layout.h"
#include "groupfiles/header_reader.h"
#include "model/group1d.h"
#include "model/group2d.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

std::shared_ptr<CAxisBase> MakeAxis(AxisDescription description) {
  std::string& name = description.name;
  std::string& quantity = description.quantity;
  std::shared_ptr<CAxisBase> axis;
  switch (description.method) {
    case AxisMethod::kStrings:
      axis = std::make_shared<CLabelledStringAxis>(std::move(name), std::move(quantity),
                                                   std::move(description.labels), kPrimary);
      break;
    case AxisMethod::kValues:
      axis = std::make_shared<CLabelledValueAxis>(std::move(name), std::move(quantity),
                                                  std::move(description.values), kPrimary);
      break;
    case AxisMethod::kInterval:
      axis = std::make_shared<CIntervalAxis>(std::move(name), std::move(quantity),
                                             description.minimum, description.step);
      break;
  }
  axis->SetNumberOfPoints(description.pointCount);
  return axis;
}

/// The axis blocks, in file order: of two, the secondary axis comes first.
std::vector<std::shared_ptr<CAxisBase>> ReadAxes(CHeaderReader& header, const HeaderTop& top) {
  std::vector<std::shared_ptr<CAxisBase>> axes;
  for (std::uint32_t i = 0; i < top.axisCount; ++i)
    axes.push_back(MakeAxis(header.ReadAxis(top, i + 1)));
  return axes;
}

std::shared_ptr<IGroup> MakeGroup(GroupDescription description, std::uint32_t dataType,
                                  const std::vector<std::shared_ptr<CAxisBase>>& axes) {
  return VisitElementType(
      dataType,
      [&](auto tag) -> std::shared_ptr<IGroup> {
        using T = typename decltype(tag)::Type;
        if (axes.size() == 1) return std::make_shared<CGroup1D<T>>(std::move(description), axes[0]);
        return std::make_shared<CGroup2D<T>>(std::move(description), axes[1], axes[0]);
      },
      []() -> std::shared_ptr<IGroup> { throw CException(65); });
}

/// Passes over the fields in front of the statistics.
HeaderTop PassToStatistics(CHeaderReader& header) {
  HeaderTop top = header.ReadTop();
  for (std::uint32_t i = 0; i < top.axisCount; ++i) header.ReadAxis(top, i + 1);
  header.ReadNamedParameters();
  return top;
}

}  // namespace

std::shared_ptr<IGroup> LoadGroup(
    const std::string& path, PreviewMode previewMode, std::uint32_t targetType,
    const std::function<void(const std::shared_ptr<IGroup>&)>& enter) {
  CHeaderReader header(path);
  header.Start();
  const HeaderTop top = header.ReadTop();
  const auto axes = ReadAxes(header, top);

  auto group = MakeGroup({path, top.binary, top.name, top.config, top.content, top.dataFileName},
                         targetType != 0 ? targetType : top.dataType, axes);
  for (std::uint32_t position = 0; position < top.axisCount; ++position) {
    const CAxisBase& read = *axes[top.axisCount - 1 - position];
    group->GetAxis(position, /*mustExist=*/true)->SetNumberOfPoints(read.GetNumberOfPoints());
  }
  group->SetHeaderRecordCount(top.headerRecordCount);
  group->SetPreviewMode(previewMode);
  group->SetSerialisedType(top.dataType);
  const bool isPreview = previewMode != PreviewMode::kFull;
  group->CreateReader(top.binary, /*skipOpen=*/isPreview, DirectoryOf(path) + top.dataFileName,
                      DataDimensions(top.dimensions, axes.size()), top.dataType);
  if (!isPreview) group->CheckDataFileHasData();
  enter(group);

  group->AddOptionalVariablesUnchecked(header.ReadNamedParameters());
  if (previewMode == PreviewMode::kWithStatistics)
    group->ReadStoredStatistics(header, top.dimensions.front());
  HeaderVariables variables = header.ReadVariables();
  group->SetSeriesNames(std::move(variables.names), std::move(variables.quantities));
  header.Close();
  group->SetDeserialised();
  return group;
}

void LoadStoredStatistics(const std::string& path, IGroup& group) {
  CHeaderReader header(path);
  header.Start();
  PassToStatistics(header);
  // A header that was rewritten since with other variables, or with these in another order, would
  // give each of them the figures of another.
  if (header.ReadVariables().names != group.GetSeriesNames()) return;
  const HeaderTop top = PassToStatistics(header);
  group.ReadStoredStatistics(header, top.dimensions.front());
}

}  // namespace Sumara
