#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/reader.h"
#include "groupfiles/columns_ahead.h"
#include "groupfiles/group_data_reader.h"
#include "groupfiles/kept_data.h"

namespace Sumara {

/// The reader of a text data file, whose values never exist in any type but the target's.
///
/// The first request converts what it wants; the second converts all else along, and further ones
/// are answered from that while the file stands as it was.
template <class U>
class CTextDataReader final : public CReader<U, U>, public IGroupDataReader<U>, private KeptData {
 public:
  using CReader<U, U>::CReader;

  void Close() override;
  std::uint64_t Read(const DataLayout& layout, const DataRequest& request,
                     IDataTarget<U>& target) override;

 private:
  struct Column;
  struct Closer;
  class Rows;

  std::vector<Column> ChooseColumns(const DataLayout& layout, const DataRequest& request,
                                    IDataTarget<U>& target) const;
  std::vector<Column> ChooseAhead(const DataLayout& layout, const DataRequest& request);
  std::uint64_t ParsePoints(const DataLayout& layout, std::uint64_t points,
                            const std::vector<Column>& columns, std::string& failure);
  void ParsePoint(const DataLayout& layout, std::uint64_t point, Rows& rows);
  bool StandsAsItWas() const;
  void DropAhead();
  void DropKept() noexcept override { Close(); }

  FileState m_fileState;  ///< when the file was opened last
  ColumnsAhead<U> m_ahead;
};

}  // namespace Sumara
