#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace SumaraApi {

/// An ECMAScript expression that whole run names are held against.
///
/// What an expression may ask for is bounded (see `expression_shape.h` too), so that none takes the
/// whole stack or goes on without end. Names that stand in it as alternatives cost nothing to speak
/// of, however many they are.
class NameExpression {
 public:
  /// The uses that one match may make of the characters of a name and of places between them: some
  /// ten million steps from character to character.
  static constexpr std::size_t kMostUses = 40'000'000;

  /// \throws Sumara::CException 169 for an expression that is wrong or too large.
  NameExpression(std::string expression, bool ignoresCase);
  ~NameExpression();
  NameExpression(NameExpression&&) noexcept;
  NameExpression& operator=(NameExpression&&) noexcept;

  /// \throws Sumara::CException 169 if the match takes too many steps or goes too deep.
  bool Matches(std::string_view name) const;

 private:
  struct Compiled;
  std::string m_text;
  std::unique_ptr<const Compiled> m_compiled;
};

}  // namespace SumaraApi
