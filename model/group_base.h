#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "groupfiles/data_layout.h"
#include "groupfiles/group_data_reader.h"
#include "model/group.h"
#include "model/group_statistics.h"

namespace Sumara {

/// What a group is made of, whether it is read or to be written.
struct GroupDescription {
  std::string path;  ///< of the header file
  bool binary = true;
  std::string name;          ///< GENLAB
  std::string config;        ///< CONFIG
  std::string dataSource;    ///< CONTENT
  std::string dataFileName;  ///< FILE; empty to follow the header's name
};

/// All of a group that does not depend on the number of its axes. T is the type of its data in
/// memory, which may differ from the type in the file.
template <class T>
class CGroupBase : public IGroup {
 public:
  const std::string& GetPath() const override { return m_path; }
  std::string GetFileName() const override;
  std::string GetFileStem() const override;
  std::string GetDataFilePath() const override;
  std::string GetDataFileName() const override;
  std::string GetDirectory() const override;
  std::uint64_t GetGroupNumber() const override { return m_groupNumber; }
  const std::string& GetName() const override { return m_name; }
  const std::string& GetConfig() const override { return m_config; }
  const std::string& GetDataSource() const override { return m_dataSource; }
  bool IsBinary() const override { return m_binary; }
  std::uint32_t GetDataType() const override { return kDataTypeCode<T>; }
  std::size_t GetDataSize() const override { return sizeof(T); }
  std::uint64_t GetHeaderRecordCount() const override { return m_headerRecordCount; }
  std::uint32_t GetTargetType() const override { return m_targetType; }
  std::uint32_t GetSerialisedType() const override { return m_serialisedType; }
  const std::vector<std::string>& GetOptionalVariables() const override {
    return m_optionalVariables;
  }
  const std::string& GetRegistryPath() const override { return m_registryPath; }

  bool IsPreview() const override { return m_previewMode != PreviewMode::kFull; }
  PreviewMode GetPreviewMode() const override { return m_previewMode; }
  bool HasData() const override;
  bool IsReadOnly() const override { return IsPreview() || IsDeserialised(); }
  std::uint32_t GetLoadState() const override;
  bool IsDeserialised() const override { return m_deserialised && m_incrementalMode == 0; }
  bool IsWritingIncrementally() const override { return m_incrementalMode != 0; }
  std::uint32_t GetIncrementalMode() const override { return m_incrementalMode; }
  std::uint64_t GetFlushedPointCount() const override { return m_flushedPointCount; }

  bool IsLabelledAxis(std::uint32_t position) const override;
  std::size_t GetNumberOfAxes() const override { return m_axes.size(); }
  std::shared_ptr<CAxisBase> GetAxis(std::uint32_t position, bool mustExist) const override;
  std::shared_ptr<CLabelledStringAxis> GetLabelledStringAxis(std::uint32_t position,
                                                             bool mustExist) const override;
  std::shared_ptr<CLabelledValueAxis> GetLabelledValueAxis(std::uint32_t position,
                                                           bool mustExist) const override;
  std::shared_ptr<CIntervalAxis> GetIntervalAxis(std::uint32_t position,
                                                 bool mustExist) const override;
  void AddAxis(const std::shared_ptr<CAxisBase>& axis, std::uint32_t position) override;
  std::uint64_t GetNumberOfPoints(std::uint32_t position) const override;
  std::uint64_t GetNumberOfPrimaryPoints() const override;
  std::uint64_t GetNumberOfLabels(std::uint32_t position) const override;
  const std::vector<double>& GetNumericLabels(std::uint32_t position) const override;
  const std::vector<std::string>& GetStringLabels(std::uint32_t position) const override;
  std::uint64_t GetAxisIndexOfLabel(std::uint32_t position, const std::string& text) const override;
  std::uint64_t GetAxisIndexOfValue(std::uint32_t position, double value) const override;
  std::vector<std::uint64_t> GetDimensions() const override;
  void CheckPointCount(std::uint64_t count) const override;

  void AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) override;
  std::size_t GetNumberOfSeries() const override { return m_seriesNames.size(); }
  std::uint64_t GetSeriesIndex(const std::string& name, bool exact) const override;
  std::string GetSeriesQuantity(const std::string& name) const override;
  std::shared_ptr<ISeries> GetSeries(const std::string& name) const override;
  std::vector<std::shared_ptr<ISeries>> GetSeries(
      const std::vector<std::string>& names) const override;
  std::shared_ptr<ISeries> GetFirstSeries(bool withObjectOnly) const override;
  std::vector<std::shared_ptr<ISeries>> GetAllSeries(bool withObjectOnly) const override;
  bool IsFirstSeries(const ISeries& series) const override;
  const std::vector<std::string>& GetSeriesNames() const override { return m_seriesNames; }
  const std::vector<SeriesEntry>& GetSeriesEntries() const override { return m_series; }
  bool HasSeries(const std::string& name, bool exact) const override;
  bool FindSeriesName(const std::string& name, std::string& out) const override;
  void RemoveSeries(const std::vector<std::string>& names) override;
  void RemoveSeries(const std::string& name) override;
  void RemoveSeriesEntry(const std::string& name, bool renumber) override;
  void RenumberSeries() override;
  void SetSeriesNames(std::vector<std::string> names, std::vector<std::string> quantities) override;
  void UnloadSeries(const std::string& name) override;

  void SetTargetType(std::uint32_t type) override;
  void AddOptionalVariables(const std::vector<std::string>& lines) override;
  void AddOptionalVariable(const std::string& line) override;
  void AddOptionalVariablesUnchecked(const std::vector<std::string>& lines) override;
  void SetSerialisedType(std::uint32_t type) override { m_serialisedType = type; }
  void SetHeaderRecordCount(std::uint64_t count) override { m_headerRecordCount = count; }
  void SetGroupNumber(std::uint64_t number) override { m_groupNumber = number; }
  void SetDeserialised() override { m_deserialised = true; }
  void SetPath(const std::string& path) override { m_path = path; }
  void SetRegistryPath(const std::string& path) override { m_registryPath = path; }
  void SetPreviewMode(PreviewMode mode) override { m_previewMode = mode; }
  void SetIncrementalMode(std::uint32_t mode) override { m_incrementalMode = mode; }
  void SetFlushedPointCount(std::uint64_t count) override { m_flushedPointCount = count; }
  void EndIncrementalWriting() override;
  void SnapshotExtremeIndices() override;
  void ClearSeriesData(bool keepStatistics) override;
  void IncrementLoadedCount() override { ++m_loadedCount; }
  void DecrementLoadedCount(std::uint64_t amount) override { m_loadedCount -= amount; }

  void CreateReader(bool binary, bool skipOpen, const std::string& dataFilePath,
                    const std::vector<std::uint64_t>& dimensions, std::uint32_t fileType) override;
  void CloseReader() override { m_reader.reset(); }
  void ResetReader() override;
  CIOBase& GetReader() const override;
  std::uint64_t GetReaderPointCount() const override;
  bool IsReaderOpen() const override { return GetReader().IsOpen(); }
  void CheckDataFileHasData() const override;
  void LoadSeries(const std::vector<std::size_t>& variables,
                  const std::vector<std::size_t>& secondary, bool keepBuffer) override;

  void CheckStatisticsAvailable(std::uint64_t secondary) const override {
    m_statistics.CheckAvailable(secondary);
  }
  void ComputeLiveUloads() override { m_statistics.ComputeLiveUloads(CountOfSecondary()); }
  void ReadStoredStatistics(CHeaderReader& header, std::uint64_t variableCount) override {
    m_statistics.SetStored(header.ReadFigures(variableCount, CountOfSecondary()));
  }
  bool HasReadStoredStatistics() const override { return m_statistics.HasReadStored(); }

  /// The figures of the group's series. \throws CException as `GroupStatistics`.
  GroupStatistics<T>& Statistics() { return m_statistics; }

 protected:
  /// Checks the texts of a group; the axes are added by the derived class, the primary first.
  /// \throws CException 56, 57, 58, 59, 60, 80
  explicit CGroupBase(GroupDescription description);

  /// Secondary indices: 1 if there is one axis.
  virtual std::uint64_t CountOfSecondary() const = 0;
  /// A series that waits for its data.
  virtual std::shared_ptr<ISeries> MakeSeries(const std::string& name,
                                              const std::string& quantity) = 0;
  virtual bool IsVectorLoaded(const ISeries& series, std::uint64_t secondary) const = 0;
  virtual std::vector<T>& VectorToFill(ISeries& series, std::uint64_t secondary) = 0;
  virtual void MarkFilled(ISeries& series, std::uint64_t secondary) = 0;

  void CheckChangeable() const;

 private:
  class LoadTarget;

  std::uint64_t NumberOfPoints(std::uint32_t position, bool countLabels) const;
  std::uint64_t FirstSeriesCount(std::uint32_t position) const;
  template <class Axis>
  std::shared_ptr<Axis> GetTypedAxis(std::uint32_t position, bool mustExist) const;
  template <class Axis, class Value>
  std::uint64_t UniqueIndex(const Axis& axis, const Value& value, const std::string& shown) const;
  /// The entry of an exact name, or null.
  const SeriesEntry* FindEntry(const std::string& name) const;
  const SeriesEntry& Entry(const std::string& name) const;
  std::string FreeName(const std::string& name) const;
  void CheckNotPreview() const;
  std::uint64_t DataFileSize() const;
  void ReadSeries(IGroupDataReader<T>& reader, const std::vector<std::size_t>& variables,
                  const std::vector<std::size_t>& secondary, bool keepBuffer);
  static void DropUnloaded(SeriesEntry& entry);

  std::string m_path;
  std::string m_dataFileName;
  bool m_binary;
  std::string m_name;
  std::string m_config;
  std::string m_dataSource;
  std::uint64_t m_headerRecordCount = 0;
  std::vector<std::string> m_optionalVariables;
  std::uint64_t m_groupNumber = kNoGroupNumber;
  std::vector<std::shared_ptr<CAxisBase>> m_axes;
  bool m_deserialised = false;
  std::uint32_t m_targetType = 0;
  std::uint32_t m_serialisedType = 0;
  std::uint64_t m_flushedPointCount = 0;
  std::uint32_t m_incrementalMode = 0;
  std::string m_registryPath;
  std::unique_ptr<CIOBase> m_reader;
  std::vector<std::uint64_t> m_dataDimensions;  ///< DIMENS of the header that was read
  PreviewMode m_previewMode = PreviewMode::kFull;
  std::uint64_t m_loadedCount = 0;
  std::vector<std::string> m_seriesNames;
  std::vector<SeriesEntry> m_series;
  /// Made on the first lookup of an exact name: a run's groups hold thousands that nobody asks for.
  mutable std::unordered_map<std::string_view, std::size_t> m_seriesByName;
  GroupStatistics<T> m_statistics{*this};
};

}  // namespace Sumara
