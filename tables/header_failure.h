#pragma once

#include "core/exceptions.h"
#include "groupfiles/header_reader.h"
#include "tables/table_error.h"

namespace Tabulon {

/// A failure of a header with the field that it speaks of and what stands there. The reader is
/// asked again: the way there costs what is sound nothing.
/// \param axis the axis block that was being read, 0 or 1.
TableError HeaderFailure(Sumara::CHeaderReader& header, const CExceptionBase& failure, int axis);

/// The label of the field that a reader's code speaks of; empty if it speaks of none.
std::string FieldOfFailure(const CExceptionBase& failure);

}  // namespace Tabulon
