#include "model/group_identity.h"

#include <gtest/gtest.h>

#include "tests/support/message_of.h"

namespace {

using Sumara::GroupIdentity;
using testing_support::MessageOf;

GroupIdentity At(const std::string& path) {
  return GroupIdentity({path, /*binary=*/true, "Loads", "TRANSIENT", "UserDefined", ""});
}

TEST(GroupIdentityTest, DescriptionIsKept) {
  const GroupIdentity group({"dir/run.%07", false, "Loads", "", "UserDefined", "other.$07"});
  EXPECT_EQ(group.Path(), "dir/run.%07");
  EXPECT_FALSE(group.IsBinary());
  EXPECT_EQ(group.Name(), "Loads");
  EXPECT_EQ(group.Config(), "");
  EXPECT_EQ(group.DataSource(), "UserDefined");
  EXPECT_EQ(group.DataFilePath(), "dir/other.$07");
  EXPECT_EQ(group.Number(), 7u);
  EXPECT_EQ(group.HeaderRecordCount(), 0u);
  EXPECT_EQ(group.TargetType(), 0u);
  EXPECT_EQ(group.SerialisedType(), 0u);
  EXPECT_EQ(group.RegistryPath(), "");
}

TEST(GroupIdentityTest, NamesOfFilesFollowThePath) {
  GroupIdentity group = At("dir/50%.case.%02");
  EXPECT_EQ(group.FileName(), "50%.case.%02");
  EXPECT_EQ(group.FileStem(), "50%.case");
  EXPECT_EQ(group.Directory(), "dir/");
  EXPECT_EQ(group.DataFileName(), "50$.case.$02");
  group.SetPath("run.%03");
  EXPECT_EQ(group.DataFilePath(), "./run.$03");
  group.SetPath("");
  EXPECT_EQ(group.DataFilePath(), "");
}

TEST(GroupIdentityTest, ContextNamesTheDirectoryWhereThereIsOne) {
  GroupIdentity group = At("dir/run.%01");
  EXPECT_EQ(group.Context(), "File path: dir/Loads");
  group.SetPath("run.%01");
  EXPECT_EQ(group.Context(), "File path: ./Loads");
  group.SetPath("");
  EXPECT_EQ(group.Context(), "Group name: 'Loads'");
}

TEST(GroupIdentityTest, NamedParametersGoToTheEnd) {
  GroupIdentity group = At("run.%01");
  group.AddNamedParameters({"a 1", "b 2"});
  group.AddNamedParameters({"c 3"});
  EXPECT_EQ(group.NamedParameters(), (std::vector<std::string>{"a 1", "b 2", "c 3"}));
}

TEST(GroupIdentityTest, NameIsTestedFirstAndThePathLast) {
  const auto failure = [](const std::string& name, const std::string& config,
                          const std::string& source, const std::string& path) {
    return MessageOf([&] { GroupIdentity({path, true, name, config, source, ""}); });
  };
  EXPECT_EQ(failure("", "\n", "", "").substr(0, 41), "Sumara Tables error: Group name (GENLAB) ");
  EXPECT_EQ(failure("a", "\n", "", "").substr(0, 43),
            "Sumara Tables error: Group config (CONFIG) ");
  EXPECT_EQ(failure("a", "", "", "").substr(0, 49),
            "Sumara Tables error: Group data source (CONTENT) ");
  EXPECT_EQ(failure("a", "", "b", "").substr(0, 46),
            "Sumara Tables error: Group path not specified.");
  EXPECT_EQ(failure("a", "", "b", "run.01").substr(0, 44),
            "Sumara Tables error: File extension invalid:");
}

}  // namespace
