#include "api/expression_shape.h"

#include <algorithm>

#include "core/text.h"

namespace SumaraApi {
namespace {

/// Terms of alternatives that stand in one another, for as long as all of them are open.
constexpr std::size_t kMostOpenTerms = 2 * kMostTerms;

/// Takes an expression apart, character by character.
class Scan {
 public:
  explicit Scan(std::string_view expression) : m_whole(expression), m_left(expression) {}

  ExpressionShape Run() {
    ExpressionShape shape;
    while (!m_left.empty() && shape.excess == nullptr) {
      TakeNext();
      shape.excess = Excess();
    }
    m_alternatives.push_back(m_whole.substr(m_begin));
    const bool isCut = m_isBalanced && m_openTerms.size() == 1 && !m_refersBack;
    shape.alternatives = isCut ? std::move(m_alternatives) : std::vector{m_whole};
    return shape;
  }

 private:
  void TakeNext() {
    switch (m_left.front()) {
      case '*':
      case '+':
      case '?':
        return Skip(1);
      case '{':
        return SkipBehind("}");
      case '|':
        return TakeBar();
      case '(':
        CountTerm();
        m_openTerms.push_back(0);
        return Skip(m_left.starts_with("(?") ? 3 : 1);
      case ')':
        return TakeEndOfGroup();
      case '[':
        CountTerm();
        return TakeBrackets();
      case '\\':
        CountTerm();
        return TakeEscape();
      default:
        CountTerm();
        return Skip(1);
    }
  }

  void TakeBar() {
    EndAlternative();
    if (m_openTerms.size() > 1) {
      ++m_groupedAlternatives;
    } else {
      const std::size_t at = m_whole.size() - m_left.size();
      m_alternatives.push_back(m_whole.substr(m_begin, at - m_begin));
      m_begin = at + 1;
    }
    Skip(1);
  }

  void TakeEndOfGroup() {
    if (m_openTerms.size() == 1) {
      m_isBalanced = false;
    } else {
      EndAlternative();
      m_openTerms.pop_back();
    }
    Skip(1);
  }

  /// A backslash and what belongs to it.
  void TakeEscape() {
    Skip(1);
    if (m_left.empty()) return;
    const char kind = m_left.front();
    Skip(1);
    if (kind == 'c') Skip(1);
    if (kind == 'x') Skip(2);
    if (kind == 'u') Skip(4);
    if (std::string_view("dDsSwW").find(kind) != std::string_view::npos) m_setText += 4;
    if (!Sumara::IsDigit(kind)) return;
    m_refersBack = true;
    while (!m_left.empty() && Sumara::IsDigit(m_left.front())) Skip(1);
  }

  /// Characters in brackets, which may hold classes as [:digit:], [=a=] and [.-.].
  void TakeBrackets() {
    const std::size_t left = m_left.size();
    Skip(1);
    while (!m_left.empty() && m_left.front() != ']') {
      if (m_left.front() == '\\') {
        Skip(2);
      } else if (m_left.starts_with("[:") || m_left.starts_with("[=") || m_left.starts_with("[.")) {
        const char end[] = {m_left[1], ']'};
        Skip(2);
        SkipBehind({end, 2});
      } else {
        Skip(1);
      }
    }
    m_isBalanced = m_isBalanced && !m_left.empty();
    Skip(1);
    m_setText += 2 + left - m_left.size();  // the brackets themselves are two of the four
  }

  void CountTerm() {
    ++m_openTerms.back();
    ++m_sumOfOpenTerms;
  }

  void EndAlternative() {
    m_sumOfOpenTerms -= m_openTerms.back();
    m_openTerms.back() = 0;
  }

  const char* Excess() const {
    if (m_openTerms.back() > kMostTerms) return "More than 16384 terms in one alternative";
    if (m_openTerms.size() > kMostNestedGroups + 1) return "More than 1000 groups in one another";
    if (m_sumOfOpenTerms > kMostOpenTerms) return "Too many terms around groups in one another";
    if (m_groupedAlternatives > kMostGroupedAlternatives)
      return "More than 10000 alternatives in groups";
    if (m_setText > kMostSetText) return "Too many sets of characters";
    return nullptr;
  }

  void Skip(std::size_t count) { m_left.remove_prefix(std::min(count, m_left.size())); }
  void SkipBehind(std::string_view mark) {
    const std::size_t at = m_left.find(mark);
    Skip(at == std::string_view::npos ? m_left.size() : at + mark.size());
  }

  std::string_view m_whole;
  std::string_view m_left;
  std::vector<std::string_view> m_alternatives;
  std::size_t m_begin = 0;                     ///< of the alternative outside all groups
  std::vector<std::size_t> m_openTerms = {0};  ///< of each alternative that is open
  std::size_t m_sumOfOpenTerms = 0;
  std::size_t m_groupedAlternatives = 0;
  std::size_t m_setText = 0;
  bool m_isBalanced = true;
  bool m_refersBack = false;
};

}  // namespace

ExpressionShape ShapeOf(std::string_view expression) { return Scan(expression).Run(); }

bool IsLiteral(std::string_view expression) {
  constexpr std::string_view kSpecial("^$\\.*+?()[]{}|\0", 15);
  return expression.find_first_of(kSpecial) == std::string_view::npos;
}

}  // namespace SumaraApi
