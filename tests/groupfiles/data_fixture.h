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
class CollectingTarget : public Sumara::IDataTarget<U> {
 public:
  using Place = std::pair<std::size_t, std::size_t>;

  std::vector<U>& Values(std::size_t variable, std::size_t secondaryIndex) override {
    return m_values[{variable, secondaryIndex}];
  }
  void Filled(std::size_t variable, std::size_t secondaryIndex) override {
    filled.emplace_back(variable, secondaryIndex);
  }
  std::string SeriesContext(std::size_t variable) const override {
    return "series " + std::to_string(variable);
  }
  std::string GroupContext() const override { return "the group"; }

  /// What stands there now; {-1} if nothing was ever asked for.
  std::vector<double> Of(std::size_t variable, std::size_t secondaryIndex = 0) const {
    const auto found = m_values.find({variable, secondaryIndex});
    if (found == m_values.end()) return {-1};
    return {found->second.begin(), found->second.end()};
  }

  std::vector<Place> filled;

 private:
  std::map<Place, std::vector<U>> m_values;
};

/// A reader of some stored and target type, with both hidden.
class IAnyDataReader {
 public:
  virtual ~IAnyDataReader() = default;
  virtual std::size_t WordSize() const = 0;
  /// The words of these values as bytes.
  virtual std::string Bytes(const std::vector<double>& values) const = 0;
  virtual void Open(const std::string& path, bool binary,
                    const std::vector<std::uint64_t>& dimensions) = 0;
  virtual std::uint64_t Read(const Sumara::DataLayout& layout,
                             const Sumara::DataRequest& request) = 0;
  virtual CIOBase& File() = 0;
  virtual std::vector<double> Of(std::size_t variable, std::size_t secondaryIndex) const = 0;
  virtual std::vector<std::pair<std::size_t, std::size_t>> Filled() const = 0;
};

template <class T, class U>
class AnyDataReader final : public IAnyDataReader {
 public:
  std::size_t WordSize() const override { return sizeof(T); }
  std::string Bytes(const std::vector<double>& values) const override {
    const std::vector<T> words = WordsOf<T>(values);
    return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(T)};
  }
  void Open(const std::string& path, bool binary,
            const std::vector<std::uint64_t>& dimensions) override {
    m_file = Sumara::MakeGroupDataReader<U>(Sumara::kDataTypeCode<T>, path, binary, dimensions);
  }
  std::uint64_t Read(const Sumara::DataLayout& layout,
                     const Sumara::DataRequest& request) override {
    m_target = {};
    return dynamic_cast<Sumara::IGroupDataReader<U>&>(*m_file).Read(layout, request, m_target);
  }
  CIOBase& File() override { return *m_file; }
  std::vector<double> Of(std::size_t variable, std::size_t secondaryIndex) const override {
    return m_target.Of(variable, secondaryIndex);
  }
  std::vector<std::pair<std::size_t, std::size_t>> Filled() const override {
    return m_target.filled;
  }

 private:
  std::unique_ptr<CIOBase> m_file;
  CollectingTarget<U> m_target;
};

/// The 25 readers, by the codes of their stored and their target type.
struct ReaderCase {
  std::uint32_t stored;
  std::uint32_t target;
  std::unique_ptr<IAnyDataReader> (*make)();
};

template <class T, class U>
std::unique_ptr<IAnyDataReader> MakeAnyDataReader() {
  return std::make_unique<AnyDataReader<T, U>>();
}

template <class... Pairs>
std::vector<ReaderCase> ReaderCasesOf(::testing::Types<Pairs...>) {
  return {{Sumara::kDataTypeCode<typename Pairs::Stored>,
           Sumara::kDataTypeCode<typename Pairs::Target>,
           &MakeAnyDataReader<typename Pairs::Stored, typename Pairs::Target>}...};
}
inline std::vector<ReaderCase> AllReaders() { return ReaderCasesOf(ElementTypePairs()); }

inline std::string ReaderName(const ::testing::TestParamInfo<ReaderCase>& info) {
  static constexpr const char* kNames[] = {"", "Float", "Double", "Short", "Int", "Long"};
  return std::string(kNames[info.param.stored]) + "To" + kNames[info.param.target];
}

/// A data file and its reader, for each of the 25.
class DataFixture : public ::testing::TestWithParam<ReaderCase> {
 protected:
  using Places = std::vector<std::pair<std::size_t, std::size_t>>;

  void Write(const std::string& bytes) const { m_directory.Write("run.$01", bytes); }

  void Open(const std::vector<std::uint64_t>& dimensions, bool binary,
            std::uint64_t headerRecords = 0) {
    m_layout = Sumara::DataLayout::Of(dimensions, headerRecords);
    m_reader->Open(Path(), binary, dimensions);
  }

  std::uint64_t Read(const Sumara::DataRequest& request) {
    return m_reader->Read(m_layout, request);
  }
  std::string FailureOf(const Sumara::DataRequest& request) {
    return MessageOf([&] { Read(request); });
  }
  std::vector<double> Of(std::size_t variable, std::size_t secondaryIndex = 0) const {
    return m_reader->Of(variable, secondaryIndex);
  }
  Places Filled() const { return m_reader->Filled(); }

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
  std::vector<double> Counted(std::size_t variable, std::size_t secondary,
                              std::size_t points) const {
    std::vector<double> values;
    for (std::size_t p = 0; p < points; ++p) {
      values.push_back(
          static_cast<double>(p * m_layout.Stride() + secondary * m_layout.variables + variable));
    }
    return values;
  }

  void ExpectAllCounted(std::size_t points) const {
    for (std::size_t variable = 0; variable < m_layout.variables; ++variable) {
      for (std::size_t secondary = 0; secondary < m_layout.secondary; ++secondary) {
        EXPECT_EQ(Of(variable, secondary), Counted(variable, secondary, points));
      }
    }
  }

  void ExpectClosed() { EXPECT_FALSE(m_reader->File().IsOpen()); }

  std::string Path() const { return m_directory.Path("run.$01"); }
  std::string Missing() const {
    return "IO error 5000: The file does not exist.\nFurther information: " + Path();
  }

  TempDirectory m_directory;
  Sumara::DataLayout m_layout;
  std::unique_ptr<IAnyDataReader> m_reader = GetParam().make();
};

}  // namespace testing_support
