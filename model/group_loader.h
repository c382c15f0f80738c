#pragma once

#include <functional>
#include <memory>
#include <string>

#include "model/igroup.h"

namespace Sumara {

/// Builds a group from its header.
///
/// \param targetType the type in which to hold the data, or 0 for the type in the file.
/// \param enter takes the group into its registry, once its axes and reader stand.
/// \throws CException with the code of the field that fails; CIOException for the first four
/// fields.
std::shared_ptr<IGroup> LoadGroup(const std::string& path, PreviewMode previewMode,
                                  std::uint32_t targetType,
                                  const std::function<void(const std::shared_ptr<IGroup>&)>& enter);

/// Reads the statistics blocks of the header at `path` into a group that was loaded without them.
/// The group gets none if the header now has other variables, or has them in another order.
void LoadStoredStatistics(const std::string& path, IGroup& group);

}  // namespace Sumara
