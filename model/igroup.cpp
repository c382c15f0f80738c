#include "model/igroup.h"

#include <algorithm>
#include <utility>

#include "model/model_context.h"

namespace Sumara {

IGroup::IGroup(GroupDescription description) : m_identity(std::move(description)) {}

IGroup::~IGroup() = default;

void IGroup::CheckChangeable() const {
  if (IsReadOnly()) throw CException(52, GroupContext(this));
}

void IGroup::CheckNotPreview() const {
  if (IsPreview()) throw CException(53, GroupContext(this));
}

void IGroup::SetTargetType(std::uint32_t type) {
  CheckChangeable();
  m_identity.SetTargetType(type);
}

void IGroup::AddOptionalVariables(const std::vector<std::string>& lines) {
  CheckChangeable();
  m_identity.AddNamedParameters(lines);
}

// What state it is in.

bool IGroup::HasData() const {
  const auto& all = m_series.Series();
  return std::any_of(all.begin(), all.end(),
                     [](const auto& series) { return series != nullptr && series->HasData(); });
}

GroupLoadState IGroup::GetLoadState() const {
  if (!IsDeserialised()) return kNotFromDisk;
  const std::uint64_t vectors = CountOfSecondary();
  const auto& all = m_series.Series();
  const bool areLoaded = std::all_of(all.begin(), all.end(), [&](const auto& series) {
    return series != nullptr && series->IsLoaded() == vectors;
  });
  return areLoaded ? kAllLoaded : kNotAllLoaded;
}

bool IGroup::AreLoaded(const std::vector<std::size_t>& variables,
                       const std::vector<std::size_t>& secondary) const {
  return std::all_of(variables.begin(), variables.end(), [&](std::size_t variable) {
    const ISeries* const series = m_series.Series()[variable].get();
    return series != nullptr &&
           std::all_of(secondary.begin(), secondary.end(),
                       [series](std::size_t s) { return series->IsVectorLoaded(s); });
  });
}

// Its writing in chunks.

void IGroup::EndIncrementalWriting() {
  m_series.ForEachSeries([](ISeries& series) { series.ResetStatistics(); });
  m_writing.End();
}

void IGroup::SnapshotExtremeIndices() {
  m_series.ForEachSeries([](ISeries& series) { series.SnapshotExtremeIndices(); });
}

void IGroup::ClearSeriesData(bool keepStatistics) {
  CheckChangeable();
  if (keepStatistics) ComputeLiveUloads();
  m_series.ForEachSeries([&](ISeries& series) {
    series.ClearData(keepStatistics);
    series.ClearChangedFlags();
  });
}

// Its axes.

void IGroup::AddAxis(const std::shared_ptr<CAxisBase>& axis, std::uint32_t position) {
  axis->SetPosition(position);
  m_axes.Add(axis->CopyFor(this));
}

std::uint64_t IGroup::FirstSeriesCount(std::uint32_t position) const {
  const auto first = m_series.FirstSeries();
  return first != nullptr ? first->GetNumberOfPointsOnAxis(position, /*widest=*/false) : 0;
}

std::uint64_t IGroup::NumberOfPoints(std::uint32_t position, bool countLabels) const {
  if (IsDeserialised()) return m_axes.Get(position)->GetNumberOfPoints();
  if (IsWritingIncrementally()) {
    if (position == kPrimary) return FirstSeriesCount(kPrimary) + m_writing.FlushedPoints();
    return IsLabelledAxis(position) ? GetNumberOfLabels(position) : FirstSeriesCount(position);
  }
  if (position == kPrimary && !IsLabelledAxis(kPrimary)) return FirstSeriesCount(kPrimary);
  if (position != kPrimary && m_axes.Count() == 1) m_axes.Get(position);
  const std::uint64_t labels = countLabels ? GetNumberOfLabels(position) : 0;
  if (labels == 0 && (!countLabels || position != kPrimary)) return FirstSeriesCount(position);
  return labels;
}

std::uint64_t IGroup::CountOfSecondary() const {
  if (m_axes.Count() < 2) return 1;
  const std::uint64_t count = m_axes.Get(kSecondary)->GetNumberOfPoints();
  return count != 0 ? count : GetNumberOfPoints(kSecondary);
}

std::vector<std::uint64_t> IGroup::GetDimensions() const {
  std::vector<std::uint64_t> dimensions{m_series.Size()};
  if (m_axes.Count() > 1) dimensions.push_back(NumberOfPoints(kSecondary, /*countLabels=*/false));
  dimensions.push_back(GetNumberOfPrimaryPoints());
  return dimensions;
}

// Its series.

std::size_t IGroup::PlaceOf(const std::string& name) const {
  if (const auto place = m_series.PlaceOfExact(name)) return *place;
  throw CException(1, GroupContext(this));
}

void IGroup::AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) {
  CheckChangeable();
  if (m_axes.Count() == 0) throw CException(54, GroupContext(this));
  if (series->GetDataType() != GetDataType()) throw CException(17, GroupContext(this));
  if (m_series.PlaceOf(series->GetName())) {
    if (!renameOnClash) throw CException(2, GroupContext(this));
    series->Rename(m_series.FreeName(series->GetName()));
  }
  m_series.Append(series->GetName(), series->GetQuantity(), series);
  try {
    series->SetGroup(this);
  } catch (...) {
    RemoveLastSeries();
    throw;
  }
}

std::uint64_t IGroup::GetSeriesIndex(const std::string& name, bool exact) const {
  if (exact) return PlaceOf(name);
  if (const auto place = m_series.PlaceOf(name)) return *place;
  throw CException(1, GroupContext(this));
}

std::shared_ptr<ISeries> IGroup::GetSeries(const std::string& name) const {
  CheckNotPreview();
  return m_series.Series()[PlaceOf(name)];
}

std::vector<std::shared_ptr<ISeries>> IGroup::GetSeries(
    const std::vector<std::string>& names) const {
  CheckNotPreview();
  std::vector<std::shared_ptr<ISeries>> series;
  series.reserve(names.size());
  for (const std::string& name : names) series.push_back(m_series.Series()[PlaceOf(name)]);
  return series;
}

std::shared_ptr<ISeries> IGroup::GetFirstSeries(bool withObjectOnly) const {
  CheckNotPreview();
  if (withObjectOnly) return m_series.FirstSeries();
  return m_series.Size() != 0 ? m_series.Series().front() : nullptr;
}

std::vector<std::shared_ptr<ISeries>> IGroup::GetAllSeries(bool withObjectOnly) const {
  CheckNotPreview();
  std::vector<std::shared_ptr<ISeries>> all = m_series.Series();
  if (withObjectOnly) std::erase(all, nullptr);
  return all;
}

bool IGroup::HasSeries(const std::string& name, bool exact) const {
  return (exact ? m_series.PlaceOfExact(name) : m_series.PlaceOf(name)).has_value();
}

bool IGroup::FindSeriesName(const std::string& name, std::string& out) const {
  const auto place = m_series.PlaceOf(name);
  if (place) out = m_series.Names()[*place];
  return place.has_value();
}

bool IGroup::IsSymmetric() const {
  if (!HasData()) return true;
  const bool twoAxes = m_axes.Count() > 1;
  const auto sizeOf = [twoAxes](const ISeries& series) {
    return std::pair(series.GetNumberOfPointsOnAxis(kPrimary, /*widest=*/false),
                     twoAxes ? series.GetNumberOfPointsOnAxis(kSecondary, /*widest=*/false) : 0);
  };
  const auto first = sizeOf(*m_series.FirstSeries());
  bool same = true;
  m_series.ForEachSeries([&](const ISeries& series) { same = same && sizeOf(series) == first; });
  return same;
}

void IGroup::RemoveSeries(const std::vector<std::string>& names) {
  CheckChangeable();
  for (const std::string& name : names) PlaceOf(name);  // all are there, or none is removed
  for (const std::string& name : names) {
    if (const auto place = m_series.PlaceOfExact(name)) m_series.Remove(*place);
  }
}

void IGroup::RemoveSeries(const std::string& name) {
  CheckChangeable();
  m_series.Remove(PlaceOf(name));
}

}  // namespace Sumara
