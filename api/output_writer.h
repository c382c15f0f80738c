#pragma once

#include "api/output_specification.h"
#include "api/types.h"

namespace SumaraApi {

/// What `TabulonApi::WriteOutput` does.
bool WriteOutputFiles(IOutputSpecification const& specification,
                      OverwriteBehaviour overwriteBehaviour);

}  // namespace SumaraApi
