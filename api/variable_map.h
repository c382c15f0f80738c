#pragma once

#include <string>
#include <unordered_map>

#include "api/run.h"
#include "core/text.h"

namespace SumaraApi {

/// The variables of a run by name, whatever its case.
struct Run::VariableMap
    : std::unordered_map<std::string, VariableEntries, Sumara::HashNoCase, Sumara::EqualNoCase> {};

}  // namespace SumaraApi
