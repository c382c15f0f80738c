#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "model/control.h"
#include "model/group1d.h"
#include "model/group2d.h"
#include "tests/support/message_of.h"
#include "tests/support/run_files.h"
#include "tests/support/temp_directory.h"

namespace testing_support {

/// A statistics block of two variables, told apart by its mean.
inline std::initializer_list<std::string> StatisticsBlock() {
  static const std::initializer_list<std::string> kLines = {
      "ULOADS   9.0000000E+00   1.5000000E+00",
      "  -9.0000000E+00   2.5000000E+00",
      "   3.0000000E+00   7.0000000E+00",
      "   4.0000000E+00  -7.0000000E+00",
      "MAXTIME 12 4",
      "MINTIME 0 2",
      "MEAN   1.2500000E+00  -2.5000000E-01"};
  return kLines;
}

/// A directory with group files, and a registry.
class RunFixture : public ::testing::Test {
 protected:
  using GroupPtr = Sumara::CControl::GroupPtr;
  using Names = std::vector<std::string>;
  using Numbers = std::vector<std::size_t>;

  void WriteHeader(const HeaderText& text) { m_directory.Write("run.%01", text.Text()); }
  void WriteHeader(const std::string& text) { m_directory.Write("run.%01", text); }
  /// Words 0, 1, 2 and so on.
  void WriteWords(std::size_t count) {
    m_directory.WriteWords<float>("run.$01", WordsOf<float>(Count(count)));
  }
  void WriteOneAxis() {
    WriteHeader(HeaderText::OneAxis());
    WriteWords(6);
  }
  void WriteTwoAxes() {
    WriteHeader(HeaderText::TwoAxes());
    WriteWords(24);
  }

  GroupPtr Get(Sumara::PreviewMode mode = Sumara::PreviewMode::kFull,
               std::uint32_t targetType = 0) {
    return m_control.GetGroup(Header(), mode, targetType);
  }
  GroupPtr Load(const Names& names, std::uint32_t targetType = 0) {
    return m_control.GetGroup(Header(), names, targetType);
  }
  GroupPtr LoadNumbers(const Numbers& numbers, const Numbers& secondary) {
    return m_control.GetGroup(Header(), numbers, secondary, 0);
  }
  GroupPtr Cached(Sumara::PreviewMode mode) const {
    GroupPtr group;
    m_control.GetCachedGroup(group, Header(), mode);
    return group;
  }

  template <class T = float>
  static std::vector<T> DataOf(const GroupPtr& group, const std::string& name) {
    const auto series = std::dynamic_pointer_cast<Sumara::CSeries1D<T>>(group->GetSeries(name));
    return series != nullptr ? series->GetData() : std::vector<T>{T(-1)};
  }
  template <class T = float>
  static std::vector<T> DataOf(const GroupPtr& group, const std::string& name,
                               std::size_t secondary) {
    const auto series = std::dynamic_pointer_cast<Sumara::CSeries2D<T>>(group->GetSeries(name));
    return series != nullptr ? series->GetVector(secondary) : std::vector<T>{T(-1)};
  }
  template <class T = float>
  static Sumara::GroupStatistics<T>& StatisticsOf(const GroupPtr& group) {
    return dynamic_cast<Sumara::CGroupBase<T>&>(*group).Statistics();
  }

  std::string Header() const { return m_directory.Path("run.%01"); }
  std::string Data() const { return m_directory.Path("run.$01"); }

  /// A failure of the model with the path of the header.
  std::string Failure(const std::string& words) const {
    return "Sumara Tables error: " + words + ".\nFurther information: File path: " + Header();
  }
  /// A failure of the model with the context of the group.
  std::string GroupFailure(const std::string& words,
                           const std::string& name = "Tower loads") const {
    return "Sumara Tables error: " + words +
           ".\nFurther information: File path: " + m_directory.Path(name);
  }

  TempDirectory m_directory;
  Sumara::CControl m_control;
};

}  // namespace testing_support
