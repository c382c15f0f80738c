#pragma once

#include <string>
#include <string_view>

#include "vocabulary/enumerations.h"

namespace SumaraApi {

/// The type of a CONTENT value, compared exactly; `Unknown` for any other text.
CalculationType CalculationTypeOf(std::string_view shortName);

/// For example "Power production simulation"; one text for all types without a name.
std::string DescriptiveNameOf(CalculationType type);

bool IsPostProcessing(CalculationType type);
bool IsSupporting(CalculationType type);
bool IsTurbineSimulation(CalculationType type);

/// Whether the library reads the output groups of such a calculation. Values it does not know count
/// as supported.
bool IsSupported(CalculationType type);

}  // namespace SumaraApi
