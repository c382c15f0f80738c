#include "model/control.h"

#include "model/group_loader.h"
#include "tests/model/make_groups.h"
#include "tests/model/run_fixture.h"

namespace {

using Sumara::CControl;
using Sumara::GroupFile;
using Sumara::kPrimary;
using Sumara::PreviewMode;
using testing_support::DescriptionOf;
using testing_support::HeaderText;
using testing_support::Interval;
using testing_support::MessageOf;

constexpr PreviewMode kFull = PreviewMode::kFull;
constexpr PreviewMode kWith = PreviewMode::kWithStatistics;
constexpr PreviewMode kWithout = PreviewMode::kWithoutStatistics;

/// The groups of a registry, their keys and their modes.
class CControlTest : public testing_support::RunFixture {
 protected:
  static std::shared_ptr<Sumara::CGroup1D<float>> NewGroup(const std::string& path,
                                                           PreviewMode mode = kFull) {
    auto group = std::make_shared<Sumara::CGroup1D<float>>(DescriptionOf(path), Interval());
    group->SetPreviewMode(mode);
    return group;
  }
  std::string TargetTypeFailure() const {
    return Failure("Target type for group cannot be changed when group has already been cached");
  }
};

TEST_F(CControlTest, MissIsACodeAndNoError) {
  GroupPtr group = NewGroup("a/run.%01");
  const GroupPtr before = group;
  EXPECT_EQ(m_control.GetCachedGroup(group, Header(), kFull), 48u);
  EXPECT_EQ(group, before);
}

TEST_F(CControlTest, PathStandsOnceForEachMode) {
  for (const PreviewMode mode : {kFull, kWith, kWithout}) {
    const GroupPtr group = NewGroup("a/run.%01", mode);
    m_control.AddGroup(group);
    EXPECT_EQ(group->GetRegistryPath(), "a/run.%01");
    GroupPtr cached;
    EXPECT_EQ(m_control.GetCachedGroup(cached, "a/run.%01", mode), 0u);
    EXPECT_EQ(cached, group);
    EXPECT_EQ(MessageOf([&] { m_control.AddGroup(NewGroup("a/run.%01", mode)); }),
              "Sumara Tables error: Adding group with the same path as an existing group is not "
              "allowed.\nFurther "
              "information: File path: a/run.%01");
  }
  EXPECT_EQ(m_control.GetGroups().size(), 3u);
}

TEST_F(CControlTest, NumberTakesNoPartInTheKey) {
  const GroupPtr group = NewGroup("a/run.%01");
  group->SetGroupNumber(9);
  m_control.AddGroup(group);
  EXPECT_EQ(MessageOf([&] { m_control.AddGroup(NewGroup("a/run.%01")); }),
            "Sumara Tables error: Adding group with the same path as an existing group is not "
            "allowed.\nFurther "
            "information: File path: a/run.%01");
}

TEST_F(CControlTest, UnassignedNumberIsReadFromThePath) {
  const GroupPtr group = NewGroup("a/run.%07");
  group->SetGroupNumber(Sumara::kNoGroupNumber);
  m_control.AddGroup(group);
  EXPECT_EQ(group->GetGroupNumber(), 7u);
}

TEST_F(CControlTest, GlobalPathServesGroupsWithoutADirectory) {
  const GroupPtr group = NewGroup("run.%07");
  group->SetPath("");
  EXPECT_EQ(MessageOf([&] { m_control.AddGroup(group); }),
            "Sumara Tables error: Global results file path has not been set.\nFurther information: "
            "extension = 7");
  m_control.SetGlobalDirectoryAndRunName("dir/", "other");
  EXPECT_EQ(m_control.GetFileName(GroupFile::kData, 12), "other.$12");
  EXPECT_EQ(m_control.GetGroupFilePath(*group, GroupFile::kData), "dir/other.$07");
  m_control.AddGroup(group);
  EXPECT_EQ(group->GetPath(), "dir/other.%07");
  EXPECT_EQ(group->GetRegistryPath(), "dir/other.%07");
}

TEST_F(CControlTest, FilePathsOfAGroup) {
  const GroupPtr group = NewGroup("a/run.%07");
  EXPECT_EQ(m_control.GetGroupFilePath(*group, GroupFile::kHeader), "a/run.%07");
  EXPECT_EQ(m_control.GetGroupFilePath(*group, GroupFile::kData), "a/run.$07");
  EXPECT_EQ(MessageOf([&] { m_control.GetGroupFilePath(*group, static_cast<GroupFile>(2)); }),
            "Sumara Tables error: Group path not specified. The path may be relative or absolute, "
            "and should always "
            "contain at least the group file name. The file name extension must be of the form %n, "
            "where n is a "
            "positive integer with an upper limit of 18446744073709551615.\nFurther information: "
            "File path: a/Loads");
}

TEST_F(CControlTest, GroupIsReadOnceInItsMode) {
  WriteOneAxis();
  for (const PreviewMode mode : {kWithout, kFull}) {
    const GroupPtr group = Get(mode);
    EXPECT_EQ(group->GetPreviewMode(), mode);
    EXPECT_EQ(Get(mode), group);
  }
  EXPECT_EQ(m_control.GetGroups().size(), 1u);
}

TEST_F(CControlTest, PreviewIsServedByABetterGroup) {
  WriteOneAxis();
  const GroupPtr full = Get(kFull);
  EXPECT_EQ(Get(kWith), full);
  EXPECT_EQ(Get(kWithout), full);
  m_control.RemoveGroup(Header(), kFull, false);
  const GroupPtr with = Get(kWith);
  EXPECT_EQ(Get(kWithout), with);
  EXPECT_EQ(with->GetPreviewMode(), kWith);
}

TEST_F(CControlTest, StatisticsAreReadIntoAPreviewWithoutThem) {
  WriteHeader(HeaderText::OneAxis().Append(testing_support::StatisticsBlock()));
  const GroupPtr preview = Get(kWithout);
  EXPECT_EQ(Get(kWith, /*targetType=*/2), preview) << "the type of the cached group stays";
  EXPECT_EQ(preview->GetPreviewMode(), kWith);
  EXPECT_EQ(Cached(kWith), preview);
  EXPECT_EQ(Cached(kWithout), nullptr);
  EXPECT_EQ(StatisticsOf(preview).GetMeans(0, true), (std::vector<double>{1.25, -0.25}));
}

TEST_F(CControlTest, StatisticsOfAVanishedHeaderRaise81) {
  WriteHeader(HeaderText::OneAxis());
  const GroupPtr preview = Get(kWithout);
  std::filesystem::remove(Header());
  EXPECT_EQ(
      MessageOf([&] { Get(kWith); }),
      Failure("Failed to open file") +
          "\nInner exception: IO error 5000: The file does not exist.\nFurther information: " +
          Header());
  EXPECT_EQ(Cached(kWithout), preview);
  EXPECT_EQ(preview->GetPreviewMode(), kWithout);
}

TEST_F(CControlTest, PreviewBecomesFull) {
  WriteOneAxis();
  for (const PreviewMode mode : {kWith, kWithout}) {
    const GroupPtr preview = Get(mode);
    EXPECT_EQ(Get(kFull), preview);
    EXPECT_EQ(preview->GetPreviewMode(), kFull);
    EXPECT_EQ(Cached(mode), nullptr);
    EXPECT_EQ(Cached(kFull), preview);
    m_control.RemoveGroup(Header(), kFull, false);
  }
}

TEST_F(CControlTest, PreviewOfAnEmptyDataFileStaysOne) {
  WriteOneAxis();
  WriteWords(0);
  const GroupPtr preview = Get(kWithout);
  EXPECT_EQ(MessageOf([&] { Get(kFull); }),
            "Sumara Tables error: Group data file empty when expecting to find data.\nFurther "
            "information: expected 6 "
            "data points but data file was empty: File path: " +
                Data());
  EXPECT_EQ(Cached(kWithout), preview);
  EXPECT_EQ(Cached(kFull), nullptr);
}

TEST_F(CControlTest, TargetTypeOfACachedGroupStays) {
  WriteOneAxis();
  const GroupPtr group = Get(kFull);
  EXPECT_EQ(MessageOf([&] { Get(kFull, 2); }), TargetTypeFailure());
  EXPECT_EQ(MessageOf([&] { Get(kWithout, 2); }), TargetTypeFailure());
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}, 2); }), TargetTypeFailure());
  EXPECT_EQ(Get(kFull, 1), group);
  EXPECT_EQ(Get(kFull, 0), group);
  m_control.RemoveGroup(Header(), kFull, false);
  const GroupPtr preview = Get(kWithout);
  EXPECT_EQ(MessageOf([&] { Get(kFull, 2); }), TargetTypeFailure());
  EXPECT_EQ(MessageOf([&] { Load({"Mx"}, 2); }), TargetTypeFailure());
  EXPECT_EQ(preview->GetPreviewMode(), kWithout);
}

TEST_F(CControlTest, HeaderThatFailsLeavesNothing) {
  WriteHeader(HeaderText::OneAxis().With("VARUNIT", "FL"));
  WriteWords(6);
  for (const PreviewMode mode : {kFull, kWith, kWithout}) {
    EXPECT_EQ(MessageOf([&] { Get(mode); }),
              Failure("Number of header variables (VARIAB) and quantity identifiers (VARUNIT) are "
                      "not the same"));
    EXPECT_TRUE(m_control.GetGroups().empty());
  }
  WriteHeader(HeaderText::OneAxis());
  EXPECT_EQ(Get(kFull)->GetSeriesNames(), (Names{"Mx", "My"}));
}

TEST_F(CControlTest, ReadGroupLeavesAPreviewThatHasToBecomeFull) {
  WriteOneAxis();
  GroupPtr group = NewGroup("a/run.%01", kWith);
  const GroupPtr before = group;
  m_control.ReadGroup(group, Header(), kFull, 0);
  EXPECT_EQ(group, before);
  m_control.ReadGroup(group, Header(), kWithout, 0);
  EXPECT_EQ(group->GetPath(), Header());
}

TEST_F(CControlTest, RemovedFullGroupLosesItsReader) {
  WriteOneAxis();
  const GroupPtr group = Get(kFull);
  m_control.RemoveGroup(Header(), kFull, /*keepReader=*/false);
  EXPECT_EQ(Cached(kFull), nullptr);
  EXPECT_EQ(MessageOf([&] { group->GetReader(); }),
            GroupFailure("Data reader object is null. For a group to read data files, the path to "
                         "the binary should be "
                         "passed to the constructor"));
  const GroupPtr kept = Get(kFull);
  m_control.RemoveGroup(Header(), kFull, /*keepReader=*/true);
  EXPECT_EQ(kept->GetReader().GetPath(), Data());
}

TEST_F(CControlTest, RemovingAPreviewKeepsTheReaderOfTheFullGroup) {
  WriteOneAxis();
  const GroupPtr full = Get(kFull);
  const std::string path = Header();
  for (const PreviewMode mode : {kWith, kWithout}) m_control.AddGroup(NewGroup(path, mode));
  m_control.RemoveGroup(path, kWith, /*keepReader=*/false);
  EXPECT_EQ(m_control.GetGroups().size(), 1u) << "the preview without statistics goes too";
  EXPECT_EQ(full->GetReader().GetPath(), Data());
  EXPECT_EQ(Cached(kFull), full);
}

TEST_F(CControlTest, RemovingWhatIsNotThere) {
  const std::string failure = "Sumara Tables error: Could not find group to remove.";
  EXPECT_EQ(MessageOf([&] { m_control.RemoveGroup(Header(), kFull, false); }), failure);
  EXPECT_EQ(MessageOf([&] { m_control.RemoveGroup(Header(), kWith, false); }), "no exception");
  EXPECT_EQ(MessageOf([&] { m_control.RemoveGroup(Header(), kWithout, false); }), "no exception");
}

TEST_F(CControlTest, GroupOutlivesItsRegistry) {
  WriteOneAxis();
  GroupPtr group;
  {
    CControl control;
    group = control.GetGroup(Header(), Names{"Mx"}, 0);
  }
  EXPECT_EQ(DataOf(group, "Mx"), (std::vector<float>{0, 2, 4}));
}

TEST_F(CControlTest, PreviewThatBecomesFullTakesThePlaceOfOneThatIs) {
  WriteOneAxis();
  const GroupPtr full = Get();
  GroupPtr preview = Sumara::LoadGroup(Header(), PreviewMode::kWithoutStatistics, 0,
                                       [&](const GroupPtr& group) { m_control.AddGroup(group); });
  EXPECT_EQ(Load({"Mx"}), preview);
  EXPECT_EQ(Cached(PreviewMode::kFull), preview);
  EXPECT_EQ(Cached(PreviewMode::kWithoutStatistics), nullptr);
  EXPECT_EQ(m_control.GetGroups().size(), 1u);
}

}  // namespace
