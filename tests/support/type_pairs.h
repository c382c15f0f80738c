#pragma once

#include "tests/support/element_types.h"

namespace testing_support {

/// A stored type and a target type.
template <class T, class U>
struct TypePair {
  using Stored = T;
  using Target = U;
};

template <class... Lists>
struct JoinTypes;
template <class... Types>
struct JoinTypes<::testing::Types<Types...>> {
  using List = ::testing::Types<Types...>;
};
template <class... First, class... Second, class... Rest>
struct JoinTypes<::testing::Types<First...>, ::testing::Types<Second...>, Rest...>
    : JoinTypes<::testing::Types<First..., Second...>, Rest...> {};

template <class Types>
struct PairsOf;
template <class... Types>
struct PairsOf<::testing::Types<Types...>> {
  template <class T>
  using Row = ::testing::Types<TypePair<T, Types>...>;
  using List = typename JoinTypes<Row<Types>...>::List;
};

/// Every element type with every other, for typed suites.
using ElementTypePairs = PairsOf<ElementTypes>::List;

}  // namespace testing_support
