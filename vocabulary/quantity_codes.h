#pragma once

#include <string>
#include <string_view>

namespace SumaraApi {

/// The SI unit of a quantity code; "Unitless" for a dimensionless one. Units are bytes of Latin-1.
///
/// A code that the table does not hold gives the empty string if `lenient`.
/// \throws Sumara::CException 146
std::string UnitOfQuantityCode(std::string_view code, bool lenient);

/// The quantity code of an SI unit; "Unquantifiable" for the unit of dimensionless quantities.
/// \throws Sumara::CException 146, as above
std::string QuantityCodeOfUnit(std::string_view unit, bool lenient);

/// The code of a unit that a caller gives for writing; a unit without a code stands for itself.
std::string CodeForWriting(const std::string& unit);

}  // namespace SumaraApi
