#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/element_types.h"
#include "core/paths.h"
#include "groupfiles/group_data_reader.h"
#include "tests/groupfiles/data_fixture.h"
#include "tests/support/other_process.h"

// Data files that change or fail under the reader.

namespace {

using testing_support::CollectingTarget;
using testing_support::MessageOf;

constexpr std::uint64_t kVariables = 20;
constexpr std::uint64_t kPoints = 20000;
constexpr std::size_t kBytes = kVariables * kPoints * sizeof(float);

/// Words of which each tells its variable.
std::vector<float> Words() {
  std::vector<float> words;
  for (std::uint64_t i = 0; i < kVariables * kPoints; ++i) words.push_back(float(i % kVariables));
  return words;
}

std::unique_ptr<CIOBase> Make(const std::string& path) {
  return Sumara::MakeGroupDataReader<float>(Sumara::kFloatCode, path, true, {kVariables, kPoints});
}

std::string Read(CIOBase& reader, std::size_t variable, bool keepBuffer,
                 Sumara::IDataTarget<float>& target) {
  return MessageOf([&] {
    dynamic_cast<Sumara::IGroupDataReader<float>&>(reader).Read(
        Sumara::DataLayout::Of({kVariables, kPoints}, 0), {{variable}, {0}, kPoints, keepBuffer},
        target);
  });
}

/// Cuts the file, writes it again and replaces it, over and over.
[[noreturn]] void Disturb(const std::string& path) {
  const std::vector<float> words = Words();
  const auto write = [&](const std::string& to) {
    const int file = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const char* const bytes = reinterpret_cast<const char*>(words.data());
    for (std::size_t done = 0; done < kBytes;) {
      const ssize_t count = ::write(file, bytes + done, kBytes - done);
      if (count <= 0) break;
      done += static_cast<std::size_t>(count);
    }
    ::close(file);
  };
  for (;;) {
    if (::truncate(path.c_str(), kBytes / 3) != 0) ::_exit(1);
    ::usleep(200);
    write(path);
    ::usleep(700);
    write(path + ".new");
    ::rename((path + ".new").c_str(), path.c_str());
    ::usleep(700);
  }
}

TEST(UnsteadyFileTest, FileCutByAnotherProcessGivesItsValuesOrTheStatedError) {
  const testing_support::TempDirectory directory;
  const std::string path = directory.WriteWords<float>("data", Words());
  const testing_support::OtherProcess other([&] { Disturb(path); });
  ASSERT_TRUE(other.IsThere());
  int delivered = 0;
  for (int round = 0; round < 500; ++round) {
    const auto reader = Make(path);
    for (const std::size_t variable : {round % kVariables, (round + 7) % kVariables}) {
      CollectingTarget<float> target;
      const std::string failure = Read(*reader, variable, round % 3 != 0, target);
      if (failure != "no exception") {
        const bool isTooShort = failure.find("IO error 5008: ") != std::string::npos;
        const bool isEmptied = failure.find("IO error 5003: ") != std::string::npos;
        EXPECT_TRUE(isTooShort || isEmptied) << failure;
      } else if (!target.filled.empty()) {  // else it was empty when it was opened
        ASSERT_EQ(target.Of(variable), std::vector<double>(kPoints, double(variable)));
        ++delivered;
      }
    }
  }
  EXPECT_GT(delivered, 0);
}

/// Puts another file behind the handle of the data file when its reader is about to read.
class SwappingTarget final : public CollectingTarget<float> {
 public:
  SwappingTarget(std::string path, const char* other) : m_path(std::move(path)), m_other(other) {}

  std::vector<float>& Values(std::size_t variable, std::size_t secondaryIndex) override {
    const int other = ::open(m_other, O_RDONLY | O_CLOEXEC);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (std::filesystem::read_symlink(entry.path(), gone) == m_path) {
        ::dup2(other, std::stoi(entry.path().filename().string()));
      }
    }
    ::close(other);
    return CollectingTarget::Values(variable, secondaryIndex);
  }

 private:
  std::string m_path;
  const char* m_other;
};

TEST(UnsteadyFileTest, FileThatCannotBeReadIsToldWithTheReasonOfTheSystem) {
  constexpr const char* kUnreadable = "/proc/self/mem";  // EIO at its start
  if (!std::filesystem::exists(kUnreadable)) GTEST_SKIP() << "no such file here";
  const testing_support::TempDirectory directory;
  const std::string path = directory.WriteWords<float>("data", Words());
  SwappingTarget target(path, kUnreadable);
  EXPECT_EQ(
      Read(*Make(path), 3, /*keepBuffer=*/false, target),
      "Sumara Tables error: Error reading series data.\nFurther information: Point index = 0; "
      "series 3\nInner exception: IO error 5009: Failed to read data.\nFurther information: " +
          path + "\nInner exception: " + Sumara::SystemErrorText(EIO));
  EXPECT_TRUE(target.filled.empty());
  EXPECT_TRUE(target.Of(3).empty());
}

}  // namespace
