#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/io_base.h"
#include "groupfiles/group_data_reader.h"
#include "model/series_table.h"

namespace Sumara {

/// What of a group's data is to be in memory.
struct SeriesRequest {
  const std::vector<std::size_t>& variables;  ///< places in the table
  const std::vector<std::size_t>& secondary;  ///< secondary indices; {0} if there is one axis
  bool keepBuffer;  ///< whether the raw data of the file stays for the next request
};

/// The data file of a group: its reader, what DIMENS said of it, and its way into series of T.
template <class T>
class GroupData {
 public:
  /// Makes a series that waits for its data.
  using MakeSeries =
      std::function<std::shared_ptr<ISeries>(const std::string& name, const std::string& quantity)>;

  /// \param context tells of the group in failures.
  explicit GroupData(std::function<std::string()> context) : m_context(std::move(context)) {}

  /// Makes the reader; unless `skipOpen`, it takes the length of the file.
  /// \throws CException 65 for a type that no file has, 82 for an empty path
  void Create(bool binary, bool skipOpen, const std::string& path,
              const std::vector<std::uint64_t>& dimensions, std::uint32_t fileType);
  void Close() { m_reader.reset(); }
  /// Has the reader close its file and give its buffer back; nothing happens without a reader.
  void Reset();
  /// \throws CException 86 without a reader
  CIOBase& Reader() const;
  /// The points of the header. \throws CException 86
  std::uint64_t PointCount() const;

  /// \throws CException 62 if the file is there and empty, and the header tells of data.
  void CheckNotEmpty() const;
  /// Refuses a count of points that the file cannot hold. \throws CException 130
  void CheckPointCount(std::uint64_t count) const;

  /// Reads what is asked for and not there yet. Series are made as they are needed; what a failure
  /// leaves half filled is emptied again.
  /// \param reader that of the group. \throws CException 87 if it does not deliver T, 25
  void Load(CIOBase& reader, std::uint64_t headerRecords, const SeriesRequest& request,
            SeriesTable& series, const MakeSeries& make) const;

 private:
  class Target;

  void Read(IGroupDataReader<T>& reader, const DataLayout& layout, const SeriesRequest& request,
            Target& target, const MakeSeries& make) const;

  std::function<std::string()> m_context;
  std::unique_ptr<CIOBase> m_reader;
  std::vector<std::uint64_t> m_dimensions;  ///< DIMENS of the header that was read
};

}  // namespace Sumara
