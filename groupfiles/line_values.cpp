#include "groupfiles/line_values.h"

#include <type_traits>

#include "core/decimal_value.h"
#include "core/eight_digits.h"
#include "core/numbers.h"
#include "core/scientific_number.h"
#include "groupfiles/text_numbers.h"

namespace Sumara {
namespace {

/// A guess at where the next number of a line stands, by the one before: tables are written in
/// fields of one width. The processor need not find the end of one number to begin with the next,
/// and blanks and signs in front of them cost no jump that it cannot foresee.
class FieldGuess {
 public:
  /// Says how far the last number reached from the end of the one before it.
  void SetWidth(std::size_t width) {
    const bool isField = width >= kLeast && width <= kLeast + kBlock;
    m_width = isField ? width : kNone;
    m_blanks = isField && width > kLeast ? ~std::uint64_t{0} >> 8 * (kLeast + kBlock - width) : 0;
  }
  std::size_t Width() const { return m_width; }

  /// Whether `text` begins with a field of that width: blanks, a blank or a minus sign, and the
  /// text of a float, with white space behind it or the end.
  bool Holds(std::string_view text) const {
    if (text.size() < m_width) return false;
    const std::uint64_t front = LoadEight(text.data());
    const char sign = Sign(text);
    const bool hasSignOrBlank = (sign == '-') | (sign == ' ');  // bit by bit: no jump
    const bool isAligned = (((front ^ kBlanks) & m_blanks) == 0) & hasSignOrBlank;
    return isAligned && NumberIn(text).IsNumber() &&
           (text.size() == m_width || IsSpace(text[m_width]));
  }
  FloatText NumberIn(std::string_view text) const {
    return {text.data() + (m_width - FloatText::kSize)};
  }
  bool IsNegativeIn(std::string_view text) const { return Sign(text) == '-'; }

 private:
  static constexpr std::size_t kBlock = 8;
  static constexpr std::uint64_t kBlanks = EightOf("        ");
  static constexpr std::size_t kLeast = FloatText::kSize + 1;  // a sign, or a blank
  static constexpr std::size_t kNone = ~std::size_t{0};

  char Sign(std::string_view text) const { return text[m_width - kLeast]; }

  std::size_t m_width = kNone;
  std::uint64_t m_blanks = 0;  ///< the bytes at the front of a field that have to be blanks
};

/// The numbers of a line, one after another.
template <class U>
class LineNumbers {
 public:
  explicit LineNumbers(std::string_view line) : m_rest(line) {}

  /// Takes the next number. \return false if there is none.
  bool Take(U& value) {
    if constexpr (std::is_floating_point_v<U>) {
      if (TakeField(value)) return true;
    }
    return Learn([&] { return ExtractNumber(m_rest, value); });
  }

  /// Passes over the next number. \return false if there is none.
  bool Skip() {
    if constexpr (std::is_floating_point_v<U>) {
      if (SkipField()) return true;
    }
    return Learn([this] { return SkipNumber<U>(m_rest); });
  }

 private:
  bool TakeField(U& value) {
    if (!m_field.Holds(m_rest)) return false;
    const FloatText number = m_field.NumberIn(m_rest);
    if (!DecimalValue::Of(number.Mantissa(), number.Power() - FloatText::kDigits, value))
      return false;
    static constexpr U kSigns[] = {1, -1};  // a factor, since signs come as they like
    value *= kSigns[m_field.IsNegativeIn(m_rest) ? 1 : 0];
    m_rest.remove_prefix(m_field.Width());
    return true;
  }

  bool SkipField() {
    if (!m_field.Holds(m_rest) || !IsSafePower(m_field.NumberIn(m_rest).Power())) return false;
    m_rest.remove_prefix(m_field.Width());
    return true;
  }

  /// Has `take` pass over a number, and its field be the guess for the next.
  template <class Taker>
  bool Learn(const Taker& take) {
    const std::size_t before = m_rest.size();
    const bool isNumber = take();
    m_field.SetWidth(before - m_rest.size());
    return isNumber;
  }

  std::string_view m_rest;
  FieldGuess m_field;
};

}  // namespace

template <class U>
std::uint64_t TakeLineValues(std::string_view line, std::uint64_t count,
                             std::span<const std::uint64_t> places, std::span<U> values) {
  LineNumbers<U> numbers(line);
  std::size_t next = 0;
  for (std::uint64_t place = 0; place < count; ++place) {
    if (next == places.size() || places[next] != place) {
      if (!numbers.Skip()) return place;
      continue;
    }
    U value{};
    if (!numbers.Take(value)) return place;
    for (; next < places.size() && places[next] == place; ++next) values[next] = value;
  }
  return count;
}

#define TABULON_INSTANTIATE(U)                                           \
  template std::uint64_t TakeLineValues(std::string_view, std::uint64_t, \
                                        std::span<const std::uint64_t>, std::span<U>);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
