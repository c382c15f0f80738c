#include "tables/read_rows.h"

#include <vector>

#include "tables/file_plan.h"
#include "tables/row_reader.h"
#include "tables/steady_read.h"

namespace Tabulon {

template <class T>
void ReadRows(const HeaderContents& contents, const Selection& selection,
              std::optional<std::uint64_t> roomFor, const Room<T>& room, const StopQuestion& stop) {
  const auto reader = OpenRows<T>(contents);
  const ReadPlan plan = PlanFor(contents, selection, roomFor, reader->Size(), stop);
  const std::vector<T*> columns = room(plan.GetShape());
  reader->Take(plan);
  const auto fingerprint = [&] {
    std::uint64_t sum = 0;
    for (const T* column : columns)
      sum = FingerprintOf(column, static_cast<std::size_t>(plan.rows.count) * sizeof(T), sum);
    return sum;
  };
  ReadSteadily(contents.dataPath,
               {[&] { return reader->Restart(); }, [&] { return reader->State(); },
                [&] { reader->Read(plan.rows, columns, stop); }, fingerprint});
}

#define TABULON_INSTANTIATE(T)                                                                  \
  template void ReadRows(const HeaderContents&, const Selection&, std::optional<std::uint64_t>, \
                         const Room<T>&, const StopQuestion&);
TABULON_INSTANTIATE(float)
TABULON_INSTANTIATE(double)
TABULON_INSTANTIATE(int)
#undef TABULON_INSTANTIATE

}  // namespace Tabulon
