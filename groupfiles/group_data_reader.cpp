#include "groupfiles/group_data_reader.h"

#include <utility>

#include "core/element_types.h"
#include "core/exceptions.h"
#include "groupfiles/binary_data_reader.h"
#include "groupfiles/text_data_reader.h"

namespace Sumara {
namespace {

template <class Reader>
std::unique_ptr<CIOBase> Make(std::string path, FileMode mode,
                              std::vector<std::uint64_t> dimensions) {
  auto reader = std::make_unique<Reader>(std::move(path), static_cast<std::int32_t>(mode));
  reader->SetDimensions(std::move(dimensions));
  return reader;
}

}  // namespace

template <class U>
std::unique_ptr<CIOBase> MakeGroupDataReader(std::uint32_t storedType, std::string path,
                                             bool binary, std::vector<std::uint64_t> dimensions) {
  return VisitElementType(
      storedType,
      [&](auto tag) {
        using Stored = typename decltype(tag)::Type;
        return binary ? Make<CBinaryDataReader<Stored, U>>(std::move(path), FileMode::kReadBinary,
                                                           std::move(dimensions))
                      : Make<CTextDataReader<U>>(std::move(path), FileMode::kReadTextData,
                                                 std::move(dimensions));
      },
      []() -> std::unique_ptr<CIOBase> { throw CException(65); });
}

#define TABULON_INSTANTIATE(U)                                                               \
  template std::unique_ptr<CIOBase> MakeGroupDataReader<U>(std::uint32_t, std::string, bool, \
                                                           std::vector<std::uint64_t>);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
