#include "core/exceptions.h"

#include <gtest/gtest.h>

#include "tests/core/error_table_texts.h"

namespace {

using Sumara::CException;
using testing_support::kIOTable;
using testing_support::kModelTable;

constexpr std::string_view kExtensionRule =
    " The file name extension must be of the form %n, where n is a positive integer with an upper "
    "limit of 18446744073709551615";

TEST(CIOExceptionTest, TextOfEveryCode) {
  for (const auto& [code, text] : kIOTable) {
    const std::string prefix = code > 4999 ? "IO error " : "";
    EXPECT_EQ(CIOException(code).ErrorText(),
              prefix + std::to_string(code) + ": " + std::string(text));
  }
}

TEST(CIOExceptionTest, UnknownCodesReadAsMissing) {
  for (const int code : {5029, 4999, 1, -2, 2147483647}) {
    EXPECT_EQ(CIOException(code).ErrorText(),
              "IO error " + std::to_string(code) + ": Error description missing");
  }
  EXPECT_EQ(CIOException(std::numeric_limits<std::int32_t>::min()).ErrorText(),
            "IO error -2147483648: Error description missing");
}

TEST(CIOExceptionTest, FurtherInformationFollowsTheFullStop) {
  const CIOException failure(5022, "File path: x");
  EXPECT_STREQ(failure.what(), "IO error 5022: File not found.\nFurther information: File path: x");
  EXPECT_EQ(failure.Text(), failure.what());
  EXPECT_EQ(failure.ErrorCode(), 5022);
}

TEST(CIOExceptionTest, InnerExceptionStandsLast) {
  EXPECT_STREQ(CIOException(5009, "here", "why.").what(),
               "IO error 5009: Failed to read data.\nFurther information: here\n"
               "Inner exception: why.");
  EXPECT_STREQ(CIOException(5009, "", "why").what(),
               "IO error 5009: Failed to read data.\nInner exception: why");
}

TEST(CIOExceptionTest, FullStopOnlyBehindTheWholeTableText) {
  const std::string text = CIOException(5028, "Directory: d").what();
  EXPECT_EQ(text,
            "IO error 5028: Failed to create directory - check permissions, and ensure path does "
            "not contain illegal characters\nIf using an absolute path, check the volume or drive "
            "mapping is valid.\nIf using a UNC path, ensure the server name is correct and the "
            "server is available.\nFurther information: Directory: d");
}

TEST(CExceptionTest, TextOfEveryCode) {
  ASSERT_EQ(kModelTable.size(), 182u);
  for (const auto& [code, text] : kModelTable) {
    const bool hasRule = code == 59 || code == 60 || code == 80;
    EXPECT_EQ(CException(code).ErrorText(), "Sumara Tables error: " + std::string(text) +
                                                std::string(hasRule ? kExtensionRule : ""));
  }
}

TEST(CExceptionTest, ExtensionRuleGetsTheFullStop) {
  EXPECT_STREQ(CException(80).what(),
               "Sumara Tables error: File extension invalid: The file name extension must be of "
               "the form %n, where n is a positive integer with an upper limit of "
               "18446744073709551615.");
}

TEST(CExceptionTest, UnknownCodesReadAsMissing) {
  EXPECT_STREQ(CException(181).what(), "Sumara Tables error 181: Error description missing.");
  EXPECT_STREQ(CException(-2).what(), "Sumara Tables error -2: Error description missing.");
  EXPECT_STREQ(CException(4998).what(), "Sumara Tables error 4998: Error description missing.");
}

TEST(CExceptionTest, CodesFrom4999ReadAsIOCodes) {
  EXPECT_STREQ(CException(4999).what(), "IO error 4999: Error description missing.");
  EXPECT_STREQ(CException(5008).what(), CIOException(5008).what());
  EXPECT_STREQ(CException(5029).what(), "IO error 5029: Error description missing.");
}

TEST(CExceptionTest, MessageAloneHasCodeZero) {
  const CException failure(std::string("Variable is empty"));
  EXPECT_STREQ(failure.what(), "Variable is empty.");
  EXPECT_EQ(failure.ErrorCode(), 0);
  EXPECT_EQ(failure.ErrorText(), "Sumara Tables error: Success");
}

TEST(CExceptionTest, MessageWithFullStopGetsNoSecond) {
  EXPECT_STREQ(CException(std::string("Done.")).what(), "Done.");
  EXPECT_STREQ(CException(-1).what(), "Sumara Tables error: Unspecified error.");
}

TEST(CExceptionTest, EmptyMessageReadsAsCodeZero) {
  EXPECT_STREQ(CException(std::string()).what(), "Sumara Tables error: Success.");
}

TEST(CExceptionTest, CopyOutlivesTheOriginal) {
  auto original = std::make_unique<CException>(25, "Point index = 3", "inner");
  const CException copy(*original);
  original.reset();
  EXPECT_STREQ(copy.what(),
               "Sumara Tables error: Error reading series data.\n"
               "Further information: Point index = 3\nInner exception: inner");
  EXPECT_EQ(copy.ErrorCode(), 25);
}

TEST(CExceptionTest, BothFamiliesAreCaughtAsTheBase) {
  const auto raise = [](bool io) {
    if (io) throw CIOException(5000);
    throw CException(1);
  };
  EXPECT_THROW(raise(true), CExceptionBase);
  EXPECT_THROW(raise(false), CExceptionBase);
}

}  // namespace
