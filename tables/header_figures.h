#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tables/header_contents.h"
#include "tables/stored_figures.h"

namespace Tabulon {

/// The figures of some variables, of the header as it is now. \throws as `GroupTable::Figures`
std::optional<StoredFigures> ReadFigures(const HeaderContents& contents,
                                         const std::vector<std::size_t>& variables,
                                         std::optional<std::size_t> at);

}  // namespace Tabulon
