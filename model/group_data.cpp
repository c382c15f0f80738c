#include "model/group_data.h"

#include "core/element_types.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "model/model_context.h"
#include "model/series.h"

namespace Sumara {
namespace {

/// Counts of points below this are taken from a header as they stand; more have to fit the data
/// file.
constexpr std::uint64_t kUnquestionedPoints = 1u << 18;

bool IsDataType(std::uint32_t code) { return code >= kFloatCode && code <= kLongCode; }

}  // namespace

template <class T>
void GroupData<T>::Create(bool binary, bool skipOpen, const std::string& path,
                          const std::vector<std::uint64_t>& dimensions, std::uint32_t fileType) {
  if (!IsDataType(fileType)) throw CException(65, m_context());
  if (path.empty()) throw CException(82, m_context());
  m_dimensions = dimensions;
  m_reader = MakeGroupDataReader<T>(fileType, path, binary, dimensions);
  if (skipOpen) return;
  m_reader->Open();  // takes the length
  m_reader->Close();
}

template <class T>
void GroupData<T>::Reset() {
  if (m_reader != nullptr) m_reader->Close();
}

template <class T>
CIOBase& GroupData<T>::Reader() const {
  if (m_reader == nullptr) throw CException(86, m_context());
  return *m_reader;
}

template <class T>
std::uint64_t GroupData<T>::PointCount() const {
  Reader();
  return m_dimensions.empty() ? 0 : m_dimensions.back();
}

template <class T>
void GroupData<T>::CheckNotEmpty() const {
  const std::string path = Reader().GetPath();
  const std::uint64_t expected = ProductOf(m_dimensions);
  // A file that cannot be read says so when it is.
  if (expected == 0 || FileSize(path).value_or(1) != 0) return;
  throw CException(62, "expected " + std::to_string(expected) +
                           " data points but data file was empty: " + FileContext(path));
}

template <class T>
void GroupData<T>::CheckPointCount(std::uint64_t count) const {
  // Each value takes a byte of the file at least, so a header cannot claim more points than that.
  if (count <= kUnquestionedPoints || count <= FileSize(Reader().GetPath()).value_or(0)) return;
  throw CException(130, m_context());
}

/// Fills the series of a table.
template <class T>
class GroupData<T>::Target final : public IDataTarget<T> {
 public:
  Target(SeriesTable& table, const std::function<std::string()>& context)
      : m_table(table), m_context(context) {}

  std::vector<T>& Values(std::size_t variable, std::size_t secondary) override {
    return SeriesAt(variable).VectorToFill(secondary);
  }
  void Filled(std::size_t variable, std::size_t secondary) override {
    SeriesAt(variable).MarkFilled(secondary);
  }
  std::string SeriesContext(std::size_t variable) const override {
    return SeriesContextIn(std::string(m_table.Names()[variable]), m_context());
  }
  std::string GroupContext() const override { return m_context(); }

  /// Makes the series if there is none.
  const ISeries& Ensure(std::size_t variable, const MakeSeries& make) {
    if (m_table.Series()[variable] == nullptr) {
      m_table.SetSeries(variable, make(std::string(m_table.Names()[variable]),
                                       std::string(m_table.Quantities()[variable])));
    }
    return *m_table.Series()[variable];
  }

  /// Empties what waits for data, and forgets a series that has none: statistics would take it for
  /// one with data.
  void DropUnloaded(const SeriesRequest& request) noexcept {
    for (const std::size_t variable : request.variables) {
      const ISeries* const series = m_table.Series()[variable].get();
      if (series == nullptr) continue;
      if (series->IsLoaded() == 0) {
        m_table.SetSeries(variable, nullptr);
        continue;
      }
      for (const std::size_t s : request.secondary) {
        if (!series->IsVectorLoaded(s)) SeriesAt(variable).VectorToFill(s).clear();
      }
    }
  }

 private:
  CSeriesBase<T>& SeriesAt(std::size_t variable) {
    return static_cast<CSeriesBase<T>&>(*m_table.Series()[variable]);
  }

  SeriesTable& m_table;
  const std::function<std::string()>& m_context;
};

template <class T>
void GroupData<T>::Load(CIOBase& reader, std::uint64_t headerRecords, const SeriesRequest& request,
                        SeriesTable& series, const MakeSeries& make) const {
  auto* const typed = dynamic_cast<IGroupDataReader<T>*>(&reader);
  if (typed == nullptr) throw CException(87, m_context());
  Target target(series, m_context);
  try {
    Read(*typed, DataLayout::Of(m_dimensions, headerRecords), request, target, make);
  } catch (...) {
    target.DropUnloaded(request);
    throw;
  }
}

template <class T>
void GroupData<T>::Read(IGroupDataReader<T>& reader, const DataLayout& layout,
                        const SeriesRequest& request, Target& target,
                        const MakeSeries& make) const {
  DataRequest together;  // series without any of the data are filled in one pass
  together.secondaryIndices = request.secondary;
  together.points = PointCount();
  together.keepBuffer = request.keepBuffer;
  for (const std::size_t variable : request.variables) {
    const ISeries& series = target.Ensure(variable, make);
    DataRequest alone = together;
    alone.variables = {variable};
    std::erase_if(alone.secondaryIndices, [&](std::size_t s) { return series.IsVectorLoaded(s); });
    if (alone.secondaryIndices.empty()) continue;  // all is there, or nothing is to be
    if (alone.secondaryIndices.size() == request.secondary.size()) {
      together.variables.push_back(variable);
    } else {
      reader.Read(layout, alone, target);
    }
  }
  if (!together.variables.empty()) reader.Read(layout, together, target);
}

#define TABULON_INSTANTIATE(T) template class GroupData<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
