// Process-wide settings; their operations need no object.

namespace SumaraApi {

class TabulonApi_CacheSettings {
 public:
  %feature("docstring") TabulonApi_CacheSettings
"How much the library keeps in memory, and in which type it reads.";
  TabulonApi_CacheSettings();
  ~TabulonApi_CacheSettings();

  %operation(set_buffered_read_enabled, SetBufferedReadEnabled,
"Whether the raw data of a group is kept between requests for its variables; default True.

Binary groups only. Turning it off removes all buffers there are.")
  static void SetBufferedReadEnabled(bool bufferedReadEnabled);

  %operation(set_run_caching_enabled, SetRunCachingEnabled,
"Whether runs that were asked for are cached; default True. Turning it off releases cached runs.")
  static void SetRunCachingEnabled(bool runCachingEnabled);

  %operation(set_data_type_for_reading, SetDataTypeForReading,
"The type in which data is read: a DataTypeSpecifier.

Data cached already is not affected: the first variable read of a group fixes the type of all.")
  static void SetDataTypeForReading(DataTypeSpecifier dataTypeSpecifier);
};

class TabulonApi_SearchSettings {
 public:
  %feature("docstring") TabulonApi_SearchSettings
"Filters of the requests for several runs. They do not apply to TabulonApi_get_run.";
  TabulonApi_SearchSettings();
  ~TabulonApi_SearchSettings();

  %operation(set_calculation_type_filter, SetCalculationTypeFilter,
"Which calculations are found: a CalculationType, a category or a single type. Default: all.")
  static void SetCalculationTypeFilter(CalculationType calculationTypeFilter);

  %operation(set_include_unsupported_calculations, SetIncludeUnsupportedCalculations,
"Whether runs of unsupported calculations are found; default True. Excluding them costs time.")
  static void SetIncludeUnsupportedCalculations(bool includeUnsupportedCalculations);

  %operation(set_completion_state_filter, SetCompletionStateFilter,
"Which runs are found by how they ended: a CompletionState. Default: all.")
  static void SetCompletionStateFilter(CompletionState completionStateFilter);

  %operation(set_run_name_case_sensitivity, SetRunNameCaseSensitivity,
"How run names are compared: a CaseSensitivity. Default: case is ignored.")
  static void SetRunNameCaseSensitivity(CaseSensitivity runNameCaseSensitivity);
};

}  // namespace SumaraApi
