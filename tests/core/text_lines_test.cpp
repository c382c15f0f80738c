#include <gtest/gtest.h>

#include "core/exceptions.h"
#include "core/reader.h"
#include "tests/support/element_types.h"
#include "tests/support/message_of.h"
#include "tests/support/stream_state.h"
#include "tests/support/temp_directory.h"

namespace {

using testing_support::MessageOf;
using testing_support::TempDirectory;
using Dimensions = std::vector<std::uint64_t>;

/// A reader of text data, prepared for a file of given bytes and dimensions.
class TextLinesTest : public ::testing::Test {
 protected:
  using Reader = CReader<float, double>;

  void Prepare(std::string_view bytes, const Dimensions& dimensions) {
    m_path = m_directory.Write("data", bytes);
    m_reader = std::make_unique<Reader>(m_path, 1);
    m_reader->SetDimensions(dimensions);
    m_reader->Open();
    m_reader->Prepare();
  }

  std::string Line(std::uint64_t line) { return std::string(m_reader->LineAt(line)); }

  std::vector<double> Values(std::uint64_t line) {
    std::vector<double> values;
    m_reader->ReadLineValues(line, values);
    return values;
  }

  std::string Failure(std::int32_t code, std::uint64_t line, const std::string& tail = {},
                      const std::string& inner = {}) const {
    return CIOException(code, "line number = " + std::to_string(line) + "; path: " + m_path + tail,
                        inner)
        .what();
  }

  std::string PastTheEnd() const { return testing_support::PastEndOfFile(m_path); }

  TempDirectory m_directory;
  std::string m_path;
  std::unique_ptr<Reader> m_reader;
};

TEST_F(TextLinesTest, EqualLinesAreUniform) {
  Prepare("1 2\n3 4\n5 6\n", {2, 3});
  EXPECT_TRUE(m_reader->IsUniform());
  EXPECT_EQ(m_reader->GetLineLength(), 4u);
  EXPECT_TRUE(m_reader->IsOpen());
}

TEST_F(TextLinesTest, LineLengthIncludesTheCarriageReturn) {
  Prepare("1 2\r\n3 4\r\n", {2, 2});
  EXPECT_TRUE(m_reader->IsUniform());
  EXPECT_EQ(m_reader->GetLineLength(), 5u);
  EXPECT_EQ(Line(1), "3 4");
}

TEST_F(TextLinesTest, ShorterLineIsNotUniformAndReadsAll) {
  Prepare("10 20\n3 4\n50 60\n", {2, 3});
  EXPECT_FALSE(m_reader->IsUniform());
  EXPECT_EQ(Values(2), (std::vector<double>{50, 60}));
  EXPECT_EQ(Values(0), (std::vector<double>{10, 20}));
  EXPECT_EQ(Values(1), (std::vector<double>{3, 4}));
}

TEST_F(TextLinesTest, UniformityNeedsTheDimensionsOfTheFile) {
  const std::string_view sixLines = "1\n2\n3\n4\n5\n6\n";
  const std::vector<std::pair<Dimensions, bool>> table = {
      {{1, 6}, true},
      {{6}, true},
      {{1, 5}, false},
      {{2, 2, 3}, true},
      {{2, 3, 2}, true},
      {{1, 2, 3}, false},
      {{1, 2, 6}, true},
      {{1, 0}, false},
      {{2, 6, 0}, false},
      {{2, 0, 6}, false},
      {{2, 4, 3}, false},
      {{2, ~std::uint64_t{0}, 6}, false},
      {{1, ~std::uint64_t{0}}, false},
  };
  for (const auto& [dimensions, uniform] : table) {
    Prepare(sixLines, dimensions);
    EXPECT_EQ(m_reader->IsUniform(), uniform) << dimensions.size() << ' ' << dimensions.back();
  }
}

TEST_F(TextLinesTest, MissingDimensionsRaise5013) {
  const std::string path = m_directory.Path("data");
  EXPECT_EQ(MessageOf([&] { Prepare("1\n", {}); }),
            "IO error 5013: Failed to check ASCII data uniformity due to unpopulated DIMENS "
            "std::vector.\nFurther information: Attempting to assess uniformity of ASCII file: " +
                path);
}

TEST_F(TextLinesTest, EmptyFileTakesNoUniformityTest) {
  Prepare("", {});
  EXPECT_FALSE(m_reader->IsUniform());
  EXPECT_EQ(m_reader->TotalWordCount(), 0u);
}

TEST_F(TextLinesTest, HeaderReaderTakesNoUniformityTest) {
  CReader<float, float> reader(m_directory.Write("header", "FILE x\n"), 0);
  reader.Open();
  reader.Prepare();
  EXPECT_FALSE(reader.IsUniform());
  EXPECT_TRUE(reader.IsOpen());
}

TEST_F(TextLinesTest, FileOfOneEmptyLineRaises5020) {
  const std::string text = MessageOf([&] { Prepare("\n", {1, 1}); });
  EXPECT_EQ(text, CIOException(5020, m_path, PastTheEnd()).what());
}

TEST_F(TextLinesTest, FirstLineWithoutLineEndIsMeasured) {
  Prepare("1 2", {2, 1});
  EXPECT_EQ(m_reader->GetLineLength(), 4u);
  EXPECT_FALSE(m_reader->IsUniform());
  EXPECT_EQ(Values(0), (std::vector<double>{1, 2}));
}

TEST_F(TextLinesTest, UniformLinesAreReadInAnyOrder) {
  std::string bytes;
  for (int i = 0; i < 100'000; ++i) bytes += std::to_string(100'000 + i) + '\n';
  Prepare(bytes, {1, 100'000});
  ASSERT_TRUE(m_reader->IsUniform());
  for (const std::uint64_t line : {99'999u, 0u, 50'000u, 50'001u, 3u, 3u}) {
    EXPECT_EQ(Line(line), std::to_string(100'000 + line));
  }
}

TEST_F(TextLinesTest, OtherLinesAreReadInAnyOrder) {
  std::string bytes;
  for (int i = 0; i < 100'000; ++i) bytes += std::to_string(i) + '\n';
  Prepare(bytes, {1, 100'000});
  ASSERT_FALSE(m_reader->IsUniform());
  for (const std::uint64_t line : {99'999u, 0u, 50'000u, 50'001u, 3u, 3u}) {
    EXPECT_EQ(Line(line), std::to_string(line));
  }
}

TEST_F(TextLinesTest, SizeThatOnlyLooksUniformIsReadByCounting) {
  Prepare("1 2\n10 20\n3\n4 5\n", {2, 4});
  ASSERT_TRUE(m_reader->IsUniform());
  EXPECT_EQ(Values(0), (std::vector<double>{1, 2}));
  EXPECT_EQ(Values(1), (std::vector<double>{10, 20}));
  EXPECT_EQ(Values(2), (std::vector<double>{3}));  // its place by length is amid a line
  EXPECT_EQ(Values(3), (std::vector<double>{4, 5}));
  EXPECT_EQ(Values(1), (std::vector<double>{10, 20}));
  EXPECT_FALSE(m_reader->IsUniform());
}

TEST_F(TextLinesTest, ClosedReaderRaises5004) {
  Prepare("1\n2\n", {1, 2});
  m_reader->Close();
  EXPECT_EQ(MessageOf([&] { Line(1); }), Failure(5004, 1));
}

TEST_F(TextLinesTest, FlaggedStreamRaises5007) {
  Prepare("1\n22", {1, 2});
  EXPECT_EQ(Line(1), "22");
  EXPECT_EQ(MessageOf([&] { Line(1); }), Failure(5007, 1));
}

TEST_F(TextLinesTest, CallersWordsStandLast) {
  Prepare("1\n", {1, 1});
  m_reader->Close();
  EXPECT_EQ(MessageOf([&] { m_reader->LineAt(3, "Point index = 3"); }),
            Failure(5004, 3, "; Point index = 3"));
}

TEST_F(TextLinesTest, CountingPastTheEndRaises5008) {
  Prepare("1\n22\n", {1, 2});
  EXPECT_EQ(MessageOf([&] { Line(4); }), Failure(5008, 4));
  Prepare("1\n22\n", {1, 2});
  EXPECT_EQ(MessageOf([&] { m_reader->SeekLine(4); }), Failure(5008, 4));
}

TEST_F(TextLinesTest, ReadingBehindTheLastLineRaises5009) {
  Prepare("1\n22\n", {1, 2});
  EXPECT_EQ(MessageOf([&] { Line(2); }), Failure(5009, 2, "", PastTheEnd()));
  Prepare("1\n2\n", {1, 2});
  EXPECT_EQ(MessageOf([&] { Line(2); }), Failure(5009, 2, "", PastTheEnd()));
  Prepare("1\n2\n", {1, 2});
  EXPECT_EQ(MessageOf([&] { Line(9); }), Failure(5009, 9, "", PastTheEnd()));
  EXPECT_TRUE(m_reader->IsUniform());
}

TEST_F(TextLinesTest, ValuesStopAtTheFirstThatFails) {
  Prepare("1 2 x 4\n", {4, 1});
  EXPECT_EQ(Values(0), (std::vector<double>{1, 2}));
}

TEST_F(TextLinesTest, ValuesAreAppended) {
  Prepare("1 2\n3 4\n", {2, 2});
  std::vector<double> values{9};
  m_reader->ReadLineValues(0, values);
  m_reader->ReadLineValues(1, values);
  EXPECT_EQ(values, (std::vector<double>{9, 1, 2, 3, 4}));
}

TEST_F(TextLinesTest, EmptyLineRaises5015) {
  const std::string text = "IO error 5015: String to populate from was empty.";
  Prepare("1\n\r\n3\n", {1, 3});
  EXPECT_EQ(MessageOf([&] { Values(1); }), text);
  Prepare("1\n\n\n3\n", {1, 3});
  EXPECT_EQ(MessageOf([&] { Values(1); }), text);
}

TEST_F(TextLinesTest, OneEmptyLineIsSkippedForFree) {
  Prepare("10\n\n3\n", {1, 2});
  EXPECT_EQ(Values(1), (std::vector<double>{3}));
}

TEST_F(TextLinesTest, ReopenOfAnOpenTextFileDoesNothing) {
  Prepare("1\n2\n", {1, 2});
  Line(1);
  EXPECT_FALSE(m_reader->Reopen(m_path));
  EXPECT_EQ(m_reader->GetLineNumber(), 2u);
  m_reader->Close();
  EXPECT_TRUE(m_reader->Reopen(m_path));
  EXPECT_EQ(Line(0), "1");
}

template <class T>
class TextValuesTest : public ::testing::Test {};
TYPED_TEST_SUITE(TextValuesTest, testing_support::ElementTypes);

TYPED_TEST(TextValuesTest, LinesAreReadAsTheTargetType) {
  const TempDirectory directory;
  CReader<float, TypeParam> reader(directory.Write("data", "1.5 2\n"), 1);
  reader.SetDimensions({2, 1});
  reader.Open();
  reader.Prepare();
  std::vector<TypeParam> values;
  reader.ReadLineValues(0, values);
  if (std::is_floating_point_v<TypeParam>) {
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(static_cast<double>(values[0]), 1.5);
  } else {
    ASSERT_EQ(values.size(), 1u);  // ".5" is no integer
    EXPECT_EQ(static_cast<double>(values[0]), 1);
  }
}

}  // namespace
