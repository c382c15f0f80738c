#pragma once

#include "api/types.h"

namespace SumaraApi {

/// How much the library keeps in memory and in which type it reads. Process-wide; objects hold
/// nothing.
class TabulonApi_CacheSettings {
 public:
  /// Whether the raw data of a binary group is kept between requests for its variables; default
  /// true.
  ///
  /// Runs in the run cache lose their buffers and their buffering at each call, whatever the value;
  /// it counts for runs made from now on. Runs held outside the cache and text groups are not
  /// affected.
  static void SetBufferedReadEnabled(bool bufferedReadEnabled);

  /// Whether runs are cached; default true. Switching off empties the cache.
  static void SetRunCachingEnabled(bool runCachingEnabled);

  /// The type in which groups are read that are not cached yet; default `ReadAsSerialisedType`. All
  /// variables of a group share the type of its first load.
  static void SetDataTypeForReading(DataTypeSpecifier dataTypeSpecifier);
};

}  // namespace SumaraApi
