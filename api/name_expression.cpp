#include "api/name_expression.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <regex>
#include <unordered_set>
#include <utility>
#include <vector>

#include "api/expression_shape.h"
#include "core/exceptions.h"
#include "core/text.h"

namespace SumaraApi {
namespace {

/// The matcher calls itself from character to character. Alternatives go deeper without a use of
/// the name, by less than as much again: the compiler refuses expressions of so many.
constexpr std::size_t kMostStackBytes = 3'500'000;

struct TooMuch {
  const char* what;
};

[[noreturn]] void Refuse(const std::string& expression, const char* reason) {
  throw Sumara::CException(169, "Expression: " + expression, reason);
}

/// What one match may still use.
class Effort {
 public:
  void Spend() {
    if (m_usesLeft == 0) throw TooMuch{"Matching a name takes too many steps"};
    --m_usesLeft;
    const char here = 0;
    const auto bottom = reinterpret_cast<std::uintptr_t>(&here);
    if (m_top == 0) m_top = bottom;
    if (m_top > bottom && m_top - bottom > kMostStackBytes)
      throw TooMuch{"Matching a name goes too deep"};
  }

 private:
  std::size_t m_usesLeft = NameExpression::kMostUses;
  std::uintptr_t m_top = 0;
};

/// A place in a name. Whatever the matcher does to it is spent.
class Place {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Place() = default;
  Place(const char* at, Effort& effort) : m_at(at), m_effort(&effort) {}
  Place(const Place& other) : m_at(other.m_at), m_effort(other.m_effort) { Spend(); }
  Place& operator=(const Place& other) {
    m_at = other.m_at;
    m_effort = other.m_effort;
    Spend();
    return *this;
  }
  ~Place() = default;

  reference operator*() const {
    Spend();
    return *m_at;
  }
  Place& operator++() {
    ++m_at;
    return *this;
  }
  Place operator++(int) {
    Place before = *this;
    ++m_at;
    return before;
  }
  Place& operator--() {
    --m_at;
    return *this;
  }
  Place operator--(int) {
    Place before = *this;
    --m_at;
    return before;
  }
  bool operator==(const Place& other) const {
    Spend();
    return m_at == other.m_at;
  }

 private:
  void Spend() const {
    if (m_effort != nullptr) m_effort->Spend();
  }

  const char* m_at = nullptr;
  Effort* m_effort = nullptr;
};

}  // namespace

struct NameExpression::Compiled {
  Compiled(const std::string& text, bool ignoresCase) : ignoresCase(ignoresCase) {
    const ExpressionShape shape = ShapeOf(text);
    if (shape.excess != nullptr) Refuse(text, shape.excess);
    auto flags = std::regex_constants::ECMAScript;
    if (ignoresCase) flags |= std::regex_constants::icase;
    for (const std::string_view alternative : shape.alternatives) {
      if (IsLiteral(alternative)) {
        names.insert(Folded(alternative));
      } else {
        expressions.emplace_back(alternative.begin(), alternative.end(), flags);
      }
    }
  }

  std::string Folded(std::string_view name) const {
    std::string folded(name);
    if (ignoresCase) std::transform(name.begin(), name.end(), folded.begin(), Sumara::ToLower);
    return folded;
  }

  bool ignoresCase;
  std::unordered_set<std::string> names;
  std::vector<std::regex> expressions;
};

NameExpression::NameExpression(std::string expression, bool ignoresCase)
    : m_text(std::move(expression)) {
  try {
    m_compiled = std::make_unique<const Compiled>(m_text, ignoresCase);
  } catch (const std::regex_error& failure) {
    Refuse(m_text, failure.what());
  }
}

NameExpression::~NameExpression() = default;
NameExpression::NameExpression(NameExpression&&) noexcept = default;
NameExpression& NameExpression::operator=(NameExpression&&) noexcept = default;

bool NameExpression::Matches(std::string_view name) const {
  if (m_compiled->names.contains(m_compiled->Folded(name))) return true;
  try {
    Effort effort;
    const Place begin(name.data(), effort);
    const Place end(name.data() + name.size(), effort);
    const auto& expressions = m_compiled->expressions;
    return std::any_of(expressions.begin(), expressions.end(), [&](const std::regex& expression) {
      return std::regex_match(begin, end, expression);
    });
  } catch (const std::regex_error& failure) {
    Refuse(m_text, failure.what());
  } catch (const TooMuch& excess) {
    Refuse(m_text, excess.what);
  }
}

}  // namespace SumaraApi
