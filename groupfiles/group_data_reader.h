#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/exceptions.h"
#include "core/file.h"
#include "core/reader.h"
#include "groupfiles/data_layout.h"

namespace Sumara {

/// Fills series with the values of a data file, delivered as U whatever the type in the file.
template <class U>
class IGroupDataReader {
 public:
  virtual ~IGroupDataReader() = default;

  /// Reads the requested values into `target`.
  ///
  /// A request for a definite number of points fails if the file holds fewer; one for all points
  /// takes what there is. \return the number of points delivered. \throws Sumara::CException 25,
  /// with the cause as inner exception.
  virtual std::uint64_t Read(const DataLayout& layout, const DataRequest& request,
                             IDataTarget<U>& target) = 0;
};

/// A value that is wanted of a line of text, by its place in the line.
template <class U>
struct WantedValue {
  std::size_t place;
  std::vector<U>* values;
};

/// The wanted values of each line of a point, in the order of their places.
template <class U>
using WantedLines = std::vector<std::vector<WantedValue<U>>>;

/// All values of a text file, column by column, in the order of a point's values.
template <class U>
struct TextTable {
  std::vector<std::vector<U>> columns;
  std::uint64_t points = 0;
  FileState file;  ///< before it was read
};

/// The reader of a group's data file.
///
/// Binary values are taken from the buffer that holds the file, or from blocks of it if nothing is
/// to be kept. Of a text file the first request converts what it wants; the second converts the
/// whole, and further ones are answered from that table while the file stands as it was.
template <class T, class U>
class CGroupDataReader final : public CReader<T, U>, public IGroupDataReader<U> {
 public:
  using CReader<T, U>::CReader;

  void Close() override;
  std::uint64_t Read(const DataLayout& layout, const DataRequest& request,
                     IDataTarget<U>& target) override;

 private:
  struct Column;
  struct Closer;

  std::uint64_t ReadBinary(const DataLayout& layout, const DataRequest& request,
                           IDataTarget<U>& target);
  void PrepareBinary(const DataRequest& request);
  std::optional<CException> ChooseColumns(const DataLayout& layout, const DataRequest& request,
                                          std::uint64_t points, IDataTarget<U>& target,
                                          std::vector<Column>& columns) const;
  CIOException BeyondEnd(std::uint64_t offset) const;
  CException Failure(const IDataTarget<U>& target, const Column& column, std::uint64_t point,
                     const CIOException& cause) const;
  void Gather(const DataLayout& layout, const std::vector<Column>& columns);
  void GatherFromBlocks(const DataLayout& layout, const std::vector<Column>& columns,
                        const IDataTarget<U>& target);

  std::uint64_t ReadText(const DataLayout& layout, const DataRequest& request,
                         IDataTarget<U>& target);
  std::uint64_t ParsePoints(const DataLayout& layout, std::uint64_t points, WantedLines<U>& lines,
                            std::string& failure);
  void ParsePoint(const DataLayout& layout, std::uint64_t point, const WantedLines<U>& lines);
  bool ReadTable(const DataLayout& layout, std::uint64_t points);
  bool AnswerFromTable(const DataLayout& layout, const DataRequest& request,
                       IDataTarget<U>& target);
  bool TableStands() const;

  TextTable<U> m_table;
  FileState m_fileState;  ///< of the text file, when it was opened last
  bool m_readBefore = false;
};

/// Makes the reader of a data file that stores the type of code `storedType`.
/// \throws Sumara::CException 65 for a code outside 1 to 5.
template <class U>
std::unique_ptr<CIOBase> MakeGroupDataReader(std::uint32_t storedType, std::string path,
                                             bool binary, std::vector<std::uint64_t> dimensions);

}  // namespace Sumara
