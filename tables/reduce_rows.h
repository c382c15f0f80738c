#pragma once

#include "tables/header_contents.h"
#include "tables/read_plan.h"
#include "tables/reduction.h"
#include "tables/table_error.h"

namespace Tabulon {

/// Reduces the columns of a plan in one pass over the data file. \throws as `GroupTable::Reduce`
Reduction ReduceRows(const HeaderContents& contents, const ReadPlan& plan,
                     const StopQuestion& stop);

}  // namespace Tabulon
