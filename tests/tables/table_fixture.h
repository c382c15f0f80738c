#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tables/group_table.h"
#include "tests/support/run_files.h"
#include "tests/support/temp_directory.h"

namespace Tabulon {

using testing_support::Count;
using testing_support::HeaderText;
using testing_support::LinesOf;
using testing_support::TempDirectory;
using testing_support::WordsOf;

/// A group of one run, written by the test.
class TableTest : public testing::Test {
 protected:
  std::string HeaderPath() const { return m_directory.Path("run.%01"); }
  std::string DataPath() const { return m_directory.Path("run.$01"); }

  /// As `OneAxis`, with so many variables and points.
  static HeaderText WideHeader(std::size_t variables, std::size_t points) {
    std::string names;
    std::string quantities;
    for (std::size_t v = 0; v < variables; ++v) {
      names += " v" + std::to_string(v);
      quantities += " FL";
    }
    return HeaderText::OneAxis()
        .With("DIMENS", std::to_string(variables) + "\t" + std::to_string(points))
        .With("VARIAB", names)
        .With("VARUNIT", quantities);
  }

  void WriteHeader(const HeaderText& header) { m_directory.Write("run.%01", header.Text()); }
  template <class T>
  void WriteWords(const std::vector<T>& words) {
    m_directory.Write("run.$01", std::string(reinterpret_cast<const char*>(words.data()),
                                             words.size() * sizeof(T)));
  }
  void WriteText(const std::string& text) { m_directory.Write("run.$01", text); }

  GroupTable Table() const { return GroupTable::Open(HeaderPath()); }

  template <class T>
  static std::vector<T> ValuesOf(const GroupTable& table, const Selection& selection) {
    const Shape shape = table.ShapeOf(selection);
    std::vector<T> values(shape.columns * shape.rows);
    table.Read<T>(selection, values);
    return values;
  }

  /// The failure of `call`.
  template <class Call>
  static TableError FailureOf(const Call& call) {
    try {
      call();
    } catch (const TableError& failure) {
      return failure;
    }
    ADD_FAILURE() << "no failure";
    return {"", 0, ""};
  }

  TempDirectory m_directory;
};

}  // namespace Tabulon
