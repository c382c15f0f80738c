#pragma once

#include <string_view>

#include "vocabulary/enumerations.h"

// What the text of a termination file says of how the run ended. Phrases are compared exactly.

namespace SumaraApi {

/// The first phrase that decides wins; "Run completed" beats all others.
CompletionState CompletionStateOf(std::string_view terminationText);

/// Whether the text does not say that the run is in progress: any other text counts as finished.
bool TellsFinished(std::string_view terminationText);

/// Whether the text says that the run was completed.
bool TellsSuccess(std::string_view terminationText);

/// True for the states of runs that were terminated, that failed or that were aborted.
bool IsUnsuccessful(CompletionState state);

}  // namespace SumaraApi
