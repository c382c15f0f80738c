#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "core/file_lease.h"
#include "core/reader.h"
#include "tables/row_reader.h"
#include "tables/watched.h"

namespace Tabulon {

/// Rows of a text file, parsed as U.
template <class U>
class TextRows final : public RowReader<U> {
 public:
  explicit TextRows(const HeaderContents& contents);

  std::uint64_t Size() const override { return m_file.GetLength(); }
  void Take(const ReadPlan& plan) override;
  SteadyStart Restart() override;
  Sumara::FileState State() const override { return m_file.State(); }
  void Read(const Sumara::RowRange& rows, std::span<U* const> columns,
            const StopQuestion& stop) override;
  std::span<const U> WordsAt(std::uint64_t) override { return {}; }

  /// Whole rows of the file, and whether something stands behind them.
  Rows Count(const StopQuestion& stop);

 private:
  /// The wanted values of one line of a row: their places, and the columns to which they go.
  struct WantedLine {
    std::vector<std::uint64_t> places;
    std::vector<std::size_t> columns;
    std::vector<U> values;
  };

  void Want(std::size_t column, const WantedColumn& wanted);
  std::string_view LineAt(std::uint64_t line, const StopQuestion& stop);
  void ReadRow(std::uint64_t row, std::uint64_t at, std::span<U* const> columns,
               const StopQuestion& stop);
  std::uint64_t TakeLine(std::string_view text, std::uint64_t line);
  bool IsTorn(std::uint64_t row) const;

  const HeaderContents& m_contents;
  Watched<CReader<U, U>> m_file;
  std::vector<WantedLine> m_lines;
  bool m_isFresh = true;        ///< opened, and not read yet
  std::uint64_t m_unasked = 0;  ///< bytes since the last question
  std::optional<Sumara::FileLease> m_lease;
};

}  // namespace Tabulon
