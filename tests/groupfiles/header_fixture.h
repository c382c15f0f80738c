#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "groupfiles/header_reader.h"
#include "tests/groupfiles/plain_figures.h"
#include "tests/support/message_of.h"
#include "tests/support/run_files.h"
#include "tests/support/temp_directory.h"

namespace testing_support {

/// What a whole pass over a header gives.
struct ReadHeader {
  Sumara::HeaderTop top;
  std::vector<Sumara::AxisDescription> axes;
  std::vector<std::string> parameters;
  std::vector<PlainFigures<float>> statistics;
  Sumara::HeaderVariables variables;
};

inline constexpr std::uint64_t kAllBlocks = ~std::uint64_t{0};

/// Reads header texts in the order in which a group is loaded.
class HeaderFixture : public ::testing::Test {
 protected:
  ReadHeader Read(const std::string& text) {
    m_directory.Write("run.%01", text);
    Sumara::CHeaderReader reader(Path());
    reader.Start();
    ReadHeader header;
    header.top = reader.ReadTop();
    for (std::uint32_t i = 0; i < header.top.axisCount; ++i) {
      header.axes.push_back(reader.ReadAxis(header.top, i + 1));
    }
    header.parameters = reader.ReadNamedParameters();
    header.statistics =
        FiguresOf<float>(reader.ReadFigures(header.top.dimensions.front(), kAllBlocks));
    header.variables = reader.ReadVariables();
    return header;
  }
  ReadHeader Read(const HeaderText& text) { return Read(text.Text()); }

  std::string FailureOf(const std::string& text) {
    return MessageOf([&] { Read(text); });
  }
  std::string FailureOf(const HeaderText& text) { return FailureOf(text.Text()); }

  /// The whole text of a failure of the model.
  std::string Model(const std::string& words) const {
    return "Sumara Tables error: " + words + ".\nFurther information: File path: " + Path();
  }
  /// The same, with the failed search for a label as its cause.
  std::string Model(const std::string& words, const std::string& label) const {
    return Model(words) + "\nInner exception: " + NotFound(label);
  }
  std::string NotFound(const std::string& label) const {
    return "IO error 5018: Label was not found - end of file encountered.\nFurther information: "
           "label sought = " +
           label + "; path: " + Path();
  }
  /// A search that finds its stream with the fail flag set, as an empty line leaves it.
  std::string NotFoundOnBadStream(const std::string& label) const {
    return NotFound(label) + "\nInner exception: IO error 5007: Stream has error flag(s)";
  }
  /// A line of white space only, come to in a search.
  std::string EmptyLine(const std::string& label) const {
    return "IO error 5009: Failed to read data.\nFurther information: label sought = " + label +
           "; current label = ; path: " + Path();
  }
  std::string OpenQuote(const std::string& token) const {
    return "IO error 5021: Closing delimeter for string being parsed was not found.\n"
           "Further information: string = " +
           token + "; delimeter = '";
  }

  std::string Path() const { return m_directory.Path("run.%01"); }

  TempDirectory m_directory;
};

}  // namespace testing_support
