#pragma once

#include <string>

#include "core/exceptions.h"
#include "tables/table_error.h"

namespace Tabulon {

/// Makes a reader's failure in `call` a failure of the file.
template <class Call>
decltype(auto) AsTableErrors(const std::string& path, const Call& call) {
  try {
    return call();
  } catch (const CExceptionBase& failure) {
    throw TableError::Of(failure, path);
  }
}

}  // namespace Tabulon
