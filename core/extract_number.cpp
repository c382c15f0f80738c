#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

#include "core/decimal_value.h"
#include "core/eight_digits.h"
#include "core/numbers.h"
#include "core/scientific_number.h"
#include "core/text.h"

// A stream first takes every character that can belong to a number, and then asks whether they are
// one: "1e" is taken whole and fails. It knows neither "nan", "inf" nor hexadecimal.

namespace Sumara {
namespace {

constexpr std::ptrdiff_t kMostDigits = 19;  // of any 64-bit mantissa
constexpr int kLargestExponent = 100000;

/// What a stream takes as a floating number, and its value as mantissa times a power of ten.
struct Spelling {
  const char* end = nullptr;
  bool negative = false;
  bool hasSign = false;
  bool valid = false;
  bool exact = false;  ///< the mantissa holds all digits
  std::uint64_t mantissa = 0;
  std::ptrdiff_t exponent = 0;
};

/// Appends digits to the mantissa, which wraps round if they are too many.
const char* ScanDigits(const char* at, const char* end, std::uint64_t& mantissa) {
  constexpr std::size_t kBlock = 8;
  for (; end - at >= std::ptrdiff_t{kBlock}; at += kBlock) {
    const std::uint64_t word = LoadEight(at);
    if (CountLeadingDigits(word) != kBlock) break;
    mantissa = 100'000'000 * mantissa + JoinEightDigits(word);
  }
  for (; at != end && IsDigit(*at); ++at) {
    mantissa = 10 * mantissa + static_cast<std::uint64_t>(*at - '0');
  }
  return at;
}

const char* ScanSign(const char* at, const char* end, bool& negative, bool& hasSign) {
  negative = at != end && *at == '-';
  hasSign = negative || (at != end && *at == '+');
  return hasSign ? at + 1 : at;
}

/// The exponent behind its letter.
const char* ScanExponent(const char* at, const char* end, Spelling& spelling) {
  bool negative = false;
  bool hasSign = false;
  at = ScanSign(at, end, negative, hasSign);
  const char* const first = at;
  int exponent = 0;
  for (; at != end && IsDigit(*at); ++at) {
    exponent = std::min(10 * exponent + (*at - '0'), kLargestExponent);
  }
  spelling.exponent += negative ? -exponent : exponent;
  spelling.valid = at != first;
  return at;
}

Spelling Scan(const char* at, const char* end) {
  Spelling spelling;
  at = ScanSign(at, end, spelling.negative, spelling.hasSign);
  const char* const first = at;
  at = ScanDigits(at, end, spelling.mantissa);
  std::ptrdiff_t digits = at - first;
  if (at != end && *at == '.') {
    const char* const fraction = ++at;
    at = ScanDigits(at, end, spelling.mantissa);
    spelling.exponent = fraction - at;
    digits -= spelling.exponent;
  }
  spelling.valid = digits > 0;
  spelling.exact = digits <= kMostDigits;
  if (spelling.valid && at != end && (*at == 'e' || *at == 'E')) {
    at = ScanExponent(at + 1, end, spelling);
  }
  spelling.end = at;
  return spelling;
}

/// Takes a number as floats are written. \return its size; 0 for any other, or if it takes more
/// care.
template <class T>
std::size_t TakeFloatText(std::string_view text, T& value) {
  const std::size_t size = FloatTextSize(text);
  if (size == 0) return 0;
  const FloatText number{text.data() + (size - FloatText::kSize)};
  if (!DecimalValue::Of(number.Mantissa(), number.Power() - FloatText::kDigits, value)) return 0;
  if (size > FloatText::kSize) value = -value;
  return size;
}

/// The same for a number with another count of digits.
template <class T>
std::size_t TakeScientific(std::string_view text, T& value) {
  if (const std::size_t size = TakeFloatText(text, value)) return size;
  const ScientificNumber number = ScientificNumber::At(text);
  if (number.size == 0 || !number.IsShort()) return 0;
  const std::ptrdiff_t exponent = number.power - static_cast<std::ptrdiff_t>(number.digits);
  if (!DecimalValue::Of(number.Mantissa(), exponent, value)) return 0;
  if (number.negative) value = -value;
  return number.size;
}

/// For what is rare: numbers beyond the limits of the type.
template <class T>
bool ExtractByStream(std::string_view text, T& value) {
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  return static_cast<bool>(stream >> value);
}

template <class T>
bool ExtractReal(std::string_view& text, T& value) {
  if (const std::size_t size = TakeScientific(text, value)) {
    text.remove_prefix(size);
    return true;
  }
  const Spelling spelling = Scan(text.data(), text.data() + text.size());
  const std::string_view number(text.data(), static_cast<std::size_t>(spelling.end - text.data()));
  text.remove_prefix(number.size());
  value = 0;
  if (!spelling.valid) return false;
  if (spelling.exact && DecimalValue::Of(spelling.mantissa, spelling.exponent, value)) {
    if (spelling.negative) value = -value;
    return true;
  }
  const char* const first = number.data() + (spelling.hasSign && !spelling.negative ? 1 : 0);
  const auto [end, error] = std::from_chars(first, spelling.end, value);
  return error == std::errc{} || ExtractByStream(number, value);
}

template <class T>
bool ExtractInteger(std::string_view& text, T& value) {
  constexpr std::uint64_t kBeyondAll = std::uint64_t{1} << 40;
  const bool negative = text.front() == '-';
  std::size_t at = negative || text.front() == '+' ? 1 : 0;
  const std::size_t first = at;
  std::uint64_t magnitude = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    const auto digit = static_cast<std::uint64_t>(text[at] - '0');
    magnitude = std::min(10 * magnitude + digit, kBeyondAll);
  }
  text.remove_prefix(at);
  constexpr auto kLimit = static_cast<std::uint64_t>(std::numeric_limits<T>::max());
  const std::uint64_t limit = kLimit + (negative ? 1 : 0);
  const auto size = static_cast<std::int64_t>(std::min(magnitude, limit));
  value = static_cast<T>(negative ? -size : size);
  return at != first && magnitude <= limit;
}

}  // namespace

template <class T>
bool ExtractNumber(std::string_view& text, T& value) {
  SkipSpace(text);
  if (text.empty()) return false;
  if constexpr (std::is_floating_point_v<T>) {
    return ExtractReal(text, value);
  } else if constexpr (std::is_same_v<T, Long>) {
    std::int32_t number = 0;
    const bool isNumber = ExtractInteger(text, number);
    value = number;
    return isNumber;
  } else {
    return ExtractInteger(text, value);
  }
}

#define TABULON_INSTANTIATE(T) template bool ExtractNumber(std::string_view&, T&);
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
