#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "core/file.h"
#include "groupfiles/column_gather.h"
#include "tables/read_plan.h"
#include "tables/steady_read.h"
#include "tables/table_error.h"

namespace Tabulon {

/// A data file that is open for one call: its wanted columns, delivered as U.
template <class U>
class RowReader {
 public:
  virtual ~RowReader() = default;

  /// Bytes of the file when it was opened.
  virtual std::uint64_t Size() const = 0;

  /// Tells which columns are wanted, before anything is read.
  virtual void Take(const ReadPlan& plan) = 0;

  /// Goes to the file as it is now.
  virtual SteadyStart Restart() = 0;
  virtual Sumara::FileState State() const = 0;

  /// Fills `columns[c][i]` with the value of column c in the i-th of `rows`. Rows are asked for in
  /// rising order.
  /// \throws TableError 25 for a row that is not there, CIOException 5009, Stopped
  virtual void Read(const Sumara::RowRange& rows, std::span<U* const> columns,
                    const StopQuestion& stop) = 0;

  /// The words of the file from `first` on as far as they lie in memory; none if the file does not
  /// hold words of U. Good until the next call.
  virtual std::span<const U> WordsAt(std::uint64_t first) = 0;
};

/// Opens the data file. \throws CIOException 5000, 5007
template <class U>
std::unique_ptr<RowReader<U>> OpenRows(const HeaderContents& contents);

}  // namespace Tabulon
