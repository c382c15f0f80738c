#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "groupfiles/group_data_reader.h"
#include "tests/support/message_of.h"
#include "tests/support/run_files.h"
#include "tests/support/temp_directory.h"
#include "tests/support/type_pairs.h"

namespace testing_support {

/// Keeps what a reader delivers.
template <class U>
class CollectingTarget final : public Sumara::IDataTarget<U> {
 public:
  std::vector<U>& Values(std::size_t variable, std::size_t secondaryIndex) override {
    return m_values[{variable, secondaryIndex}];
  }
  void Filled(std::size_t variable, std::size_t secondaryIndex) override {
    filled.emplace_back(variable, secondaryIndex);
  }
  std::string SeriesContext(std::size_t variable) const override { return "series " + std::to_string(variable); }
  std::string GroupContext() const override { return "the group"; }

  std::vector<double> Of(std::size_t variable, std::size_t secondaryIndex = 0) const {
    const auto found = m_values.find({variable, secondaryIndex});
    if (found == m_values.end()) return {-1};
    return {found->second.begin(), found->second.end()};
  }

  std::vector<std::pair<std::size_t, std::size_t>> filled;

 private:
  std::map<std::pair<std::size_t, std::size_t>, std::vector<U>> m_values;
};

/// A data file and its reader.
template <class Pair>
class DataFixture : public ::testing::Test {
 protected:
  using Stored = typename Pair::Stored;
  using Target = typename Pair::Target;
  using Dimensions = std::vector<std::uint64_t>;

  void Open(const Dimensions& dimensions, bool binary, std::uint64_t headerRecords = 0) {
    m_layout = Sumara::DataLayout::Of(dimensions, headerRecords);
    m_file = Sumara::MakeGroupDataReader<Target>(Sumara::kDataTypeCode<Stored>, Path(), binary, dimensions);
  }

  std::uint64_t Read(const Sumara::DataRequest& request) {
    m_target = {};
    return dynamic_cast<Sumara::IGroupDataReader<Target>&>(*m_file).Read(m_layout, request, m_target);
  }
  std::string FailureOf(const Sumara::DataRequest& request) {
    return MessageOf([&] { Read(request); });
  }

  /// Everything that the layout names, from `points` points.
  Sumara::DataRequest All(std::uint64_t points, bool keepBuffer = true) const {
    Sumara::DataRequest request;
    request.variables.resize(m_layout.variables);
    request.secondaryIndices.resize(m_layout.secondary);
    std::iota(request.variables.begin(), request.variables.end(), std::size_t{0});
    std::iota(request.secondaryIndices.begin(), request.secondaryIndices.end(), std::size_t{0});
    request.points = points;
    request.keepBuffer = keepBuffer;
    return request;
  }

  /// What stands at a variable and a secondary index if the file counts 0, 1, 2 and so on.
  std::vector<double> Counted(std::size_t variable, std::size_t secondary, std::size_t points) const {
    std::vector<double> values;
    for (std::size_t p = 0; p < points; ++p) {
      values.push_back(static_cast<double>(p * m_layout.Stride() + secondary * m_layout.variables + variable));
    }
    return values;
  }

  void ExpectAllCounted(std::size_t points) const {
    for (std::size_t variable = 0; variable < m_layout.variables; ++variable) {
      for (std::size_t secondary = 0; secondary < m_layout.secondary; ++secondary) {
        EXPECT_EQ(m_target.Of(variable, secondary), Counted(variable, secondary, points));
      }
    }
  }

  std::string Path() const { return m_directory.Path("run.$01"); }

  TempDirectory m_directory;
  Sumara::DataLayout m_layout;
  std::unique_ptr<CIOBase> m_file;
  CollectingTarget<Target> m_target;
};

}  // namespace testing_support
