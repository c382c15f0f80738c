#include "model/group_number.h"

#include <gtest/gtest.h>

#include "model/igroup.h"
#include "tests/support/message_of.h"

namespace {

using Sumara::GroupFile;
using Sumara::GroupNumberToExtension;
using Sumara::ParseGroupNumber;
using testing_support::MessageOf;

const std::string kRule =
    " The file name extension must be of the form %n, where n is a positive integer with an upper "
    "limit of "
    "18446744073709551615.\nFurther information: File path: ";

TEST(ParseGroupNumberTest, DigitsBehindTheLastMark) {
  const std::pair<const char*, std::uint64_t> paths[] = {
      {"run.%05", 5},   {"run.%1", 1}, {"/a/b.%01/run.%123", 123},
      {"a.%x.%007", 7}, {"run.%0", 0}, {"run.%2147483647", 2147483647}};
  for (const auto& [path, number] : paths) EXPECT_EQ(ParseGroupNumber(path), number) << path;
}

TEST(ParseGroupNumberTest, OtherExtensionsAreRefused) {
  for (const std::string path : {"", "run", "run.$01", "run%01", "run.%", "run.%5a", "run.%-1",
                                 "run.%+1", "run.% 1", "run.%01.txt", "run.%01/", "run.%1.%"}) {
    EXPECT_EQ(MessageOf([&] { ParseGroupNumber(path); }),
              "Sumara Tables error: File extension invalid:" + kRule + path);
  }
}

TEST(ParseGroupNumberTest, FileNameIsNeeded) {
  EXPECT_EQ(MessageOf([] { ParseGroupNumber(".%05"); }),
            "Sumara Tables error: Group file name not specified within path. The path may be "
            "relative or absolute, and "
            "should always contain at least the group file name." +
                kRule + ".%05");
  EXPECT_EQ(ParseGroupNumber("dir/.%05"), 5u);
}

TEST(ParseGroupNumberTest, LimitIsThatOfA32BitInteger) {
  for (const std::string path :
       {"run.%2147483648", "run.%99999999999", "run.%18446744073709551615"}) {
    EXPECT_EQ(MessageOf([&] { ParseGroupNumber(path); }),
              "Sumara Tables error: File extension invalid:" + kRule + path +
                  "\nInner exception: stoi argument out of range");
  }
}

TEST(GroupNumberToExtensionTest, TwoDigitsAtLeast) {
  EXPECT_EQ(GroupNumberToExtension(7, GroupFile::kHeader), ".%07");
  EXPECT_EQ(GroupNumberToExtension(9, GroupFile::kHeader), ".%09");
  EXPECT_EQ(GroupNumberToExtension(10, GroupFile::kData), ".$10");
  EXPECT_EQ(GroupNumberToExtension(7, GroupFile::kData), ".$07");
  EXPECT_EQ(GroupNumberToExtension(123, GroupFile::kHeader), ".%123");
  EXPECT_EQ(GroupNumberToExtension(0, GroupFile::kHeader), ".%00");
  EXPECT_EQ(GroupNumberToExtension(5, static_cast<GroupFile>(2)), "05");
}

TEST(GroupNumberToExtensionTest, NumberHasToBeAssigned) {
  EXPECT_EQ(MessageOf([] { GroupNumberToExtension(Sumara::kNoGroupNumber, GroupFile::kData); }),
            "Sumara Tables error: The group number has not been assigned or is otherwise "
            "invalid.\nFurther "
            "information: Group number may not be used in a file extension (number = "
            "18446744073709551615)");
}

}  // namespace
