#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "core/exceptions.h"
#include "core/file_blocks.h"
#include "core/file_lease.h"
#include "core/paths.h"
#include "core/reader.h"
#include "tables/row_reader.h"
#include "tables/watched.h"

namespace Tabulon {

/// Rows of a binary file of T.
template <class T, class U>
class BinaryRows final : public RowReader<U> {
 public:
  explicit BinaryRows(const HeaderContents& contents)
      : m_contents(contents),
        m_file(contents.dataPath, static_cast<std::int32_t>(FileMode::kReadBinary)) {
    m_file.Open();
    m_places.stride = std::max<std::uint64_t>(contents.layout.Stride(), 1);
  }

  std::uint64_t Size() const override { return m_file.GetLength(); }

  void Take(const ReadPlan& plan) override {
    if (plan.columns.empty()) return;
    SortColumns(plan);
    m_firstBase = m_places.bases.front();
    m_lastBase = m_places.bases.back();
    m_use = UseOf(plan);
  }

  SteadyStart Restart() override {
    m_lease.reset();
    m_blocks.emplace(m_file.OpenFile(), m_file.OpenFile().Size(), m_use);
    if (!m_blocks->IsMapped()) m_lease = Sumara::FileLease::Of(m_file.OpenFile());
    return {State(), m_blocks->IsMapped() || m_lease};
  }
  Sumara::FileState State() const override { return m_file.State(); }

  void Read(const Sumara::RowRange& rows, std::span<U* const> columns,
            const StopQuestion& stop) override {
    std::vector<U*> sorted;
    sorted.reserve(m_order.size());
    for (const std::size_t column : m_order) sorted.push_back(columns[column]);
    std::uint64_t next = FirstWord(rows, 0);
    std::uint64_t done = 0;  // rows whose last value lies before `next`
    while (done < rows.count) {
      const std::span<const T> words = Words(next);
      const std::uint64_t end = next + words.size();
      if (words.empty()) throw MissingRow(m_contents, rows.first + done * rows.step);
      Sumara::GatherColumns<T, U>({words, next}, m_places, rows, sorted);
      done = Sumara::RowsBefore(end, m_lastBase, m_places.stride, rows);
      next = done < rows.count ? std::max(end, FirstWord(rows, done)) : end;
      Ask(stop);
    }
  }

  std::span<const U> WordsAt(std::uint64_t first) override {
    if constexpr (std::is_same_v<T, U>) {
      return Words(first);
    } else {
      return {};
    }
  }

 private:
  /// Columns that stand beside each other in the file are taken together.
  void SortColumns(const ReadPlan& plan) {
    const auto baseOf = [&](std::size_t column) {
      const WantedColumn& wanted = plan.columns[column];
      return m_contents.layout.Base(wanted.variable, wanted.secondary);
    };
    m_order.resize(plan.columns.size());
    std::iota(m_order.begin(), m_order.end(), std::size_t{0});
    std::stable_sort(m_order.begin(), m_order.end(),
                     [&](std::size_t a, std::size_t b) { return baseOf(a) < baseOf(b); });
    m_places.bases.reserve(m_order.size());
    for (const std::size_t column : m_order) m_places.bases.push_back(baseOf(column));
  }

  /// Where rows lie far apart, no more is read of each than its columns; where most of a row is
  /// wanted, a block has rows enough for the tiles in which they are turned.
  Sumara::FileBlocks::Use UseOf(const ReadPlan& plan) const {
    constexpr std::uint64_t kFar = std::uint64_t{128} * 1024;
    constexpr std::uint64_t kSmall = std::uint64_t{1} << 20;
    constexpr std::uint64_t kLarge = std::uint64_t{2} << 20;
    constexpr std::uint64_t kTileRows = 256;
    const std::uint64_t row = std::min(m_places.stride, kLarge) * sizeof(T);
    const std::uint64_t span = (m_lastBase - m_firstBase + 1) * sizeof(T);
    const bool far = row > kFar || plan.rows.step > kFar / m_places.stride;
    if (far && span <= kSmall) return {static_cast<std::size_t>(span), false};
    if (plan.rows.step > 1 || plan.columns.size() < m_places.stride / 4) return {};
    const std::uint64_t rows = std::clamp(kTileRows * row, kSmall, kLarge);
    return {static_cast<std::size_t>(rows), true};
  }

  std::uint64_t FirstWord(const Sumara::RowRange& rows, std::uint64_t i) const {
    return (rows.first + i * rows.step) * m_places.stride + m_firstBase;
  }

  std::span<const T> Words(std::uint64_t first) {
    const std::span<const char> bytes = m_blocks->At(first * sizeof(T));
    if (m_blocks->Error() != 0) {
      throw CIOException(5009, m_contents.dataPath, Sumara::SystemErrorText(m_blocks->Error()));
    }
    return {reinterpret_cast<const T*>(bytes.data()), bytes.size() / sizeof(T)};
  }

  const HeaderContents& m_contents;
  Watched<CReader<float, float>> m_file;
  std::vector<std::size_t> m_order;  ///< columns of the plan as they stand in the file
  Sumara::ColumnPlan m_places;       ///< in that order
  std::uint64_t m_firstBase = 0;
  std::uint64_t m_lastBase = 0;
  Sumara::FileBlocks::Use m_use;
  std::optional<Sumara::FileBlocks> m_blocks;
  std::optional<Sumara::FileLease> m_lease;  ///< where the blocks have none
};

}  // namespace Tabulon
