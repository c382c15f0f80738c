#include "tables/reduce_rows.h"

#include <algorithm>
#include <memory>

#include "core/element_types.h"
#include "tables/column_figures.h"
#include "tables/file_plan.h"
#include "tables/row_reader.h"
#include "tables/steady_read.h"

namespace Tabulon {
namespace {

constexpr std::uint64_t kScratchValues = std::uint64_t{64} * 1024;

/// One pass over the rows of a plan.
template <class U>
class RowReduction {
 public:
  RowReduction(const HeaderContents& contents, const ReadPlan& plan, RowReader<U>& reader,
               const StopQuestion& stop)
      : m_contents(contents),
        m_plan(plan),
        m_reader(reader),
        m_stop(stop),
        m_figures(plan.columns.size()) {}

  Reduction Run() {
    std::uint64_t done = 0;
    while (done < m_plan.rows.count && !m_plan.columns.empty()) {
      const std::uint64_t first = m_plan.rows.first + done * m_plan.rows.step;
      const std::uint64_t taken = AreSideBySide() ? AddInPlace(first, done) : 0;
      done += taken != 0 ? taken : AddCopy(first, done);
      Ask(m_stop);
    }
    return m_figures.Result();
  }

 private:
  std::uint64_t BaseOf(const WantedColumn& column) const {
    return m_contents.layout.Base(column.variable, column.secondary);
  }

  /// Whether the columns stand in the file as in the plan, without a gap.
  bool AreSideBySide() const {
    const std::uint64_t base = BaseOf(m_plan.columns.front());
    for (std::size_t c = 1; c < m_plan.columns.size(); ++c) {
      if (BaseOf(m_plan.columns[c]) != base + c) return false;
    }
    return true;
  }

  /// Adds the rows from `first` on that lie in memory whole. \return how many; 0 if none do.
  std::uint64_t AddInPlace(std::uint64_t first, std::uint64_t done) {
    const std::uint64_t stride = m_contents.layout.Stride();
    const std::span<const U> words =
        m_reader.WordsAt(first * stride + BaseOf(m_plan.columns.front()));
    if (words.size() < m_plan.columns.size()) return 0;
    const std::uint64_t pitch = stride * m_plan.rows.step;
    const std::uint64_t rows = std::min<std::uint64_t>(
        (words.size() - m_plan.columns.size()) / pitch + 1, m_plan.rows.count - done);
    m_figures.Add({words.data(), static_cast<std::size_t>(rows), m_plan.columns.size(),
                   static_cast<std::size_t>(pitch), 1},
                  first, m_plan.rows.step);
    return rows;
  }

  /// Adds rows that are copied out of the file. \return how many.
  std::uint64_t AddCopy(std::uint64_t first, std::uint64_t done) {
    const std::uint64_t rows = std::clamp<std::uint64_t>(kScratchValues / m_plan.columns.size(), 1,
                                                         m_plan.rows.count - done);
    const auto count = static_cast<std::size_t>(rows);
    m_scratch.resize(m_plan.columns.size() * count);
    m_targets.resize(m_plan.columns.size());
    for (std::size_t c = 0; c < m_targets.size(); ++c) m_targets[c] = m_scratch.data() + c * count;
    m_reader.Read({first, rows, m_plan.rows.step}, m_targets, m_stop);
    m_figures.Add({m_scratch.data(), count, m_targets.size(), 1, count}, first, m_plan.rows.step);
    return rows;
  }

  const HeaderContents& m_contents;
  const ReadPlan& m_plan;
  RowReader<U>& m_reader;
  const StopQuestion& m_stop;
  ColumnFigures<U> m_figures;
  std::vector<U> m_scratch;
  std::vector<U*> m_targets;
};

std::uint64_t FingerprintOfFigures(const Reduction& figures) {
  std::uint64_t sum = 0;
  const auto add = [&](const auto& values) {
    sum = FingerprintOf(values.data(), values.size() * sizeof(values.front()), sum);
  };
  add(figures.minimum);
  add(figures.maximum);
  add(figures.minimumRow);
  add(figures.maximumRow);
  add(figures.mean);
  add(figures.deviation);
  add(figures.count);
  return sum;
}

template <class U>
Reduction Reduced(const HeaderContents& contents, const Selection& selection,
                  const StopQuestion& stop) {
  const auto reader = OpenRows<U>(contents);
  const ReadPlan plan = PlanFor(contents, selection, {}, reader->Size(), stop);
  reader->Take(plan);
  Reduction figures;
  ReadSteadily(contents.dataPath,
               {[&] { return reader->Restart(); }, [&] { return reader->State(); },
                [&] { figures = RowReduction<U>(contents, plan, *reader, stop).Run(); },
                [&] { return FingerprintOfFigures(figures); }});
  return figures;
}

}  // namespace

Reduction ReduceRows(const HeaderContents& contents, const Selection& selection,
                     const StopQuestion& stop) {
  switch (contents.top.dataType) {
    case Sumara::kFloatCode:
      return Reduced<float>(contents, selection, stop);
    case Sumara::kDoubleCode:
      return Reduced<double>(contents, selection, stop);
    default:
      return Reduced<int>(contents, selection, stop);
  }
}

}  // namespace Tabulon
