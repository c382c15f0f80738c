#include "api/cache_settings.h"

#include <filesystem>

#include "api/group.h"
#include "api/variable1d.h"
#include "tests/api/api_test.h"

namespace {

namespace fs = std::filesystem;
using namespace SumaraApi;
using testing_support::DataBytes;
using testing_support::MessageOf;
using testing_support::SampleGroup;
using testing_support::SampleRun;
using Floats = std::vector<float>;

class CacheSettingsTest : public testing_support::ApiTest {
 protected:
  CacheSettingsTest() : m_sample(Sample("run1")) { m_sample.Group("01", Group()); }

  /// Three variables, so that two of them leave the group's data incomplete.
  static SampleGroup Group(double shift = 0.0) {
    SampleGroup group;
    group.variables = {{"a", "L"}, {"b", "L"}, {"c", "L"}};
    group.values.clear();
    for (int i = 0; i < 12; ++i) group.values.push_back(i + shift);
    return group;
  }
  /// Reads `a`, rewrites the data file and reads `b`.
  static Floats SecondVariable(const SampleRun& sample, const RunPtr& run) {
    EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (Floats{0, 3, 6, 9}));
    sample.Write(".$01", DataBytes(Group(100)));
    return run->GetVariable1D<float>("b")->GetData();
  }
  const Floats m_fromBuffer{1, 4, 7, 10};
  const Floats m_fromFile{101, 104, 107, 110};

  SampleRun m_sample;
};

// Buffered reading.

TEST_F(CacheSettingsTest, BufferedRunReadsTheFileOnce) {
  EXPECT_EQ(SecondVariable(m_sample, Get("run1")), m_fromBuffer);
}

TEST_F(CacheSettingsTest, UnbufferedRunReadsTheFileForEachVariable) {
  TabulonApi_CacheSettings::SetBufferedReadEnabled(false);
  EXPECT_EQ(SecondVariable(m_sample, Get("run1")), m_fromFile);
}

TEST_F(CacheSettingsTest, EachCallTakesTheBuffersOfCachedRuns) {
  for (const bool enabled : {false, true}) {
    Reset();
    m_sample.Group("01", Group());
    const RunPtr run = Get("run1");
    EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (Floats{0, 3, 6, 9}));
    m_sample.Write(".$01", DataBytes(Group(100)));
    TabulonApi_CacheSettings::SetBufferedReadEnabled(enabled);
    EXPECT_EQ(run->GetVariable1D<float>("b")->GetData(), m_fromFile);
    EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (Floats{0, 3, 6, 9}));  // loaded stays
  }
}

TEST_F(CacheSettingsTest, CachedRunDoesNotGetItsBufferingBack) {
  TabulonApi_CacheSettings::SetBufferedReadEnabled(false);
  const RunPtr run = Get("run1");
  TabulonApi_CacheSettings::SetBufferedReadEnabled(true);
  EXPECT_EQ(Get("run1"), run);
  EXPECT_EQ(SecondVariable(m_sample, run), m_fromFile);
  m_sample.Group("01", Group());
  TabulonApi::ClearRuns();
  EXPECT_EQ(SecondVariable(m_sample, Get("run1")), m_fromBuffer);
}

TEST_F(CacheSettingsTest, RunsOutsideTheCacheKeepTheirBuffers) {
  const RunPtr run = Get("run1");
  run->GetVariable1D<float>("a")->GetData();
  TabulonApi::ClearRuns();
  m_sample.Write(".$01", DataBytes(Group(100)));
  TabulonApi_CacheSettings::SetBufferedReadEnabled(false);
  EXPECT_EQ(run->GetVariable1D<float>("b")->GetData(), m_fromBuffer);
}

TEST_F(CacheSettingsTest, LastVariableOfAGroupFreesItsBuffer) {
  const RunPtr run = Get("run1");
  for (const char* name : {"a", "b", "c"}) run->GetVariable1D<float>(name)->GetData();
  m_sample.Write(".$01", DataBytes(Group(100)));
  EXPECT_TRUE(run->UnloadVariable("b"));
  EXPECT_EQ(run->GetVariable1D<float>("b")->GetData(), m_fromFile);
}

TEST_F(CacheSettingsTest, TextGroupsAreReadWithEitherSetting) {
  SampleGroup group = Group();
  group.binary = false;
  m_sample.Group("01", group);
  for (const bool enabled : {true, false}) {
    TabulonApi::ClearRuns();
    TabulonApi_CacheSettings::SetBufferedReadEnabled(enabled);
    const RunPtr run = Get("run1");
    EXPECT_EQ(run->GetVariable1D<float>("a")->GetData(), (Floats{0, 3, 6, 9}));
    EXPECT_EQ(run->GetVariable1D<float>("b")->GetData(), m_fromBuffer);
    EXPECT_EQ(run->GetVariable1D<float>("c")->GetData(), (Floats{2, 5, 8, 11}));
  }
}

// Run caching.

TEST_F(CacheSettingsTest, WithoutRunCachingEachRequestGivesANewRun) {
  const RunPtr cached = Get("run1");
  TabulonApi_CacheSettings::SetRunCachingEnabled(false);
  TabulonApi_CacheSettings::SetRunCachingEnabled(false);
  const RunPtr first = Get("run1");
  EXPECT_NE(first, cached);
  EXPECT_NE(Get("run1"), first);
  fs::remove(m_sample.Path(".$TE"));
  EXPECT_EQ(MessageOf([&] { Get("run1"); }),
            "Sumara Tables error: Run was not found - run termination file (.$TE) missing or "
            "invalid.\nFurther information: File path: " +
                Path("run1.$TE"));
}

TEST_F(CacheSettingsTest, RunCachingStartsAgainWithAnEmptyCache) {
  const RunPtr before = Get("run1");
  TabulonApi_CacheSettings::SetRunCachingEnabled(true);
  EXPECT_EQ(Get("run1"), before);
  TabulonApi_CacheSettings::SetRunCachingEnabled(false);
  TabulonApi_CacheSettings::SetRunCachingEnabled(true);
  const RunPtr after = Get("run1");
  EXPECT_NE(after, before);
  EXPECT_EQ(Get("run1"), after);
}

// The type for reading.

TEST_F(CacheSettingsTest, FloatsCanBeReadAsDoubles) {
  TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsFloat64);
  const auto variable = Get("run1")->GetVariable1D<double>("b");
  EXPECT_EQ(variable->GetData(), (std::vector<double>{1, 4, 7, 10}));
  EXPECT_EQ(variable->GetDataType(), VariableDataType::Float64);
}

TEST_F(CacheSettingsTest, DoublesAndIntegersCanBeReadAsFloats) {
  TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsFloat32);
  for (const char* format : {"R*8", "I*4", "I*2"}) {
    TabulonApi::ClearRuns();
    SampleGroup group = Group();
    group.format = format;
    m_sample.Group("01", group);
    const RunPtr run = Get("run1");
    EXPECT_EQ(run->GetVariable1D<float>("b")->GetData(), m_fromBuffer) << format;
    EXPECT_EQ(run->GetGroup("Rotor")->GetVariableDataType(), VariableDataType::Float32);
  }
}

TEST_F(CacheSettingsTest, IntegersAreIntegersByDefault) {
  SampleGroup group = Group();
  group.format = "I*4";
  m_sample.Group("01", group);
  EXPECT_EQ(Get("run1")->GetVariable("a")->GetDataType(), VariableDataType::Int32);
}

TEST_F(CacheSettingsTest, UnknownTypeReadsAsWritten) {
  TabulonApi_CacheSettings::SetDataTypeForReading(static_cast<DataTypeSpecifier>(7));
  EXPECT_EQ(Get("run1")->GetVariable1D<float>("b")->GetData(), m_fromBuffer);
  TabulonApi::ClearRuns();
  TabulonApi_CacheSettings::SetDataTypeForReading(static_cast<DataTypeSpecifier>(-1));
  EXPECT_EQ(Get("run1")->GetVariable("b")->GetDataType(), VariableDataType::Float32);
}

TEST_F(CacheSettingsTest, TypeOfAGroupIsThatOfItsFirstLoad) {
  const RunPtr run = Get("run1");
  const VariablePtr known = run->GetVariable("a");
  TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsFloat64);
  EXPECT_EQ(run->GetVariable("a"), known);
  const std::string refused =
      "Sumara Tables error: Target type for group cannot be changed when group has already been "
      "cached.\nFurther information: File path: " +
      Path("run1.%01");
  EXPECT_EQ(MessageOf([&] { run->GetVariable("b"); }), refused);
  EXPECT_EQ(MessageOf([&] { run->GetGroup("Rotor"); }), refused);
  EXPECT_FALSE(run->ContainsVariable1D("b"));
  TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsFloat32);
  EXPECT_EQ(run->GetVariable("b")->GetDataType(), VariableDataType::Float32);
  TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsFloat64);
  TabulonApi::ClearRuns();
  EXPECT_EQ(Get("run1")->GetVariable("b")->GetDataType(), VariableDataType::Float64);
}

TEST_F(CacheSettingsTest, StatisticsOfAGroupReadAsAnotherType) {
  SampleGroup group = Group();
  group.statistics = testing_support::StatisticsBlock(
      {"11 12 13", "1 2 3", "21 22 23", "4 5 6", "31 32 33", "7 8 9"}, "1 1 1", "0 0 0",
      "0.1 0.2 0.3");
  m_sample.Group("01", group);
  TabulonApi_CacheSettings::SetDataTypeForReading(DataTypeSpecifier::ReadAsFloat64);
  const auto variable = Get("run1")->GetVariable1D<double>("b");
  EXPECT_EQ(variable->GetMean(), 0.2);
  EXPECT_EQ(variable->GetMaximum(), 22.0);
  EXPECT_EQ(variable->GetData(), (std::vector<double>{1, 4, 7, 10}));
  EXPECT_EQ(variable->GetMinimum(), 5.0);
}

}  // namespace
