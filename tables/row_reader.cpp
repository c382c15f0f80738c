#include "tables/row_reader.h"

#include <algorithm>
#include <type_traits>

#include "core/element_types.h"
#include "tables/binary_rows.h"
#include "tables/text_rows.h"

namespace Tabulon {

template <class U>
std::unique_ptr<RowReader<U>> OpenRows(const HeaderContents& contents) {
  if (!contents.top.binary) return std::make_unique<TextRows<U>>(contents);
  return Sumara::VisitElementType(
      contents.top.dataType,
      [&](auto tag) -> std::unique_ptr<RowReader<U>> {
        using Stored = typename decltype(tag)::Type;
        return std::make_unique<BinaryRows<Stored, U>>(contents);
      },
      []() -> std::unique_ptr<RowReader<U>> { throw Sumara::CException(65); });
}

template std::unique_ptr<RowReader<float>> OpenRows(const HeaderContents&);
template std::unique_ptr<RowReader<double>> OpenRows(const HeaderContents&);
template std::unique_ptr<RowReader<int>> OpenRows(const HeaderContents&);

}  // namespace Tabulon
