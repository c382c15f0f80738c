#include "tables/row_reader.h"

#include <algorithm>
#include <type_traits>

#include "core/element_types.h"
#include "tables/binary_rows.h"
#include "tables/text_rows.h"

namespace Tabulon {

template <class U>
std::unique_ptr<RowReader<U>> OpenRows(const HeaderContents& contents, const ReadPlan& plan) {
  if (!contents.top.binary) return std::make_unique<TextRows<U>>(contents, plan);
  return Sumara::VisitElementType(
      contents.top.dataType,
      [&](auto tag) -> std::unique_ptr<RowReader<U>> {
        using Stored = typename decltype(tag)::Type;
        return std::make_unique<BinaryRows<Stored, U>>(contents, plan);
      },
      []() -> std::unique_ptr<RowReader<U>> { throw Sumara::CException(65); });
}

template std::unique_ptr<RowReader<float>> OpenRows(const HeaderContents&, const ReadPlan&);
template std::unique_ptr<RowReader<double>> OpenRows(const HeaderContents&, const ReadPlan&);
template std::unique_ptr<RowReader<int>> OpenRows(const HeaderContents&, const ReadPlan&);

}  // namespace Tabulon
