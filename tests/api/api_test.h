#pragma once

#include <gtest/gtest.h>

#include <string>

#include "api/cache_settings.h"
#include "api/run.h"
#include "api/search_settings.h"
#include "api/tabulon_api.h"
#include "tests/api/sample_run.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace testing_support {

/// A test with a directory for runs, in a process whose cache and settings are as at load.
class ApiTest : public ::testing::Test {
 protected:
  ApiTest() { Reset(); }
  ~ApiTest() override { Reset(); }

  static void Reset() {
    using namespace SumaraApi;
    TabulonApi::ClearRuns();
    TabulonApi_CacheSettings::SetRunCachingEnabled(true);
    TabulonApi_CacheSettings::SetBufferedReadEnabled(true);
    TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsSerialisedType);
    TabulonApi_SearchSettings::SetCalculationTypeFilter(CalculationType::AllCalculationTypes);
    TabulonApi_SearchSettings::SetIncludeUnsupportedCalculations(true);
    TabulonApi_SearchSettings::SetCompletionStateFilter(CompletionState::AllCompletionStates);
    TabulonApi_SearchSettings::SetRunNameCaseSensitivity(CaseSensitivity::IgnoreCase);
  }

  SampleRun Sample(const std::string& name, const std::string& termination = "Run completed\n") {
    return {m_directory, name, termination};
  }
  SumaraApi::RunPtr Get(const std::string& name) {
    return SumaraApi::TabulonApi::GetRun(m_directory.Path(), name);
  }
  std::string Path(const std::string& name) const { return m_directory.Path(name); }

  TempDirectory m_directory;
};

}  // namespace testing_support
