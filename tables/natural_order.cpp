#include "tables/natural_order.h"

#include <cstddef>

#include "core/text.h"

namespace Tabulon {
namespace {

/// Takes the digits at the front of `text`, without leading zeros.
std::string_view TakeDigits(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && Sumara::IsDigit(text[end])) ++end;
  std::string_view digits = text.substr(0, end);
  text.remove_prefix(end);
  while (digits.size() > 1 && digits.front() == '0') digits.remove_prefix(1);
  return digits;
}

int CompareNumbers(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

int CompareCharacters(char a, char b) {
  const auto left = static_cast<unsigned char>(Sumara::ToLower(a));
  const auto right = static_cast<unsigned char>(Sumara::ToLower(b));
  return left == right ? 0 : left < right ? -1 : 1;
}

}  // namespace

int CompareNaturally(std::string_view a, std::string_view b) {
  const std::string_view wholeA = a;
  const std::string_view wholeB = b;
  while (!a.empty() && !b.empty()) {
    int order = 0;
    if (Sumara::IsDigit(a.front()) && Sumara::IsDigit(b.front())) {
      order = CompareNumbers(TakeDigits(a), TakeDigits(b));
    } else {
      order = CompareCharacters(a.front(), b.front());
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
    if (order != 0) return order;
  }
  if (a.empty() != b.empty()) return a.empty() ? -1 : 1;
  return wholeA.compare(wholeB);
}

}  // namespace Tabulon
