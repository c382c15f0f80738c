#include "tables/group_table.h"

#include <stdexcept>
#include <utility>

#include "core/exceptions.h"
#include "tables/failures.h"
#include "tables/file_plan.h"
#include "tables/header_contents.h"
#include "tables/header_figures.h"
#include "tables/read_rows.h"
#include "tables/reduce_rows.h"

namespace Tabulon {
GroupTable::GroupTable(std::shared_ptr<const Contents> contents)
    : m_contents(std::move(contents)) {}

GroupTable GroupTable::Open(const std::string& headerPath) {
  return GroupTable(std::make_shared<const Contents>(Contents{ReadHeader(headerPath)}));
}

const std::string& GroupTable::Path() const { return m_contents->path; }
const std::string& GroupTable::DataPath() const { return m_contents->dataPath; }
const std::string& GroupTable::Name() const { return m_contents->top.name; }
std::int32_t GroupTable::Number() const { return m_contents->number; }
SumaraApi::CalculationType GroupTable::Calculation() const { return m_contents->calculation; }
const std::string& GroupTable::Content() const { return m_contents->top.content; }
const std::string& GroupTable::Config() const { return m_contents->top.config; }
const std::vector<std::string>& GroupTable::Parameters() const { return m_contents->parameters; }
bool GroupTable::IsBinary() const { return m_contents->top.binary; }
std::uint32_t GroupTable::StoredType() const { return m_contents->top.dataType; }
std::uint64_t GroupTable::HeaderRecords() const { return m_contents->top.headerRecordCount; }
const std::vector<std::uint64_t>& GroupTable::Dimensions() const {
  return m_contents->top.dimensions;
}
const std::vector<VariableInfo>& GroupTable::Variables() const { return m_contents->variables; }
const std::vector<AxisInfo>& GroupTable::Axes() const { return m_contents->axes; }
bool GroupTable::HasFigures() const { return m_contents->figures.has_value(); }

std::optional<std::uint64_t> GroupTable::DataSize() const {
  try {
    return DataSizeOf(*m_contents);
  } catch (const CIOException& failure) {
    constexpr std::int32_t kMissing = 5000;
    if (failure.ErrorCode() == kMissing) return std::nullopt;
    throw TableError::Of(failure, DataPath());
  }
}

Rows GroupTable::CountRows(const StopQuestion& stop) const {
  return AsTableErrors(DataPath(),
                       [&] { return CountRowsOf(*m_contents, DataSizeOf(*m_contents), stop); });
}

Shape GroupTable::ShapeOf(const Selection& selection, const StopQuestion& stop) const {
  return AsTableErrors(DataPath(), [&] {
    return PlanFor(*m_contents, selection, {}, DataSizeOf(*m_contents), stop).GetShape();
  });
}

template <class T>
void GroupTable::Read(const Selection& selection, const Room<T>& room,
                      const StopQuestion& stop) const {
  AsTableErrors(DataPath(), [&] { ReadRows<T>(*m_contents, selection, {}, room, stop); });
}

template <class T>
void GroupTable::Read(const Selection& selection, std::span<T* const> columns, std::uint64_t rows,
                      const StopQuestion& stop) const {
  const auto given = [&](const Shape& shape) {
    if (shape != Shape{columns.size(), static_cast<std::size_t>(rows)})
      throw std::invalid_argument("the target has another shape than what is read");
    return std::vector<T*>(columns.begin(), columns.end());
  };
  AsTableErrors(DataPath(), [&] { ReadRows<T>(*m_contents, selection, rows, given, stop); });
}

template <class T>
void GroupTable::Read(const Selection& selection, std::span<T> out,
                      const StopQuestion& stop) const {
  const std::size_t secondary = selection.secondary
                                    ? selection.secondary->size()
                                    : static_cast<std::size_t>(m_contents->layout.secondary);
  const std::size_t columnCount = selection.variables.size() * secondary;
  const std::size_t rows = columnCount == 0 ? 0 : out.size() / columnCount;
  if (rows * columnCount != out.size())
    throw std::invalid_argument("the target has another size than what is read");
  std::vector<T*> columns(columnCount);
  for (std::size_t c = 0; c < columnCount; ++c) columns[c] = out.data() + c * rows;
  Read<T>(selection, columns, rows, stop);
}

Reduction GroupTable::Reduce(const Selection& selection, const StopQuestion& stop) const {
  return AsTableErrors(DataPath(), [&] { return ReduceRows(*m_contents, selection, stop); });
}

std::optional<StoredFigures> GroupTable::Figures(const std::vector<std::size_t>& variables,
                                                 std::optional<std::size_t> at) const {
  return AsTableErrors(Path(), [&] { return ReadFigures(*m_contents, variables, at); });
}

#define TABULON_INSTANTIATE(T)                                                               \
  template void GroupTable::Read(const Selection&, std::span<T>, const StopQuestion&) const; \
  template void GroupTable::Read(const Selection&, std::span<T* const>, std::uint64_t,       \
                                 const StopQuestion&) const;                                 \
  template void GroupTable::Read(const Selection&, const Room<T>&, const StopQuestion&) const;
TABULON_INSTANTIATE(float)
TABULON_INSTANTIATE(double)
TABULON_INSTANTIATE(int)
#undef TABULON_INSTANTIATE

}  // namespace Tabulon
