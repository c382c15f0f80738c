#pragma once

#include <string>

#include "api/types.h"

namespace SumaraApi {

/// What `TabulonApi::WriteOutput` takes.
class IOutputSpecification {
 public:
  /// The path of the header file.
  virtual std::string GetPath() const = 0;
  virtual FileFormat GetFileFormat() const = 0;
  virtual ~IOutputSpecification() = default;
};

}  // namespace SumaraApi
