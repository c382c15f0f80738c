#pragma once

#include <cstdint>
#include <iosfwd>
#include <limits>
#include <type_traits>

#include "core/exceptions.h"

namespace Sumara {

/// The 32-bit integer that files call `long`: a type of its own, distinct from `int`, so that the
/// five element types stay five on a platform whose own `long` is wider.
class Long {
 public:
  constexpr Long() = default;
  template <class A, std::enable_if_t<std::is_arithmetic_v<A>, int> = 0>
  constexpr Long(A value)
      : m_value(static_cast<std::int32_t>(value)) {}  // NOLINT: converts as an integer does
  constexpr operator std::int32_t() const {
    return m_value;
  }  // NOLINT: converts as an integer does

 private:
  std::int32_t m_value = 0;
};
static_assert(sizeof(Long) == 4);

/// Data type codes, as headers and groups number the five element types.
inline constexpr std::uint32_t kFloatCode = 1;
inline constexpr std::uint32_t kDoubleCode = 2;
inline constexpr std::uint32_t kShortCode = 3;
inline constexpr std::uint32_t kIntCode = 4;
inline constexpr std::uint32_t kLongCode = 5;

template <class T>
struct ElementTraits;
template <>
struct ElementTraits<float> {
  static constexpr std::uint32_t kCode = kFloatCode;
};
template <>
struct ElementTraits<double> {
  static constexpr std::uint32_t kCode = kDoubleCode;
};
template <>
struct ElementTraits<short> {
  static constexpr std::uint32_t kCode = kShortCode;
};
template <>
struct ElementTraits<int> {
  static constexpr std::uint32_t kCode = kIntCode;
};
template <>
struct ElementTraits<Long> {
  static constexpr std::uint32_t kCode = kLongCode;
};

template <class T>
inline constexpr std::uint32_t kDataTypeCode = ElementTraits<T>::kCode;

template <class T>
struct ElementTag {
  using Type = T;
};

/// Calls `visit(ElementTag<T>{})` for the element type of `code`, or `unknown()` for any other
/// code.
template <class Visit, class Unknown>
decltype(auto) VisitElementType(std::uint32_t code, Visit&& visit, Unknown&& unknown) {
  switch (code) {
    case kFloatCode:
      return visit(ElementTag<float>{});
    case kDoubleCode:
      return visit(ElementTag<double>{});
    case kShortCode:
      return visit(ElementTag<short>{});
    case kIntCode:
      return visit(ElementTag<int>{});
    case kLongCode:
      return visit(ElementTag<Long>{});
    default:
      return unknown();
  }
}

/// The 32-bit integer of a floating value, truncated toward zero; the lowest integer stands for
/// what does not fit, as the processor's own conversion has it.
template <class F>
constexpr std::int32_t TruncateToInt32(F value) {
  constexpr double kLimit = 2147483648.0;
  const auto wide = static_cast<double>(value);
  return wide > -kLimit - 1.0 && wide < kLimit ? static_cast<std::int32_t>(wide)
                                               : std::numeric_limits<std::int32_t>::min();
}

/// The one conversion between element types: integers keep their low bits, floating values are
/// truncated toward zero; nothing is checked and nothing fails.
template <class To, class From>
constexpr To ConvertElement(From value) {
  if constexpr (std::is_same_v<From, To>) {
    return value;
  } else if constexpr (std::is_floating_point_v<From> && !std::is_floating_point_v<To>) {
    return static_cast<To>(TruncateToInt32(value));
  } else if constexpr (std::is_same_v<From, Long>) {
    return static_cast<To>(static_cast<std::int32_t>(value));
  } else {
    return static_cast<To>(value);
  }
}

/// The sum in the element type; integers wrap around.
template <class T>
constexpr T AddElements(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    return a + b;
  } else {
    return ConvertElement<T>(
        static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int32_t>(a)) +
                                  static_cast<std::uint32_t>(static_cast<std::int32_t>(b))));
  }
}

}  // namespace Sumara

/// Names the five element types for lists of explicit instantiations: X(T).
#define TABULON_FOR_EACH_ELEMENT_TYPE(X) X(float) X(double) X(short) X(int) X(Sumara::Long)
