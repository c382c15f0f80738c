#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/exceptions.h"
#include "core/file.h"
#include "core/reader.h"
#include "groupfiles/column_gather.h"
#include "groupfiles/columns_ahead.h"
#include "groupfiles/group_data_reader.h"
#include "groupfiles/kept_data.h"

namespace Sumara {

/// The reader of a binary data file.
///
/// A file that lies in the system's memory is looked at where it lies, and the wanted columns alone
/// are copied. For the next request stays the open file, so that its removal or replacement makes
/// no difference, and what was gathered along with a second request. A file that is small, or that
/// cannot be looked at safely, is read whole into the buffer, which stays.
template <class T, class U>
class CBinaryDataReader final : public CReader<T, U>, public IGroupDataReader<U>, private KeptData {
 public:
  using CReader<T, U>::CReader;

  void Close() override;
  std::uint64_t Read(const DataLayout& layout, const DataRequest& request,
                     IDataTarget<U>& target) override;

 private:
  struct Column;
  struct Closer;
  struct Missing;

  void Prepare(const DataRequest& request);
  bool IsToBeBuffered() const;
  std::optional<CException> ChooseColumns(const DataLayout& layout, const DataRequest& request,
                                          std::uint64_t points, IDataTarget<U>& target,
                                          std::vector<Column>& columns) const;
  std::vector<Column> ChooseAhead(const DataLayout& layout, const DataRequest& request);
  void Gather(const DataLayout& layout, std::vector<Column>& columns, std::size_t requested,
              std::uint64_t points, const IDataTarget<U>& target);
  std::optional<Missing> GatherAll(const std::vector<Column>& columns, std::uint64_t stride,
                                   const RowRange& rows);
  CIOException BeyondEnd(std::uint64_t offset) const;
  CException Failure(const IDataTarget<U>& target, const Column& column, std::uint64_t point,
                     const CIOException& cause) const;
  void DropKept() noexcept override { Close(); }

  File m_kept;  ///< open from one request to the next, instead of a buffer
  ColumnsAhead<U> m_ahead;
};

}  // namespace Sumara
