#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What an ECMAScript expression is made of, as far as it has to be known before it is compiled. The
// compiler calls itself for each term of an alternative and for each group, so that a long one
// would take the whole stack; other parts of it take time that grows with the square of their
// number.

namespace SumaraApi {

inline constexpr std::size_t kMostTerms = 16'384;  ///< in one alternative
inline constexpr std::size_t kMostNestedGroups = 1'000;
inline constexpr std::size_t kMostGroupedAlternatives = 10'000;  ///< alternatives within groups
inline constexpr std::size_t kMostSetText = 131'072;  ///< sets of characters: four and their text

struct ExpressionShape {
  /// What there is too much of, in words; null if all is within bounds.
  const char* excess = nullptr;
  /// Expressions of which one matches if the whole does: what stands between the bars outside all
  /// groups, or the whole if it cannot be cut.
  std::vector<std::string_view> alternatives;
};

/// The shape of an expression, which need not be right: the compiler tells that.
ExpressionShape ShapeOf(std::string_view expression);

/// Whether each character of an expression stands for itself.
bool IsLiteral(std::string_view expression);

}  // namespace SumaraApi
