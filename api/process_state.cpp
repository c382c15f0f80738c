#include "api/process_state.h"

#include "api/run.h"
#include "core/element_types.h"

namespace SumaraApi {

ProcessState& State() {
  static ProcessState state;
  return state;
}

std::uint32_t ProcessState::TargetType() const {
  switch (dataTypeForReading) {
    case DataTypeSpecifier::ReadAsFloat32:
      return Sumara::kFloatCode;
    case DataTypeSpecifier::ReadAsFloat64:
      return Sumara::kDoubleCode;
    case DataTypeSpecifier::ReadAsSerialisedType:
      break;
  }
  return 0;
}

}  // namespace SumaraApi
