#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "model/igroup.h"

namespace Sumara {

/// All indices of the secondary axis.
struct AllSecondary {};

/// What a load asks for: series by name or number, where no number asks for all, and indices of the
/// secondary axis by value, label or number, likewise. It looks at the caller's lists, which have
/// to outlive it.
struct LoadRequest {
  std::variant<std::span<const std::string>, std::span<const std::size_t>> series;
  std::variant<AllSecondary, std::span<const double>, std::span<const std::string>,
               std::span<const std::size_t>>
      secondary;
};

/// The places that a request comes to in a group: ascending, each once, so that all is read in the
/// order of the file.
struct LoadPlaces {
  std::vector<std::size_t> variables;
  std::vector<std::size_t> secondary;
};

/// Refuses names or values of which there are none. \throws CException 21, 22
void CheckNotEmpty(const LoadRequest& request, const std::string& path);

/// \throws CException 19 and 20 for more items than the group has, 55 and 43 for one that it does
///         not have, 40 for a secondary index beyond the axis
LoadPlaces PlacesOf(const LoadRequest& request, const IGroup& group);

}  // namespace Sumara
