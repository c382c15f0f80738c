#pragma once

#include <gtest/gtest.h>

#include <tuple>
#include <type_traits>

#include "core/element_types.h"

namespace testing_support {

/// Turns the tuple that the list of the element types ends in into a list of types.
template <class Tuple>
struct TypesOf;
template <class First, class... Types>
struct TypesOf<std::tuple<First, Types...>> {
  using List = ::testing::Types<Types...>;
};

#define TABULON_LIST_TYPE(T) , T
/// All element types, for typed suites.
using ElementTypes =
    TypesOf<std::tuple<void TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_LIST_TYPE)>>::List;
#undef TABULON_LIST_TYPE

}  // namespace testing_support
