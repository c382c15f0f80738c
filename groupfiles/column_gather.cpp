#include "groupfiles/column_gather.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "core/prefetch.h"
#include "core/streaming.h"

namespace Sumara {
namespace {

constexpr std::size_t kCacheLine = 64;
constexpr std::size_t kPrefetchRows = 16;
constexpr std::size_t kStreamed = std::size_t{16} << 20;  // more does not stay in a cache

/// The i-th to the last of the wanted rows whose value of a column stands in a block.
struct Stretch {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

template <class T>
Stretch StretchOf(const WordBlock<T>& block, const ColumnPlan& plan, std::size_t column,
                  const RowRange& rows) {
  const std::uint64_t base = plan.bases[column];
  return {RowsBefore(block.first, base, plan.stride, rows),
          RowsBefore(block.first + block.words.size(), base, plan.stride, rows)};
}

/// Where the value of a column in the i-th wanted row stands in a block that holds it.
template <class T>
const T* PlaceOf(const WordBlock<T>& block, const ColumnPlan& plan, std::size_t column,
                 const RowRange& rows, std::uint64_t i) {
  const std::uint64_t row = rows.first + i * rows.step;
  return block.words.data() + (plan.bases[column] + row * plan.stride - block.first);
}

/// Columns that have room for their values.
template <class U>
struct Placed {
  std::span<U* const> columns;
  bool streams = false;  ///< whether runs leave past the caches

  /// Where values may be written one by one, if they may.
  U* Place(std::size_t column, std::uint64_t i) const {
    return streams ? nullptr : columns[column] + i;
  }
  void Put(std::size_t column, std::uint64_t i, const U* values, std::size_t count) const {
    if (streams) {
      StreamCopy(columns[column] + i, values, count * sizeof(U));
    } else {
      std::memcpy(columns[column] + i, values, count * sizeof(U));
    }
  }
};

/// Columns that values are appended to, in the order of their rows.
template <class U>
struct Appended {
  std::span<std::vector<U>* const> columns;

  U* Place(std::size_t, std::uint64_t) const { return nullptr; }
  void Put(std::size_t column, std::uint64_t, const U* values, std::size_t count) const {
    columns[column]->insert(columns[column]->end(), values, values + count);
  }
};

template <class T, class U, class Columns>
void CopyColumn(const WordBlock<T>& block, const ColumnPlan& plan, std::size_t column,
                const RowRange& rows, Stretch stretch, const Columns& columns) {
  if (stretch.begin >= stretch.end) return;
  const T* const words = PlaceOf(block, plan, column, rows, stretch.begin);
  const auto step = static_cast<std::size_t>(rows.step * plan.stride);
  const auto count = static_cast<std::size_t>(stretch.end - stretch.begin);
  // Values of one variable lie far apart: the processor does not foresee the next page.
  const std::size_t ahead = count - std::min(count, kPrefetchRows);
  std::array<U, 512> values;
  std::size_t at = 0;
  for (std::size_t i = 0; i < count;) {
    const std::size_t size = std::min(values.size(), count - i);
    for (std::size_t k = 0; k < size; ++k, ++i, at += step) {
      if (i < ahead) Prefetch(words + at + step * kPrefetchRows);
      values[k] = ConvertElement<U>(words[at]);
    }
    columns.Put(column, stretch.begin + i - size, values.data(), size);
  }
}

/// As many columns as a cache line of the file has words. Their values are turned in a scratch that
/// stays in the processor's nearest cache, and leave it as runs of each column: columns often begin
/// a whole number of pages apart, and values written to all of them by turns would push each other
/// out of that cache.
template <class T, class U>
class Tile {
 public:
  static constexpr std::size_t kWidth = kCacheLine / sizeof(T);

  template <class Columns>
  void Copy(const WordBlock<T>& block, const ColumnPlan& plan, std::size_t first, std::size_t width,
            const RowRange& rows, const Columns& columns) {
    Stretch common = StretchOf(block, plan, first, rows);
    m_adjacent = width == kWidth;
    for (std::size_t c = 0; c < width; ++c) {
      const Stretch own = StretchOf(block, plan, first + c, rows);
      common = {std::max(common.begin, own.begin), std::min(common.end, own.end)};
      m_offsets[c] = static_cast<std::ptrdiff_t>(plan.bases[first + c] - plan.bases[first]);
      m_adjacent = m_adjacent && m_offsets[c] == static_cast<std::ptrdiff_t>(c);
    }
    common.end = std::max(common.begin, common.end);
    // At the ends of a block some columns have a row more than others.
    for (std::size_t c = first; c < first + width; ++c) {
      const Stretch own = StretchOf(block, plan, c, rows);
      CopyColumn<T, U>(block, plan, c, rows, {own.begin, std::min(own.end, common.begin)}, columns);
    }
    const auto step = static_cast<std::size_t>(rows.step * plan.stride);
    for (std::uint64_t i = common.begin; i < common.end; i += kRows) {
      const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(kRows, common.end - i));
      Turn(PlaceOf(block, plan, first, rows, i), step, width, count);
      for (std::size_t c = 0; c < width; ++c) Deliver(c, count, columns, first + c, i);
    }
    for (std::size_t c = first; c < first + width; ++c) {
      const Stretch own = StretchOf(block, plan, c, rows);
      CopyColumn<T, U>(block, plan, c, rows, {std::max(own.begin, common.end), own.end}, columns);
    }
  }

 private:
  static constexpr std::size_t kRows = 256;
  static constexpr std::size_t kPadding = kCacheLine / sizeof(T);  // the rows apart in the cache

  void Turn(const T* words, std::size_t step, std::size_t width, std::size_t count) {
    if (m_adjacent) {
      TurnRows(words, step, count, kWidth, [](std::size_t c) { return c; });
    } else {
      TurnRows(words, step, count, width, [this](std::size_t c) { return m_offsets[c]; });
    }
  }

  /// Four rows at a time, whose values of a column are stored at once.
  template <class Offset>
  void TurnRows(const T* words, std::size_t step, std::size_t count, std::size_t width,
                const Offset& offset) {
    constexpr std::size_t kTogether = 4;
    std::size_t i = 0;
    for (; i + kTogether <= count; i += kTogether) {
      const T* const rows = words + i * step;
      for (std::size_t c = 0; c < width; ++c) {
        const T* const values = rows + offset(c);
        const T four[kTogether] = {values[0], values[step], values[2 * step], values[3 * step]};
        std::memcpy(m_values[c].data() + i, four, sizeof(four));
      }
    }
    for (; i < count; ++i) {
      const T* const row = words + i * step;
      for (std::size_t c = 0; c < width; ++c) m_values[c][i] = row[offset(c)];
    }
  }

  template <class Columns>
  void Deliver(std::size_t from, std::size_t count, const Columns& columns, std::size_t column,
               std::uint64_t i) {
    const T* const values = m_values[from].data();
    if constexpr (std::is_same_v<T, U>) {
      columns.Put(column, i, values, count);
    } else if (U* const place = columns.Place(column, i)) {
      Convert(values, count, place);
    } else {
      std::array<U, kRows> converted;
      Convert(values, count, converted.data());
      columns.Put(column, i, converted.data(), count);
    }
  }

  static void Convert(const T* values, std::size_t count, U* target) {
    for (std::size_t i = 0; i < count; ++i) target[i] = ConvertElement<U>(values[i]);
  }

  std::array<std::array<T, kRows + kPadding>, kWidth> m_values;
  std::array<std::ptrdiff_t, kWidth> m_offsets{};  // below 0 for columns in falling order
  bool m_adjacent = true;                          ///< of a whole cache line
};

template <class T, class U, class Columns>
void Gather(const WordBlock<T>& block, const ColumnPlan& plan, const RowRange& rows,
            const Columns& places) {
  const std::size_t count = places.columns.size();
  if (count == 1) {
    CopyColumn<T, U>(block, plan, 0, rows, StretchOf(block, plan, 0, rows), places);
    return;
  }
  Tile<T, U> tile;
  for (std::size_t c = 0; c < count; c += Tile<T, U>::kWidth) {
    tile.Copy(block, plan, c, std::min(Tile<T, U>::kWidth, count - c), rows, places);
  }
}

}  // namespace

std::uint64_t RowsBefore(std::uint64_t end, std::uint64_t base, std::uint64_t stride,
                         const RowRange& rows) {
  if (end <= base) return 0;
  const std::uint64_t before = (end - base - 1) / stride + 1;  // of all rows of the file
  if (before <= rows.first) return 0;
  return std::min(rows.count, (before - rows.first - 1) / rows.step + 1);
}

template <class T, class U>
void GatherColumns(const WordBlock<T>& block, const ColumnPlan& plan, const RowRange& rows,
                   std::span<U* const> columns) {
  const bool streams = columns.size() > 1 && rows.count > kStreamed / sizeof(U) / columns.size();
  Gather<T, U>(block, plan, rows, Placed<U>{columns, streams});
  if (streams) FinishStreaming();
}

template <class T, class U>
void AppendColumns(const WordBlock<T>& block, const ColumnPlan& plan, const RowRange& rows,
                   std::span<std::vector<U>* const> columns) {
  Gather<T, U>(block, plan, rows, Appended<U>{columns});
}

#define TABULON_INSTANTIATE_PAIR(T, U)                                                 \
  template void GatherColumns(const WordBlock<T>&, const ColumnPlan&, const RowRange&, \
                              std::span<U* const>);                                    \
  template void AppendColumns(const WordBlock<T>&, const ColumnPlan&, const RowRange&, \
                              std::span<std::vector<U>* const>);
#define TABULON_INSTANTIATE(T)        \
  TABULON_INSTANTIATE_PAIR(T, float)  \
  TABULON_INSTANTIATE_PAIR(T, double) \
  TABULON_INSTANTIATE_PAIR(T, short)  \
  TABULON_INSTANTIATE_PAIR(T, int)    \
  TABULON_INSTANTIATE_PAIR(T, Long)
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE
#undef TABULON_INSTANTIATE_PAIR

}  // namespace Sumara
