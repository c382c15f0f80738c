#pragma once

#include <memory>

#include "api/directory_listings.h"
#include "api/run_cache.h"
#include "api/types.h"
#include "core/directory_walk.h"

namespace SumaraApi {

/// The filters of searches.
struct SearchFilters {
  CalculationType calculationType = CalculationType::AllCalculationTypes;
  bool includeUnsupported = true;
  CompletionState completionState = CompletionState::AllCompletionStates;
  CaseSensitivity runNameCase = CaseSensitivity::IgnoreCase;
};

/// What the library keeps for the life of the process: the run cache and the settings. Nothing
/// guards it: all calls come on one thread at a time.
struct ProcessState {
  RunCache runs;
  bool bufferedRead = true;
  bool runCaching = true;
  DataTypeSpecifier dataTypeForReading = DataTypeSpecifier::ReadAsSerialisedType;
  SearchFilters filters;
  /// The walk of the incremental searches: one for all iterators.
  std::unique_ptr<Sumara::DirectoryWalk> walk;
  DirectoryListings listings;

  /// The data type code in which groups are to be held, or 0 for the type in their file.
  std::uint32_t TargetType() const;
};

ProcessState& State();

}  // namespace SumaraApi
