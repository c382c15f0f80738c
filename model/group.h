#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/io_base.h"
#include "groupfiles/header_reader.h"
#include "model/axes.h"
#include "model/series.h"

namespace Sumara {

/// What a group holds: all of it, or what its header tells.
enum class PreviewMode : std::uint32_t {
  kFull = 0,
  kWithStatistics = 1,     ///< a preview with the header's statistics blocks
  kWithoutStatistics = 2,  ///< a preview without them
};

/// A number that no group has: the group number is not assigned.
inline constexpr std::uint64_t kNoGroupNumber = ~std::uint64_t{0};

/// A name of a group's table and, once its data was asked for, its series.
struct SeriesEntry {
  std::shared_ptr<ISeries> series;
  std::string quantity;
  std::uint64_t index = 0;
};

/// One output group in memory: its description, its axes, its table of series and, if it came from
/// disk, the reader of its data file.
///
/// A group from disk makes a series when its data is asked for. Operations that change a group fail
/// with 52 while `IsReadOnly()`.
class IGroup {
 public:
  virtual ~IGroup() = default;

  // What the group is.
  virtual const std::string& GetPath() const = 0;
  virtual std::string GetFileName() const = 0;
  virtual std::string GetFileStem() const = 0;
  virtual std::string GetDataFilePath() const = 0;
  virtual std::string GetDataFileName() const = 0;
  virtual std::string GetDirectory() const = 0;
  virtual std::uint64_t GetGroupNumber() const = 0;
  virtual const std::string& GetName() const = 0;
  virtual const std::string& GetConfig() const = 0;
  virtual const std::string& GetDataSource() const = 0;
  virtual bool IsBinary() const = 0;
  virtual std::uint32_t GetDataType() const = 0;
  virtual std::size_t GetDataSize() const = 0;
  virtual std::uint64_t GetHeaderRecordCount() const = 0;
  virtual std::uint32_t GetTargetType() const = 0;
  virtual std::uint32_t GetSerialisedType() const = 0;
  virtual const std::vector<std::string>& GetOptionalVariables() const = 0;
  virtual const std::string& GetRegistryPath() const = 0;

  // What state it is in.
  virtual bool IsPreview() const = 0;
  virtual PreviewMode GetPreviewMode() const = 0;
  virtual bool HasData() const = 0;
  virtual bool IsReadOnly() const = 0;
  /// 0 if it is not from disk, 1 if all data is loaded, else 2.
  virtual std::uint32_t GetLoadState() const = 0;
  virtual bool IsDeserialised() const = 0;
  virtual bool IsWritingIncrementally() const = 0;
  virtual std::uint32_t GetIncrementalMode() const = 0;
  virtual std::uint64_t GetFlushedPointCount() const = 0;
  /// Whether all series that hold data are of one length.
  virtual bool IsSymmetric() const = 0;

  // Its axes.
  virtual bool IsLabelledAxis(std::uint32_t position) const = 0;
  virtual std::size_t GetNumberOfAxes() const = 0;
  /// \throws CException 37 if there must be one
  virtual std::shared_ptr<CAxisBase> GetAxis(std::uint32_t position, bool mustExist) const = 0;
  /// \throws CException 37, 38
  virtual std::shared_ptr<CLabelledStringAxis> GetLabelledStringAxis(std::uint32_t position,
                                                                     bool mustExist) const = 0;
  virtual std::shared_ptr<CLabelledValueAxis> GetLabelledValueAxis(std::uint32_t position,
                                                                   bool mustExist) const = 0;
  virtual std::shared_ptr<CIntervalAxis> GetIntervalAxis(std::uint32_t position,
                                                         bool mustExist) const = 0;
  virtual void AddAxis(const std::shared_ptr<CAxisBase>& axis, std::uint32_t position) = 0;
  virtual std::uint64_t GetNumberOfPoints(std::uint32_t position) const = 0;
  virtual std::uint64_t GetNumberOfPrimaryPoints() const = 0;
  virtual std::uint64_t GetNumberOfLabels(std::uint32_t position) const = 0;
  virtual const std::vector<double>& GetNumericLabels(std::uint32_t position) const = 0;
  virtual const std::vector<std::string>& GetStringLabels(std::uint32_t position) const = 0;
  /// \throws CException 42, 44; std::invalid_argument, std::out_of_range for a text that is no
  /// number
  virtual std::uint64_t GetAxisIndexOfLabel(std::uint32_t position,
                                            const std::string& text) const = 0;
  virtual std::uint64_t GetAxisIndexOfValue(std::uint32_t position, double value) const = 0;
  /// Number of series, secondary count if there are two axes, primary count: DIMENS.
  virtual std::vector<std::uint64_t> GetDimensions() const = 0;
  /// Refuses a count of points that the data file cannot hold, before memory is taken for it.
  /// \throws CException 130
  virtual void CheckPointCount(std::uint64_t count) const = 0;

  // Its series.
  /// \throws CException 17, 52, 54, 2 if the name is taken and must not be changed
  virtual void AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) = 0;
  virtual std::size_t GetNumberOfSeries() const = 0;
  /// \throws CException 1
  virtual std::uint64_t GetSeriesIndex(const std::string& name, bool exact) const = 0;
  virtual std::string GetSeriesQuantity(const std::string& name) const = 0;
  /// \throws CException 53, 1
  virtual std::shared_ptr<ISeries> GetSeries(const std::string& name) const = 0;
  virtual std::vector<std::shared_ptr<ISeries>> GetSeries(
      const std::vector<std::string>& names) const = 0;
  virtual std::shared_ptr<ISeries> GetFirstSeries(bool withObjectOnly) const = 0;
  virtual std::vector<std::shared_ptr<ISeries>> GetAllSeries(bool withObjectOnly) const = 0;
  virtual bool IsFirstSeries(const ISeries& series) const = 0;
  virtual const std::vector<std::string>& GetSeriesNames() const = 0;
  /// The entries, in the order of the names.
  virtual const std::vector<SeriesEntry>& GetSeriesEntries() const = 0;
  virtual bool HasSeries(const std::string& name, bool exact) const = 0;
  /// The stored spelling of a name, whatever its case.
  virtual bool FindSeriesName(const std::string& name, std::string& out) const = 0;
  virtual void RemoveSeries(const std::vector<std::string>& names) = 0;
  virtual void RemoveSeries(const std::string& name) = 0;
  virtual void RemoveSeriesEntry(const std::string& name, bool renumber) = 0;
  virtual void RenumberSeries() = 0;
  virtual void SetSeriesNames(std::vector<std::string> names,
                              std::vector<std::string> quantities) = 0;
  virtual void UnloadSeries(const std::string& name) = 0;

  // Changes of state.
  virtual void SetTargetType(std::uint32_t type) = 0;
  virtual void AddOptionalVariables(const std::vector<std::string>& lines) = 0;
  virtual void AddOptionalVariable(const std::string& line) = 0;
  virtual void AddOptionalVariablesUnchecked(const std::vector<std::string>& lines) = 0;
  virtual void SetSerialisedType(std::uint32_t type) = 0;
  virtual void SetHeaderRecordCount(std::uint64_t count) = 0;
  virtual void SetGroupNumber(std::uint64_t number) = 0;
  virtual void SetDeserialised() = 0;
  virtual void SetPath(const std::string& path) = 0;
  virtual void SetRegistryPath(const std::string& path) = 0;
  virtual void SetPreviewMode(PreviewMode mode) = 0;
  virtual void SetIncrementalMode(std::uint32_t mode) = 0;
  virtual void SetFlushedPointCount(std::uint64_t count) = 0;
  virtual void EndIncrementalWriting() = 0;
  virtual void SnapshotExtremeIndices() = 0;
  virtual void ClearSeriesData(bool keepStatistics) = 0;
  virtual void IncrementLoadedCount() = 0;
  virtual void DecrementLoadedCount(std::uint64_t amount) = 0;

  // Its data file.
  /// Makes the reader of the data file. \throws CException 65, 82
  virtual void CreateReader(bool binary, bool skipOpen, const std::string& dataFilePath,
                            const std::vector<std::uint64_t>& dimensions,
                            std::uint32_t fileType) = 0;
  virtual void CloseReader() = 0;
  /// Has the reader close its file and give its buffer back; nothing happens without a reader.
  virtual void ResetReader() = 0;
  /// \throws CException 86
  virtual CIOBase& GetReader() const = 0;
  virtual std::uint64_t GetReaderPointCount() const = 0;
  virtual bool IsReaderOpen() const = 0;
  /// \throws CException 62 if the data file is there and empty, and the header tells of data.
  virtual void CheckDataFileHasData() const = 0;
  /// Reads the series of these indices, as far as they have no data yet, at these secondary
  /// indices. \param keepBuffer whether the raw data of the file stays for the next request.
  virtual void LoadSeries(const std::vector<std::size_t>& variables,
                          const std::vector<std::size_t>& secondary, bool keepBuffer) = 0;

  // Statistics.
  /// \throws CException 45, 51, 124, 46, 40
  virtual void CheckStatisticsAvailable(std::uint64_t secondary) const = 0;
  virtual void ComputeLiveUloads() = 0;
  /// Reads the statistics blocks at the reader's position.
  virtual void ReadStoredStatistics(CHeaderReader& header, std::uint64_t variableCount) = 0;
  virtual bool HasReadStoredStatistics() const = 0;
};

}  // namespace Sumara
