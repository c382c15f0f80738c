#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/io_base.h"
#include "groupfiles/header_reader.h"
#include "model/axes.h"
#include "model/group_axes.h"
#include "model/group_identity.h"
#include "model/series.h"
#include "model/series_table.h"
#include "model/writing_state.h"

namespace Sumara {

/// What a group holds: all of it, or what its header tells.
enum class PreviewMode : std::uint32_t {
  kFull = 0,
  kWithStatistics = 1,     ///< a preview with the header's statistics blocks
  kWithoutStatistics = 2,  ///< a preview without them
};

/// How much of the data of a group from disk is in memory.
enum GroupLoadState : std::uint32_t { kNotFromDisk = 0, kAllLoaded = 1, kNotAllLoaded = 2 };

/// One output group in memory, whatever the type of its data: what it says of itself, its axes and
/// its series. A group from disk makes a series when its data is asked for.
///
/// The parts answer for themselves; here stands what takes several of them. Operations that change
/// a group are refused while `IsReadOnly()`: \throws CException 52
class IGroup {
 public:
  virtual ~IGroup();
  IGroup(const IGroup&) = delete;
  IGroup& operator=(const IGroup&) = delete;

  // Its parts.
  const GroupIdentity& Identity() const { return m_identity; }
  const GroupAxes& Axes() const { return m_axes; }
  const SeriesTable& Series() const { return m_series; }
  const WritingState& Writing() const { return m_writing; }

  // What depends on the type of its data.
  virtual std::uint32_t GetDataType() const = 0;
  /// \throws CException 17 for a series of another type or shape, 54 without an axis, 2 if the name
  ///         is taken and must not be changed
  virtual void AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash);
  /// Makes the reader of the data file. \throws CException 65 for no type, 82 for no path
  virtual void CreateReader(bool binary, bool skipOpen, const std::string& dataFilePath,
                            const std::vector<std::uint64_t>& dimensions,
                            std::uint32_t fileType) = 0;
  virtual void CloseReader() = 0;
  /// Has the reader close its file and give its buffer back; nothing happens without a reader.
  virtual void ResetReader() = 0;
  /// \throws CException 86 without a reader
  virtual CIOBase& GetReader() const = 0;
  bool IsReaderOpen() const { return GetReader().IsOpen(); }
  /// The points that the header told of when the reader was made. \throws CException 86
  virtual std::uint64_t GetReaderPointCount() const = 0;
  /// \throws CException 62 if the data file is there and empty, and the header tells of data.
  virtual void CheckDataFileHasData() const = 0;
  /// Refuses a count of points that the data file cannot hold, before memory is taken for it.
  /// \throws CException 130
  virtual void CheckPointCount(std::uint64_t count) const = 0;
  /// Reads the series of these indices, as far as they have no data yet, at these secondary
  /// indices. \param keepBuffer whether the raw data of the file stays for the next request.
  virtual void LoadSeries(const std::vector<std::size_t>& variables,
                          const std::vector<std::size_t>& secondary, bool keepBuffer) = 0;
  /// \throws CException 45 without data, 51 without axes, 124 for a preview without statistics, 46
  ///         or 40 for an index that the secondary axis does not have
  virtual void CheckStatisticsAvailable(std::uint64_t secondary) const = 0;
  virtual void ComputeLiveUloads() = 0;
  /// Reads the statistics blocks at the reader's position.
  virtual void ReadStoredStatistics(CHeaderReader& header, std::uint64_t variableCount) = 0;
  virtual bool HasReadStoredStatistics() const = 0;

  // What it is.
  const std::string& GetPath() const { return m_identity.Path(); }
  std::string GetFileName() const { return m_identity.FileName(); }
  std::string GetFileStem() const { return m_identity.FileStem(); }
  std::string GetDataFilePath() const { return m_identity.DataFilePath(); }
  std::string GetDataFileName() const { return m_identity.DataFileName(); }
  std::string GetDirectory() const { return m_identity.Directory(); }
  std::uint64_t GetGroupNumber() const { return m_identity.Number(); }
  const std::string& GetName() const { return m_identity.Name(); }
  const std::string& GetConfig() const { return m_identity.Config(); }
  const std::string& GetDataSource() const { return m_identity.DataSource(); }
  bool IsBinary() const { return m_identity.IsBinary(); }
  std::uint64_t GetHeaderRecordCount() const { return m_identity.HeaderRecordCount(); }
  std::uint32_t GetTargetType() const { return m_identity.TargetType(); }
  std::uint32_t GetSerialisedType() const { return m_identity.SerialisedType(); }
  const std::vector<std::string>& GetOptionalVariables() const {
    return m_identity.NamedParameters();
  }
  const std::string& GetRegistryPath() const { return m_identity.RegistryPath(); }
  void SetTargetType(std::uint32_t type);
  void AddOptionalVariables(const std::vector<std::string>& lines);
  void AddOptionalVariable(const std::string& line) { AddOptionalVariables({line}); }
  void AddOptionalVariablesUnchecked(const std::vector<std::string>& lines) {
    m_identity.AddNamedParameters(lines);
  }
  void SetSerialisedType(std::uint32_t type) { m_identity.SetSerialisedType(type); }
  void SetHeaderRecordCount(std::uint64_t count) { m_identity.SetHeaderRecordCount(count); }
  void SetGroupNumber(std::uint64_t number) { m_identity.SetNumber(number); }
  void SetPath(const std::string& path) { m_identity.SetPath(path); }
  void SetRegistryPath(const std::string& path) { m_identity.SetRegistryPath(path); }

  // What state it is in.
  bool IsPreview() const { return m_previewMode != PreviewMode::kFull; }
  PreviewMode GetPreviewMode() const { return m_previewMode; }
  bool HasData() const;
  bool IsReadOnly() const { return IsPreview() || IsDeserialised(); }
  GroupLoadState GetLoadState() const;
  /// Whether these series have their data at these secondary indices.
  bool AreLoaded(const std::vector<std::size_t>& variables,
                 const std::vector<std::size_t>& secondary) const;
  /// Whether all series that hold data are of one length.
  bool IsSymmetric() const;
  bool IsDeserialised() const { return m_deserialised && !m_writing.IsIncremental(); }
  void SetDeserialised() { m_deserialised = true; }
  void SetPreviewMode(PreviewMode mode) { m_previewMode = mode; }

  // Its writing in chunks.
  bool IsWritingIncrementally() const { return m_writing.IsIncremental(); }
  std::uint32_t GetIncrementalMode() const { return m_writing.Mode(); }
  std::uint64_t GetFlushedPointCount() const { return m_writing.FlushedPoints(); }
  void SetIncrementalMode(std::uint32_t mode) { m_writing.SetMode(mode); }
  void SetFlushedPointCount(std::uint64_t count) { m_writing.SetFlushedPoints(count); }
  void EndIncrementalWriting();
  void SnapshotExtremeIndices();
  void ClearSeriesData(bool keepStatistics);

  // Its axes.
  bool IsLabelledAxis(std::uint32_t position) const { return m_axes.IsLabelled(position); }
  std::size_t GetNumberOfAxes() const { return m_axes.Count(); }
  /// \throws CException 37 if there must be one
  std::shared_ptr<CAxisBase> GetAxis(std::uint32_t position, bool mustExist) const {
    return mustExist ? m_axes.Get(position) : m_axes.Find(position);
  }
  /// \throws CException 37 if there must be one, 38 if it is of another kind
  std::shared_ptr<CLabelledStringAxis> GetLabelledStringAxis(std::uint32_t position,
                                                             bool mustExist) const {
    return GetTypedAxis<CLabelledStringAxis>(position, mustExist);
  }
  std::shared_ptr<CLabelledValueAxis> GetLabelledValueAxis(std::uint32_t position,
                                                           bool mustExist) const {
    return GetTypedAxis<CLabelledValueAxis>(position, mustExist);
  }
  std::shared_ptr<CIntervalAxis> GetIntervalAxis(std::uint32_t position, bool mustExist) const {
    return GetTypedAxis<CIntervalAxis>(position, mustExist);
  }
  /// Takes a copy of the axis, which belongs to this group from then on.
  void AddAxis(const std::shared_ptr<CAxisBase>& axis, std::uint32_t position);
  std::uint64_t GetNumberOfPoints(std::uint32_t position) const {
    return NumberOfPoints(position, /*countLabels=*/true);
  }
  std::uint64_t GetNumberOfPrimaryPoints() const {
    return NumberOfPoints(kPrimary, /*countLabels=*/false);
  }
  std::uint64_t GetNumberOfLabels(std::uint32_t position) const {
    return m_axes.LabelCount(position);
  }
  const std::vector<double>& GetNumericLabels(std::uint32_t position) const {
    return m_axes.Get<CLabelledValueAxis>(position)->GetLabels();
  }
  const std::vector<std::string>& GetStringLabels(std::uint32_t position) const {
    return m_axes.Get<CLabelledStringAxis>(position)->GetLabels();
  }
  std::uint64_t GetAxisIndexOfLabel(std::uint32_t position, const std::string& text) const {
    return m_axes.IndexOf(position, text, LabelMatch::kUnique);
  }
  std::uint64_t GetAxisIndexOfValue(std::uint32_t position, double value) const {
    return m_axes.IndexOf(position, value, LabelMatch::kUnique);
  }
  /// Secondary indices of the data: 1 if there is one axis.
  std::uint64_t CountOfSecondary() const;
  /// Number of series, secondary count if there are two axes, primary count: DIMENS.
  std::vector<std::uint64_t> GetDimensions() const;

  // Its series. An unknown name: \throws CException 1; objects of a preview: \throws CException 53
  std::size_t GetNumberOfSeries() const { return m_series.Size(); }
  /// \param exact the name has to be spelled so; else so spelled, or the first in any case.
  std::uint64_t GetSeriesIndex(const std::string& name, bool exact) const;
  std::string GetSeriesQuantity(const std::string& name) const {
    return std::string(m_series.Quantities()[PlaceOf(name)]);
  }
  std::shared_ptr<ISeries> GetSeries(const std::string& name) const;
  std::vector<std::shared_ptr<ISeries>> GetSeries(const std::vector<std::string>& names) const;
  std::shared_ptr<ISeries> GetFirstSeries(bool withObjectOnly) const;
  std::vector<std::shared_ptr<ISeries>> GetAllSeries(bool withObjectOnly) const;
  bool IsFirstSeries(const ISeries& series) const { return PlaceOf(series.GetName()) == 0; }
  const NameList& GetSeriesNames() const { return m_series.Names(); }
  /// In the order of the names.
  const NameList& GetSeriesQuantities() const { return m_series.Quantities(); }
  /// In the order of the names, null where there is no object, whatever the mode of the group.
  const std::vector<std::shared_ptr<ISeries>>& GetSeriesByPlace() const {
    return m_series.Series();
  }
  bool HasSeries(const std::string& name, bool exact) const;
  /// The stored spelling of a name: so spelled, else the first in any case.
  bool FindSeriesName(const std::string& name, std::string& out) const;
  void RemoveSeries(const std::vector<std::string>& names);
  void RemoveSeries(const std::string& name);
  /// Places follow from the table: there is nothing to renumber.
  void RemoveSeriesEntry(const std::string& name, bool /*renumber*/) {
    m_series.Remove(PlaceOf(name));
  }
  /// Takes back the series that was added last, for which no memory is needed.
  void RemoveLastSeries() noexcept { m_series.Remove(m_series.Size() - 1); }
  void SetSeriesNames(NameList names, NameList quantities) {
    m_series.SetNames(std::move(names), std::move(quantities));
  }
  void UnloadSeries(const std::string& name) { m_series.SetSeries(PlaceOf(name), nullptr); }

 protected:
  /// \throws CException as `GroupIdentity`; the axes are added by the derived class, the primary
  ///         first.
  explicit IGroup(GroupDescription description);

  void CheckChangeable() const;
  SeriesTable& MutableSeries() { return m_series; }

 private:
  template <class Axis>
  std::shared_ptr<Axis> GetTypedAxis(std::uint32_t position, bool mustExist) const {
    return mustExist ? m_axes.Get<Axis>(position) : m_axes.Find<Axis>(position);
  }
  std::uint64_t NumberOfPoints(std::uint32_t position, bool countLabels) const;
  std::uint64_t FirstSeriesCount(std::uint32_t position) const;
  std::size_t PlaceOf(const std::string& name) const;
  void CheckNotPreview() const;

  GroupIdentity m_identity;
  GroupAxes m_axes{[this] { return m_identity.Context(); }};
  SeriesTable m_series;
  WritingState m_writing;
  PreviewMode m_previewMode = PreviewMode::kFull;
  bool m_deserialised = false;
};

}  // namespace Sumara
