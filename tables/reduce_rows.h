#pragma once

#include "tables/header_contents.h"
#include "tables/reduction.h"
#include "tables/selection.h"
#include "tables/table_error.h"

namespace Tabulon {

/// Reduces a selection in one pass over the data file. \throws as `GroupTable::Reduce`
Reduction ReduceRows(const HeaderContents& contents, const Selection& selection,
                     const StopQuestion& stop);

}  // namespace Tabulon
