#include "vocabulary/quantity_codes.h"

#include <algorithm>
#include <iterator>

#include "core/exceptions.h"

namespace SumaraApi {
namespace {

struct Quantity {
  std::string_view code;
  std::string_view unit;
};

/// A code is a product of dimension letters: L length, T time, A angle, M mass, F force, P power,
/// Q reactive power, I current, V voltage. \xB2 and \xB3 are the raised 2 and 3 of Latin-1.
constexpr Quantity kQuantities[] = {
    {"L", "m"},
    {"L/T", "m/s"},
    {"A", "rad"},
    {"A/T", "rad/s"},
    {"M", "kg"},
    {"M/L", "kg/m"},
    {"MLL", "kgm\xB2"},
    {"F", "N"},
    {"FL", "Nm"},
    {"F/L", "N/m"},
    {"FL/A", "Nm/rad"},
    {"FLT/A", "Nms/rad"},
    {"FLL", "Nm\xB2"},
    {"FLTT/AA", "Nms\xB2/rad\xB2"},
    {"T", "s"},
    {"1/T", "1/s"},
    {"P", "W"},
    {"PT", "J"},
    {"A/P", "rad/W"},
    {"A/PT", "rad/Ws"},
    {"A/PTT", "rad/Ws\xB2"},
    {"M/LLL", "kg/m\xB3"},
    {"M/LT", "kg/ms"},
    {"L/TT", "m/s\xB2"},
    {"SPARE", "Spare"},
    {"N", "."},
    {"FL/L", "Nm/m"},
    {"LLL", "m\xB3"},
    {"F/LL", "N/m\xB2"},
    {"LLL/A", "m\xB3/rad"},
    {"Q", "VAr"},
    {"I", "A"},
    {"V", "V"},
    {"VI", "VA"},
    {"A/TT", "rad/s\xB2"},
};
static_assert(std::size(kQuantities) == 35);

/// The text of the other column, or an empty text for a miss that is allowed.
std::string Translate(std::string_view wanted, std::string_view Quantity::*from,
                      std::string_view Quantity::*to, bool lenient, std::string_view shownOnMiss) {
  const auto found =
      std::find_if(std::begin(kQuantities), std::end(kQuantities),
                   [&](const Quantity& quantity) { return quantity.*from == wanted; });
  if (found != std::end(kQuantities)) return std::string((*found).*to);
  if (lenient) return {};
  throw Sumara::CException(146, "Quantity code: " + std::string(shownOnMiss));
}

}  // namespace

std::string UnitOfQuantityCode(std::string_view code, bool lenient) {
  std::string unit = Translate(code, &Quantity::code, &Quantity::unit, lenient, code);
  return unit == "." ? "Unitless" : unit;
}

std::string QuantityCodeOfUnit(std::string_view unit, bool lenient) {
  std::string code = Translate(unit, &Quantity::unit, &Quantity::code, lenient, /*shownOnMiss=*/{});
  return code == "N" ? "Unquantifiable" : code;
}

std::string CodeForWriting(const std::string& unit) {
  std::string code = QuantityCodeOfUnit(unit, /*lenient=*/true);
  return code.empty() ? unit : code;
}

}  // namespace SumaraApi
