#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "api/types.h"

namespace Sumara {
class IGroup;
}

namespace SumaraApi {

// What groups and variables both tell of a model group.

/// Seconds: points times step of the interval axis named Time, to four decimals.
/// \throws Sumara::CException 168
double TimeDomainLengthOf(const Sumara::IGroup& group);

/// Values along the primary axis.
std::size_t DataPointCountOf(const Sumara::IGroup& group);

/// \throws Sumara::CException 172 for a type that the public interface has no variables of.
VariableDataType DataTypeOf(const Sumara::IGroup& group);
VariableDataFormat DataFormatOf(const Sumara::IGroup& group);

/// \throws Sumara::CException 167, with `context`
IndependentVariablePtr FindIndependentVariable(const std::vector<IndependentVariablePtr>& variables,
                                               const std::string& name, const std::string& context);
IndependentVariablePtr FindIndependentVariable(const std::vector<IndependentVariablePtr>& variables,
                                               IndependentVariableId id,
                                               const std::string& context);

}  // namespace SumaraApi
