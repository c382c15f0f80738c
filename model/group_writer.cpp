#include "model/group_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "groupfiles/header_text.h"
#include "model/group1d.h"
#include "model/group2d.h"
#include "model/group_number.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

IGroup& GroupOf(const GroupHolder& holder, const char* asker) {
  if (holder.group == nullptr) throw CException(63, asker);
  return *holder.group;
}

// The header.

bool IsDataType(std::uint32_t code) { return RecordLengthOf(code) != 0; }

/// The type that the header states.
std::uint32_t StatedType(const IGroup& group) {
  if (IsDataType(group.GetTargetType())) return group.GetTargetType();
  if (IsDataType(group.GetDataType())) return group.GetDataType();
  throw CException(65, GroupContext(&group));
}

int HeaderPrecision(const IGroup& group) { return PrecisionOf(StatedType(group)); }

std::string DataFileNameOf(const IGroup& group) {
  std::string name = group.GetDataFileName();
  if (!name.empty()) return name;
  return group.GetFileStem() + GroupNumberToExtension(group.GetGroupNumber(), GroupFile::kData);
}

HeaderTop DescribeTop(const IGroup& group) {
  HeaderTop top;
  top.dataFileName = DataFileNameOf(group);
  top.binary = group.IsBinary();
  top.dataType = StatedType(group);
  top.content = group.GetDataSource();
  top.config = group.GetConfig();
  top.axisCount = static_cast<std::uint32_t>(group.GetNumberOfAxes());
  top.dimensions = group.GetDimensions();
  top.name = group.GetName();
  return top;
}

HeaderVariables DescribeVariables(const IGroup& group) {
  return {group.GetSeriesNames(), group.GetSeriesQuantities()};
}

AxisDescription DescribeAxis(const CAxisBase& axis, AxisMethod method) {
  AxisDescription description;
  description.name = axis.GetName();
  description.quantity = axis.GetQuantity();
  description.method = method;
  return description;
}

std::string IntervalAxisText(const CIntervalAxis& axis, int precision) {
  AxisDescription description = DescribeAxis(axis, AxisMethod::kInterval);
  description.minimum = axis.GetMinimum();
  description.step = axis.GetStep();
  return AxisText(description, precision);
}

template <class T>
const std::vector<T>& LabelsOf(const CLabelledAxis<T>& axis, const IGroup& group) {
  if (axis.GetLabels().empty()) {
    throw CException(34, AxisPositionContext(axis.GetName(), axis.GetPosition(), &group));
  }
  return axis.GetLabels();
}

std::string LabelledAxisText(const IGroup& group, std::uint32_t position) {
  AxisDescription description;
  if (const auto values = group.GetLabelledValueAxis(position, /*mustExist=*/false)) {
    description = DescribeAxis(*values, AxisMethod::kValues);
    description.values = LabelsOf(*values, group);
  } else {
    const auto strings = group.GetLabelledStringAxis(position, /*mustExist=*/true);
    description = DescribeAxis(*strings, AxisMethod::kStrings);
    description.labels = LabelsOf(*strings, group);
  }
  return AxisText(description, HeaderPrecision(group));
}

std::string AxisBlock(const GroupHolder& holder, std::uint32_t position) {
  const auto interval = holder.group->GetIntervalAxis(position, /*mustExist=*/false);
  if (interval == nullptr) return GetLabelledAxisHeader(holder, position);
  return IntervalAxisText(*interval, HeaderPrecision(*holder.group));
}

template <class T>
std::string StatisticsBlockText(CGroupBase<T>& group, std::uint64_t secondary) {
  const int precision = HeaderPrecision(group);
  const bool isTimed = group.GetNumberOfAxes() > 0;
  GroupStatistics<T>& statistics = group.Statistics();
  const auto times = [&](const char* label, const std::vector<double>& values) {
    return isTimed ? WholeStatisticsText(label, values) : StatisticsText(label, values, precision);
  };
  std::string text =
      UloadsText(statistics.GetUloads(secondary, /*preferComputed=*/true), precision);
  text += times("MAXTIME", statistics.GetMaxTimes(secondary, /*preferComputed=*/true));
  text += times("MINTIME", statistics.GetMinTimes(secondary, /*preferComputed=*/true));
  text +=
      StatisticsText("MEAN", statistics.GetMeans(secondary, /*preferComputed=*/true), precision);
  return text;
}

template <class T>
std::string StatisticsBlocks(IGroup& group) {
  auto* const typed = dynamic_cast<CGroupBase<T>*>(&group);
  if (typed == nullptr) throw CException(61, GroupContext(&group));
  const bool twoAxes = group.GetNumberOfAxes() > 1;
  const std::uint64_t count = twoAxes ? group.GetNumberOfPoints(kSecondary) : 1;
  std::string text;
  for (std::uint64_t secondary = 0; secondary < count; ++secondary) {
    text += StatisticsBlockText(*typed, secondary);
  }
  return text;
}

// The data.

/// The data of a group as columns, in the order of a point's values: secondary index outermost,
/// then series.
template <class T>
struct DataTable {
  std::vector<const T*> columns;
  std::size_t rows = 0;
  std::size_t valuesPerLine = 0;  ///< of a text file
};

template <class T>
using SeriesList = std::vector<const CSeriesBase<T>*>;

template <class T>
SeriesList<T> SeriesOf(const CGroupBase<T>& group) {
  SeriesList<T> list;
  for (const auto& series : group.GetSeriesByPlace()) {
    if (series != nullptr) list.push_back(static_cast<const CSeriesBase<T>*>(series.get()));
  }
  return list;
}

template <class T>
void AddColumns(DataTable<T>& table, const SeriesList<T>& list, std::uint64_t secondary,
                const IGroup& group) {
  for (const CSeriesBase<T>* series : list) {
    const std::vector<T>* const points = series->FindVector(secondary);
    if (points == nullptr || points->size() < table.rows) {
      throw CException(88, GroupContext(&group));
    }
    table.columns.push_back(points->data());
  }
}

/// The first series tells the number of points and, with two axes, of secondary indices.
template <class T>
DataTable<T> TableOf(const CGroupBase<T>& group) {
  const SeriesList<T> list = SeriesOf(group);
  DataTable<T> table;
  const std::vector<T>* const first = list.empty() ? nullptr : list.front()->FindVector(0);
  if (first == nullptr || first->empty()) return table;
  table.rows = first->size();
  const bool twoAxes = group.GetNumberOfAxes() > 1;
  const std::uint64_t secondaryCount =
      twoAxes ? list.front()->GetNumberOfPointsOnAxis(kSecondary, /*widest=*/false) : 1;
  for (std::uint64_t s = 0; s < secondaryCount; ++s) AddColumns(table, list, s, group);
  table.valuesPerLine = list.size() == 1 ? table.columns.size() : list.size();
  return table;
}

constexpr std::size_t kBlockBytes =
    std::size_t{256} * 1024;  // stays in the cache on its way to the system

/// Columns that are gathered side by side: their next values fill a line of the cache.
constexpr std::size_t kTileColumns = 16;

template <class U, class T, class Width>
void GatherTile(const T* const* columns, Width width, std::size_t firstRow, std::size_t rowCount,
                U* target, std::size_t stride) {
  std::array<const T*, kTileColumns> tile{};
  std::copy_n(columns, std::size_t{width}, tile.begin());
  for (std::size_t row = firstRow; row < firstRow + rowCount; ++row, target += stride) {
    for (std::size_t i = 0; i < width; ++i) target[i] = ConvertElement<U>(tile[i][row]);
  }
}

/// Stores `rowCount` rows one after the other.
template <class U, class T>
void GatherRows(const std::vector<const T*>& columns, std::size_t firstRow, std::size_t rowCount,
                U* target) {
  std::size_t column = 0;
  for (; column + kTileColumns <= columns.size(); column += kTileColumns) {
    constexpr std::integral_constant<std::size_t, kTileColumns> kFull;
    GatherTile(&columns[column], kFull, firstRow, rowCount, target + column, columns.size());
  }
  if (column < columns.size()) {
    GatherTile(&columns[column], columns.size() - column, firstRow, rowCount, target + column,
               columns.size());
  }
}

template <class U, class T>
void WriteBinary(const DataTable<T>& table, OutputFile& file) {
  if (table.rows == 0) return;
  const std::size_t width = table.columns.size();
  const std::size_t rowsPerBlock =
      std::min(table.rows, std::max<std::size_t>(1, kBlockBytes / (width * sizeof(U))));
  std::vector<U> block(rowsPerBlock * width);
  for (std::size_t row = 0; row < table.rows; row += rowsPerBlock) {
    const std::size_t count = std::min(rowsPerBlock, table.rows - row);
    GatherRows(table.columns, row, count, block.data());
    file.Write({reinterpret_cast<const char*>(block.data()), count * width * sizeof(U)});
  }
}

/// Digits behind the point of a text file's values; a stream's own for the types without a rule.
int DataPrecision(std::uint32_t type) {
  constexpr int kOfAnyStream = 6;
  return type == kFloatCode || type == kDoubleCode ? PrecisionOf(type) : kOfAnyStream;
}

constexpr std::size_t kLongestValue = 2 + kLongestScientific;

/// Puts a value to `at`, behind two blanks; a minus sign takes the place of the second.
template <class T>
char* PutValue(char* at, T value, int precision) {
  *at++ = ' ';
  *at = ' ';
  if constexpr (std::is_floating_point_v<T>) {
    at += std::signbit(value) ? 0 : 1;
    return WriteScientific(at, value, precision, /*upperCase=*/false);
  } else {
    const auto number = static_cast<std::int32_t>(value);
    at += number < 0 ? 0 : 1;
    return std::to_chars(at, at + kLongestScientific, number).ptr;
  }
}

template <class T>
void WriteText(const DataTable<T>& table, int precision, OutputFile& file) {
  std::vector<char> block(kBlockBytes + kLongestValue + 1);
  char* const full = block.data() + kBlockBytes;
  char* at = block.data();
  for (std::size_t row = 0; row < table.rows; ++row) {
    std::size_t place = 0;
    for (const T* const column : table.columns) {
      at = PutValue(at, column[row], precision);
      if (++place == table.valuesPerLine) {
        *at++ = '\n';
        place = 0;
      }
      if (at >= full) file.Write({block.data(), std::exchange(at, block.data())});
    }
  }
  if (at != block.data()) file.Write({block.data(), at});
}

template <class T>
DataTable<T> DataOf(const IGroup& group) {
  if (const auto* oneAxis = dynamic_cast<const CGroup1D<T>*>(&group)) return TableOf<T>(*oneAxis);
  if (const auto* twoAxes = dynamic_cast<const CGroup2D<T>*>(&group)) return TableOf<T>(*twoAxes);
  throw CException(64, GroupContext(&group));
}

}  // namespace

void WriteHeader(const GroupHolder& holder, OutputFile& file, bool withoutStatistics) {
  const IGroup& group = GroupOf(holder, "WriteHeader");
  file.Write(TopText(DescribeTop(group)));
  file.Write(VariablesText(DescribeVariables(group)));
  if (group.GetNumberOfAxes() > 1) file.Write(AxisBlock(holder, kSecondary));
  file.Write(AxisBlock(holder, kPrimary));
  file.Write(NamedParametersText(group.GetOptionalVariables()));
  if (withoutStatistics) return;
  if (group.HasData() || group.IsWritingIncrementally()) file.Write(GetHeaderStats(holder));
}

template <class T>
void Write(const GroupHolder& holder, OutputFile& file, bool check) {
  const IGroup& group = GroupOf(holder, "Attempt to invoke Write statically");
  if (check) CheckSerialisable(holder);
  const DataTable<T> table = DataOf<T>(group);
  const std::uint32_t type =
      group.GetTargetType() != 0 ? group.GetTargetType() : group.GetDataType();
  VisitElementType(
      type,
      [&](auto tag) {
        using U = typename decltype(tag)::Type;
        if (group.IsBinary()) {
          WriteBinary<U>(table, file);
        } else {
          WriteText(table, DataPrecision(type), file);
        }
      },
      [&] { throw CException(65, GroupContext(&group)); });
  UpdateAxisPointCounts(holder);
}

#define TABULON_INSTANTIATE(T) template void Write<T>(const GroupHolder&, OutputFile&, bool);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

int GetRecordLength(const GroupHolder& holder) {
  return RecordLengthOf(StatedType(GroupOf(holder, "GetRecordLength")));
}

std::string GetDataFormat(const GroupHolder& holder) {
  return FormatOf(StatedType(GroupOf(holder, "GetDataFormat")));
}

std::string GetDimens(const GroupHolder& holder) {
  return DimensionsText(GroupOf(holder, "GetDimens").GetDimensions());
}

std::string GetHeaderStats(const GroupHolder& holder) {
  IGroup& group = GroupOf(holder, "GetHeaderStats");
  return VisitElementType(
      group.GetDataType(),
      [&](auto tag) { return StatisticsBlocks<typename decltype(tag)::Type>(group); },
      [&]() -> std::string { throw CException(131, GroupContext(&group)); });
}

std::string GetLabelledAxisHeader(const GroupHolder& holder, std::uint32_t position) {
  return LabelledAxisText(GroupOf(holder, "GetLabelledAxisHeader"), position);
}

void CheckSerialisable(const GroupHolder& holder) {
  const IGroup& group = GroupOf(holder, "CheckSerialisable");
  const auto refuseIf = [&](bool refused, std::int32_t code) {
    if (refused) throw CException(code, GroupContext(&group));
  };
  refuseIf(group.IsPreview(), 89);
  refuseIf(group.IsDeserialised() && !group.IsWritingIncrementally(), 90);
  refuseIf(group.GetNumberOfSeries() == 0, 91);
  refuseIf(!group.IsSymmetric(), 88);
}

void UpdateAxisPointCounts(const GroupHolder& holder) {
  const IGroup& group = GroupOf(holder, "UpdateAxisPointCounts");
  const auto update = [&group](std::uint32_t position) {
    group.GetAxis(position, /*mustExist=*/true)
        ->SetNumberOfPoints(group.GetNumberOfPoints(position));
  };
  update(kPrimary);
  const auto secondary = group.GetAxis(kSecondary, /*mustExist=*/false);
  if (secondary != nullptr && !group.IsLabelledAxis(kSecondary)) update(kSecondary);
}

}  // namespace Sumara
