#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <string>

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
  BinaryRows(const HeaderContents& contents, const ReadPlan& plan)
      : m_contents(contents),
        m_file(contents.dataPath, static_cast<std::int32_t>(FileMode::kReadBinary)) {
    m_file.Open();
    m_places.stride = std::max<std::uint64_t>(contents.layout.Stride(), 1);
    for (const WantedColumn& column : plan.columns)
      m_places.bases.push_back(contents.layout.Base(column.variable, column.secondary));
    if (plan.columns.empty()) return;
    const auto [least, most] = std::minmax_element(m_places.bases.begin(), m_places.bases.end());
    m_firstBase = *least;
    m_lastBase = *most;
    SetBlockSize(plan.rows.step);
  }

  bool Restart() override {
    m_lease.reset();
    m_blocks.emplace(m_file.OpenFile(), m_file.OpenFile().Size(), m_most);
    if (!m_blocks->IsMapped()) m_lease = Sumara::FileLease::Of(m_file.OpenFile());
    return m_blocks->IsMapped() || m_lease;
  }
  Sumara::FileState State() const override { return m_file.State(); }

  void Read(const Sumara::RowRange& rows, std::span<U* const> columns,
            const StopQuestion& stop) override {
    std::uint64_t next = FirstWord(rows, 0);
    std::uint64_t done = 0;  // rows whose last value lies before `next`
    while (done < rows.count) {
      const std::span<const T> words = Words(next);
      const std::uint64_t end = next + words.size();
      if (words.empty()) throw MissingRow(m_contents, rows.first + done * rows.step);
      Sumara::GatherColumns<T, U>({words, next}, m_places, rows, columns);
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
  /// Where rows lie far apart, no more is read of each than its columns.
  void SetBlockSize(std::uint64_t step) {
    constexpr std::uint64_t kFar = std::uint64_t{128} * 1024;
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 20;
    const std::uint64_t span = (m_lastBase - m_firstBase + 1) * sizeof(T);
    const bool far = m_places.stride > kFar / sizeof(T) || step > kFar / m_places.stride;
    if (far && span <= kLargest) m_most = static_cast<std::size_t>(span);
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
  Sumara::ColumnPlan m_places;
  std::uint64_t m_firstBase = 0;
  std::uint64_t m_lastBase = 0;
  std::size_t m_most = 0;
  std::optional<Sumara::FileBlocks> m_blocks;
  std::optional<Sumara::FileLease> m_lease;  ///< where the blocks have none
};

}  // namespace Tabulon
