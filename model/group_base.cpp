#include "model/group_base.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>
#include <utility>

#include "core/error_context.h"
#include "core/file.h"
#include "core/paths.h"
#include "core/text.h"
#include "model/group_number.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

/// Counts of points below this are taken from a header as they stand; more have to fit the data
/// file.
constexpr std::uint64_t kUnquestionedPoints = 1u << 18;

bool IsDataType(std::uint32_t code) { return code >= kFloatCode && code <= kLongCode; }

bool IsEmptyFile(const std::string& path) {
  std::error_code error;
  const std::string known = SystemPath(path);
  return std::filesystem::is_regular_file(known, error) &&
         std::filesystem::file_size(known, error) == 0;
}

}  // namespace

// What the group is.

template <class T>
CGroupBase<T>::CGroupBase(GroupDescription description)
    : m_path(std::move(description.path)),
      m_dataFileName(std::move(description.dataFileName)),
      m_binary(description.binary),
      m_name(std::move(description.name)),
      m_config(std::move(description.config)),
      m_dataSource(std::move(description.dataSource)) {
  if (!IsValidName(m_name)) throw CException(56, GroupContext(this));
  if (ContainsLineBreak(m_config)) throw CException(57, GroupContext(this));
  if (!IsValidName(m_dataSource)) throw CException(58, GroupContext(this));
  if (m_path.empty()) throw CException(59, GroupContext(this));
  m_groupNumber = ParseGroupNumber(m_path);
}

template <class T>
std::string CGroupBase<T>::GetFileName() const {
  return std::string(FileNameOf(m_path));
}

template <class T>
std::string CGroupBase<T>::GetFileStem() const {
  return std::string(StemOf(FileNameOf(m_path)));
}

template <class T>
std::string CGroupBase<T>::GetDirectory() const {
  if (m_path.empty()) return {};
  std::string directory = DirectoryOf(m_path);
  if (directory.empty()) return std::string(".") + kSeparator;
  return directory;
}

template <class T>
std::string CGroupBase<T>::GetDataFilePath() const {
  return GetDirectory() + GetDataFileName();
}

template <class T>
std::string CGroupBase<T>::GetDataFileName() const {
  if (!m_dataFileName.empty() || m_path.empty()) return m_dataFileName;
  std::string name = GetFileName();
  std::replace(name.begin(), name.end(), '%', '$');
  return name;
}

// What state it is in.

template <class T>
bool CGroupBase<T>::HasData() const {
  return std::any_of(m_series.begin(), m_series.end(), [](const SeriesEntry& entry) {
    return entry.series != nullptr && entry.series->HasData();
  });
}

template <class T>
std::uint32_t CGroupBase<T>::GetLoadState() const {
  if (!IsDeserialised()) return 0;
  // A product cut to 64 bits could be 0 for a damaged header: nothing would ever be loaded.
  const std::uint64_t all = DataLayout::OffsetOf(CountOfSecondary(), m_seriesNames.size(), 0);
  return m_loadedCount == all ? 1 : 2;
}

template <class T>
void CGroupBase<T>::CheckChangeable() const {
  if (IsReadOnly()) throw CException(52, GroupContext(this));
}

template <class T>
void CGroupBase<T>::SetTargetType(std::uint32_t type) {
  CheckChangeable();
  m_targetType = type;
}

template <class T>
void CGroupBase<T>::AddOptionalVariables(const std::vector<std::string>& lines) {
  CheckChangeable();
  AddOptionalVariablesUnchecked(lines);
}

template <class T>
void CGroupBase<T>::AddOptionalVariable(const std::string& line) {
  CheckChangeable();
  m_optionalVariables.push_back(line);
}

template <class T>
void CGroupBase<T>::AddOptionalVariablesUnchecked(const std::vector<std::string>& lines) {
  m_optionalVariables.insert(m_optionalVariables.end(), lines.begin(), lines.end());
}

template <class T>
void CGroupBase<T>::EndIncrementalWriting() {
  m_flushedPointCount = 0;
  for (const SeriesEntry& entry : m_series) {
    if (entry.series != nullptr) entry.series->ResetStatistics();
  }
  SetIncrementalMode(0);
}

template <class T>
void CGroupBase<T>::SnapshotExtremeIndices() {
  for (const SeriesEntry& entry : m_series) {
    if (entry.series != nullptr) entry.series->SnapshotExtremeIndices();
  }
}

template <class T>
void CGroupBase<T>::ClearSeriesData(bool keepStatistics) {
  CheckChangeable();
  if (keepStatistics) ComputeLiveUloads();
  for (const SeriesEntry& entry : m_series) {
    if (entry.series == nullptr) continue;
    entry.series->ClearData(keepStatistics);
    entry.series->ClearChangedFlags();
  }
  m_loadedCount = 0;
}

// Its axes.

template <class T>
bool CGroupBase<T>::IsLabelledAxis(std::uint32_t position) const {
  return position >= m_axes.size() || m_axes[position]->GetAxisType() != kIntervalAxis;
}

template <class T>
std::shared_ptr<CAxisBase> CGroupBase<T>::GetAxis(std::uint32_t position, bool mustExist) const {
  if (position < m_axes.size()) return m_axes[position];
  if (!mustExist) return nullptr;
  throw CException(37, GroupContext(this));
}

template <class T>
template <class Axis>
std::shared_ptr<Axis> CGroupBase<T>::GetTypedAxis(std::uint32_t position, bool mustExist) const {
  auto typed = std::dynamic_pointer_cast<Axis>(GetAxis(position, mustExist));
  if (typed == nullptr && mustExist) throw CException(38, GroupContext(this));
  return typed;
}

template <class T>
std::shared_ptr<CLabelledStringAxis> CGroupBase<T>::GetLabelledStringAxis(std::uint32_t position,
                                                                          bool mustExist) const {
  return GetTypedAxis<CLabelledStringAxis>(position, mustExist);
}

template <class T>
std::shared_ptr<CLabelledValueAxis> CGroupBase<T>::GetLabelledValueAxis(std::uint32_t position,
                                                                        bool mustExist) const {
  return GetTypedAxis<CLabelledValueAxis>(position, mustExist);
}

template <class T>
std::shared_ptr<CIntervalAxis> CGroupBase<T>::GetIntervalAxis(std::uint32_t position,
                                                              bool mustExist) const {
  return GetTypedAxis<CIntervalAxis>(position, mustExist);
}

template <class T>
void CGroupBase<T>::AddAxis(const std::shared_ptr<CAxisBase>& axis, std::uint32_t position) {
  axis->SetPosition(position);
  m_axes.push_back(axis->CopyFor(this));
}

template <class T>
std::uint64_t CGroupBase<T>::FirstSeriesCount(std::uint32_t position) const {
  for (const SeriesEntry& entry : m_series) {
    if (entry.series != nullptr)
      return entry.series->GetNumberOfPointsOnAxis(position, /*widest=*/false);
  }
  return 0;
}

template <class T>
std::uint64_t CGroupBase<T>::NumberOfPoints(std::uint32_t position, bool countLabels) const {
  if (IsDeserialised()) return GetAxis(position, /*mustExist=*/true)->GetNumberOfPoints();
  if (IsWritingIncrementally()) {
    if (position == kPrimary) return FirstSeriesCount(kPrimary) + m_flushedPointCount;
    return IsLabelledAxis(position) ? GetNumberOfLabels(position) : FirstSeriesCount(position);
  }
  if (position == kPrimary && !IsLabelledAxis(kPrimary)) return FirstSeriesCount(kPrimary);
  if (position != kPrimary && m_axes.size() == 1) GetAxis(position, /*mustExist=*/true);
  const std::uint64_t labels = countLabels ? GetNumberOfLabels(position) : 0;
  if (labels == 0 && (!countLabels || position != kPrimary)) return FirstSeriesCount(position);
  return labels;
}

template <class T>
std::uint64_t CGroupBase<T>::GetNumberOfPoints(std::uint32_t position) const {
  return NumberOfPoints(position, /*countLabels=*/true);
}

template <class T>
std::uint64_t CGroupBase<T>::GetNumberOfPrimaryPoints() const {
  return NumberOfPoints(kPrimary, /*countLabels=*/false);
}

template <class T>
std::uint64_t CGroupBase<T>::GetNumberOfLabels(std::uint32_t position) const {
  if (const auto values = GetLabelledValueAxis(position, /*mustExist=*/false))
    return values->GetLabels().size();
  if (const auto strings = GetLabelledStringAxis(position, /*mustExist=*/false))
    return strings->GetLabels().size();
  return 0;
}

template <class T>
const std::vector<double>& CGroupBase<T>::GetNumericLabels(std::uint32_t position) const {
  return GetLabelledValueAxis(position, /*mustExist=*/true)->GetLabels();
}

template <class T>
const std::vector<std::string>& CGroupBase<T>::GetStringLabels(std::uint32_t position) const {
  return GetLabelledStringAxis(position, /*mustExist=*/true)->GetLabels();
}

template <class T>
template <class Axis, class Value>
std::uint64_t CGroupBase<T>::UniqueIndex(const Axis& axis, const Value& value,
                                         const std::string& shown) const {
  const auto indices = axis.FindIndices(value);
  if (indices.size() == 1) return indices.front();
  throw CException(
      44, AxisContext(axis.GetName()) + "; axis value: " + shown + "; " + GroupContext(this));
}

template <class T>
std::uint64_t CGroupBase<T>::GetAxisIndexOfLabel(std::uint32_t position,
                                                 const std::string& text) const {
  if (const auto axis = GetLabelledStringAxis(position, /*mustExist=*/false))
    return UniqueIndex(*axis, text, text);
  return GetAxisIndexOfValue(position, std::stod(text));
}

template <class T>
std::uint64_t CGroupBase<T>::GetAxisIndexOfValue(std::uint32_t position, double value) const {
  return UniqueIndex(*GetLabelledValueAxis(position, /*mustExist=*/true), value, NumberText(value));
}

template <class T>
std::vector<std::uint64_t> CGroupBase<T>::GetDimensions() const {
  std::vector<std::uint64_t> dimensions{m_seriesNames.size()};
  if (m_axes.size() > 1) dimensions.push_back(NumberOfPoints(kSecondary, /*countLabels=*/false));
  dimensions.push_back(GetNumberOfPrimaryPoints());
  return dimensions;
}

template <class T>
void CGroupBase<T>::CheckPointCount(std::uint64_t count) const {
  // Each value takes a byte of the file at least, so a header cannot claim more points than that.
  if (!IsDeserialised() || count <= kUnquestionedPoints || count <= DataFileSize()) return;
  throw CException(130, GroupContext(this));
}

// Its series.

template <class T>
const SeriesEntry* CGroupBase<T>::FindEntry(const std::string& name) const {
  if (m_seriesByName.empty() && !m_seriesNames.empty()) {
    m_seriesByName.reserve(m_seriesNames.size());
    for (std::size_t i = 0; i < m_seriesNames.size(); ++i)
      m_seriesByName.emplace(m_seriesNames[i], i);
  }
  const auto found = m_seriesByName.find(name);
  return found == m_seriesByName.end() ? nullptr : &m_series[found->second];
}

template <class T>
const SeriesEntry& CGroupBase<T>::Entry(const std::string& name) const {
  const SeriesEntry* entry = FindEntry(name);
  if (entry == nullptr) throw CException(1, GroupContext(this));
  return *entry;
}

template <class T>
void CGroupBase<T>::CheckNotPreview() const {
  if (IsPreview()) throw CException(53, GroupContext(this));
}

template <class T>
std::string CGroupBase<T>::FreeName(const std::string& name) const {
  std::string stem = name;
  std::uint64_t number = 0;
  const std::size_t underscore = name.rfind('_');
  if (underscore != std::string::npos && underscore > 0) {
    const char* const first = name.data() + underscore + 1;
    const auto [end, error] = std::from_chars(first, name.data() + name.size(), number);
    if (error == std::errc{} && end == name.data() + name.size()) {
      stem.resize(underscore);
    } else {
      number = 0;
    }
  }
  std::string candidate;
  do {
    candidate = stem + "_" + std::to_string(++number);
  } while (HasSeries(candidate, /*exact=*/false));
  return candidate;
}

template <class T>
void CGroupBase<T>::AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) {
  CheckChangeable();
  if (m_axes.empty()) throw CException(54, GroupContext(this));
  if (series->GetDataType() != GetDataType()) throw CException(17, GroupContext(this));
  if (HasSeries(series->GetName(), /*exact=*/false)) {
    if (!renameOnClash) throw CException(2, GroupContext(this));
    series->Rename(FreeName(series->GetName()));
  }
  series->SetGroup(this);
  m_series.push_back({series, series->GetQuantity(), m_seriesNames.size()});
  m_seriesNames.push_back(series->GetName());
  m_seriesByName.clear();
  series->ComputeStatistics();
}

template <class T>
std::uint64_t CGroupBase<T>::GetSeriesIndex(const std::string& name, bool exact) const {
  if (exact) return Entry(name).index;
  for (std::size_t i = 0; i < m_seriesNames.size(); ++i) {
    if (EqualsNoCase(m_seriesNames[i], name)) return i;
  }
  throw CException(1, GroupContext(this));
}

template <class T>
std::string CGroupBase<T>::GetSeriesQuantity(const std::string& name) const {
  return Entry(name).quantity;
}

template <class T>
std::shared_ptr<ISeries> CGroupBase<T>::GetSeries(const std::string& name) const {
  CheckNotPreview();
  return Entry(name).series;
}

template <class T>
std::vector<std::shared_ptr<ISeries>> CGroupBase<T>::GetSeries(
    const std::vector<std::string>& names) const {
  CheckNotPreview();
  std::vector<std::shared_ptr<ISeries>> series;
  series.reserve(names.size());
  for (const std::string& name : names) series.push_back(Entry(name).series);
  return series;
}

template <class T>
std::shared_ptr<ISeries> CGroupBase<T>::GetFirstSeries(bool withObjectOnly) const {
  CheckNotPreview();
  for (const SeriesEntry& entry : m_series) {
    if (entry.series != nullptr || !withObjectOnly) return entry.series;
  }
  return nullptr;
}

template <class T>
std::vector<std::shared_ptr<ISeries>> CGroupBase<T>::GetAllSeries(bool withObjectOnly) const {
  CheckNotPreview();
  std::vector<std::shared_ptr<ISeries>> series;
  for (const SeriesEntry& entry : m_series) {
    if (entry.series != nullptr || !withObjectOnly) series.push_back(entry.series);
  }
  return series;
}

template <class T>
bool CGroupBase<T>::IsFirstSeries(const ISeries& series) const {
  return GetSeriesIndex(series.GetName(), /*exact=*/true) == 0;
}

template <class T>
bool CGroupBase<T>::HasSeries(const std::string& name, bool exact) const {
  return std::any_of(m_seriesNames.begin(), m_seriesNames.end(), [&](const std::string& present) {
    return exact ? present == name : EqualsNoCase(present, name);
  });
}

template <class T>
bool CGroupBase<T>::FindSeriesName(const std::string& name, std::string& out) const {
  for (const std::string& present : m_seriesNames) {
    if (!EqualsNoCase(present, name)) continue;
    out = present;
    return true;
  }
  return false;
}

template <class T>
void CGroupBase<T>::RemoveSeries(const std::vector<std::string>& names) {
  CheckChangeable();
  for (const std::string& name : names) Entry(name);  // all are there, or none is removed
  for (const std::string& name : names) {
    if (FindEntry(name) != nullptr) RemoveSeriesEntry(name, /*renumber=*/false);
  }
  RenumberSeries();
}

template <class T>
void CGroupBase<T>::RemoveSeries(const std::string& name) {
  CheckChangeable();
  RemoveSeriesEntry(name, /*renumber=*/true);
}

template <class T>
void CGroupBase<T>::RemoveSeriesEntry(const std::string& name, bool renumber) {
  const auto place = &Entry(name) - m_series.data();
  m_series.erase(m_series.begin() + place);
  m_seriesNames.erase(m_seriesNames.begin() + place);
  m_seriesByName.clear();
  if (renumber) RenumberSeries();
}

template <class T>
void CGroupBase<T>::RenumberSeries() {
  for (std::size_t i = 0; i < m_series.size(); ++i) m_series[i].index = i;
}

template <class T>
void CGroupBase<T>::SetSeriesNames(std::vector<std::string> names,
                                   std::vector<std::string> quantities) {
  m_seriesNames = std::move(names);
  m_series.clear();
  m_series.reserve(m_seriesNames.size());
  for (std::string& quantity : quantities)
    m_series.push_back({nullptr, std::move(quantity), m_series.size()});
  m_seriesByName.clear();
}

template <class T>
void CGroupBase<T>::UnloadSeries(const std::string& name) {
  SeriesEntry& entry = m_series[Entry(name).index];
  if (entry.series == nullptr) return;
  DecrementLoadedCount(entry.series->IsLoaded());
  entry.series.reset();
}

// Its data file.

template <class T>
void CGroupBase<T>::CreateReader(bool binary, bool skipOpen, const std::string& dataFilePath,
                                 const std::vector<std::uint64_t>& dimensions,
                                 std::uint32_t fileType) {
  if (!IsDataType(fileType)) throw CException(65, GroupContext(this));
  if (dataFilePath.empty()) throw CException(82, GroupContext(this));
  m_dataDimensions = dimensions;
  m_reader = MakeGroupDataReader<T>(fileType, dataFilePath, binary, dimensions);
  if (skipOpen) return;
  m_reader->Open();  // takes the length
  m_reader->Close();
}

template <class T>
void CGroupBase<T>::ResetReader() {
  if (m_reader != nullptr) m_reader->Close();
}

template <class T>
CIOBase& CGroupBase<T>::GetReader() const {
  if (m_reader == nullptr) throw CException(86, GroupContext(this));
  return *m_reader;
}

template <class T>
std::uint64_t CGroupBase<T>::GetReaderPointCount() const {
  GetReader();
  return m_dataDimensions.empty() ? 0 : m_dataDimensions.back();
}

template <class T>
std::uint64_t CGroupBase<T>::DataFileSize() const {
  std::error_code error;
  const auto size = std::filesystem::file_size(SystemPath(GetReader().GetPath()), error);
  return error ? 0 : size;
}

template <class T>
void CGroupBase<T>::CheckDataFileHasData() const {
  const std::string path = GetReader().GetPath();
  const std::uint64_t expected = ProductOf(m_dataDimensions);
  if (expected == 0 || !IsEmptyFile(path)) return;  // a file that cannot be read says so when it is
  throw CException(62, "expected " + std::to_string(expected) +
                           " data points but data file was empty: " + FileContext(path));
}

/// Fills the series of the group, which it makes as they are asked for.
template <class T>
class CGroupBase<T>::LoadTarget final : public IDataTarget<T> {
 public:
  explicit LoadTarget(CGroupBase& group) : m_group(group) {}

  std::vector<T>& Values(std::size_t variable, std::size_t secondary) override {
    return m_group.VectorToFill(*m_group.m_series[variable].series, secondary);
  }
  void Filled(std::size_t variable, std::size_t secondary) override {
    m_group.MarkFilled(*m_group.m_series[variable].series, secondary);
    m_group.IncrementLoadedCount();
  }
  std::string SeriesContext(std::size_t variable) const override {
    return Sumara::SeriesContext(m_group.m_seriesNames[variable], &m_group);
  }
  std::string GroupContext() const override { return Sumara::GroupContext(&m_group); }

 private:
  CGroupBase& m_group;
};

template <class T>
void CGroupBase<T>::LoadSeries(const std::vector<std::size_t>& variables,
                               const std::vector<std::size_t>& secondary, bool keepBuffer) {
  auto* reader = dynamic_cast<IGroupDataReader<T>*>(&GetReader());
  if (reader == nullptr) throw CException(87, GroupContext(this));
  try {
    ReadSeries(*reader, variables, secondary, keepBuffer);
  } catch (...) {
    for (const std::size_t variable : variables) DropUnloaded(m_series[variable]);
    throw;
  }
}

/// Forgets a series whose read failed: statistics would take it for one with data.
template <class T>
void CGroupBase<T>::DropUnloaded(SeriesEntry& entry) {
  if (entry.series != nullptr && entry.series->IsLoaded() == 0) entry.series.reset();
}

template <class T>
void CGroupBase<T>::ReadSeries(IGroupDataReader<T>& reader,
                               const std::vector<std::size_t>& variables,
                               const std::vector<std::size_t>& secondary, bool keepBuffer) {
  LoadTarget target(*this);
  const DataLayout layout = DataLayout::Of(m_dataDimensions, m_headerRecordCount);
  DataRequest together;  // series without any of the data are filled in one pass
  together.secondaryIndices = secondary;
  together.points = GetReaderPointCount();
  together.keepBuffer = keepBuffer;
  for (const std::size_t variable : variables) {
    SeriesEntry& entry = m_series[variable];
    if (entry.series == nullptr) entry.series = MakeSeries(m_seriesNames[variable], entry.quantity);
    DataRequest alone = together;
    alone.variables = {variable};
    std::erase_if(alone.secondaryIndices,
                  [&](std::size_t s) { return IsVectorLoaded(*entry.series, s); });
    if (alone.secondaryIndices.size() == secondary.size()) {
      together.variables.push_back(variable);
    } else if (!alone.secondaryIndices.empty()) {
      reader.Read(layout, alone, target);
    }
  }
  if (!together.variables.empty()) reader.Read(layout, together, target);
}

#define TABULON_INSTANTIATE(T) template class CGroupBase<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
