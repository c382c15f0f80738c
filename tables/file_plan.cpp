#include "tables/file_plan.h"

#include "core/reader.h"
#include "tables/steady_read.h"
#include "tables/text_rows.h"

namespace Tabulon {
namespace {

Rows CountTextRows(const HeaderContents& contents, const StopQuestion& stop) {
  TextRows<double> lines(contents);  // the type that takes most numbers
  Rows rows;
  ReadSteadily(contents.dataPath, {[&] { return lines.Restart(); }, [&] { return lines.State(); },
                                   [&] { rows = lines.Count(stop); },
                                   [&] { return 2 * rows.found + (rows.torn ? 1 : 0); }});
  return rows;
}

}  // namespace

std::uint64_t DataSizeOf(const HeaderContents& contents) {
  CReader<float, float> file(contents.dataPath, static_cast<std::int32_t>(FileMode::kReadBinary));
  file.Open();
  return file.GetLength();
}

Rows CountRowsOf(const HeaderContents& contents, std::uint64_t size, const StopQuestion& stop) {
  if (!contents.top.binary) return CountTextRows(contents, stop);
  const std::uint64_t found = RowsWithin(contents, size);
  return {contents.RowsExpected(), found, BytesOfRows(contents, found) != size};
}

ReadPlan PlanFor(const HeaderContents& contents, const Selection& selection,
                 std::optional<std::uint64_t> room, std::uint64_t size, const StopQuestion& stop) {
  Selection asked = selection;
  std::uint64_t limit = contents.RowsExpected();
  if (!asked.count && limit == 0) {
    if (room) {
      asked.count = room;
    } else {
      limit = CountRowsOf(contents, size, stop).found;
    }
  }
  try {
    return PlanOf(contents, asked, limit, RowsWithin(contents, size));
  } catch (const TableError&) {
    if (contents.top.binary) throw;
    // What the size alone refuses is told by the lines that are there.
    PlanOf(contents, asked, limit, CountRowsOf(contents, size, stop).found);
    throw;
  }
}

}  // namespace Tabulon
