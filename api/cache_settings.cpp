#include "api/cache_settings.h"

#include "api/process_state.h"
#include "api/run.h"

namespace SumaraApi {

void TabulonApi_CacheSettings::SetBufferedReadEnabled(bool bufferedReadEnabled) {
  State().runs.ReleaseReaders();
  State().bufferedRead = bufferedReadEnabled;
}

void TabulonApi_CacheSettings::SetRunCachingEnabled(bool runCachingEnabled) {
  if (!runCachingEnabled) State().runs.Clear();
  State().runCaching = runCachingEnabled;
}

void TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier dataTypeSpecifier) {
  State().dataTypeForReading = dataTypeSpecifier;
}

}  // namespace SumaraApi
