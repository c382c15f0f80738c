#include "core/file_stream.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <random>

#include "tests/support/temp_directory.h"

namespace {

using Sumara::File;
using Sumara::FileStream;
using testing_support::TempDirectory;

class FileStreamTest : public ::testing::Test {
 protected:
  void Open(std::string_view bytes) {
    m_stream.Open(m_directory.Write("file", bytes), File::Access::kRead);
    ASSERT_TRUE(m_stream.Good());
  }

  std::string Line() {
    std::string_view line;
    m_stream.GetLine(line);
    return std::string(line);
  }

  std::string Flags() const {
    return std::string(m_stream.Eof() ? "eof " : "") + (m_stream.Fail() ? "fail " : "") +
           (m_stream.Bad() ? "bad " : "");
  }

  TempDirectory m_directory;
  FileStream m_stream;
};

TEST_F(FileStreamTest, ReadsLineByLine) {
  Open("a\r\n\nlast");
  EXPECT_EQ(Line(), "a\r");
  EXPECT_EQ(m_stream.Tell(), 3u);
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(Flags(), "");
  EXPECT_EQ(Line(), "last");
  EXPECT_EQ(Flags(), "eof ");
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(Flags(), "eof fail ");
  EXPECT_EQ(m_stream.Tell(), 8u);
}

TEST_F(FileStreamTest, EndDirectlyBehindALineFeedFails) {
  Open("a\n");
  EXPECT_EQ(Line(), "a");
  EXPECT_EQ(Flags(), "");
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(Flags(), "eof fail ");
}

TEST_F(FileStreamTest, SeekClearsTheEofFlagOnly) {
  Open("abc");
  Line();
  m_stream.Seek(1);
  EXPECT_EQ(Flags(), "");
  EXPECT_EQ(Line(), "bc");
  Line();
  m_stream.Seek(0);
  EXPECT_EQ(Flags(), "fail ");
  EXPECT_EQ(m_stream.Tell(), 3u);
  m_stream.Clear();
  m_stream.Seek(0);
  EXPECT_EQ(Line(), "abc");
}

TEST_F(FileStreamTest, SeekBeyondTheEndIsSeenByTheNextRead) {
  Open("abc");
  m_stream.Seek(10);
  EXPECT_EQ(Flags(), "");
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(Flags(), "eof fail ");
}

TEST_F(FileStreamTest, CharacterBeforeALineFeed) {
  Open(" x\n\n");
  EXPECT_EQ(m_stream.GetBeforeLineFeed(), ' ');
  EXPECT_EQ(m_stream.GetBeforeLineFeed(), 'x');
  EXPECT_EQ(Flags(), "");
  EXPECT_EQ(m_stream.GetBeforeLineFeed(), '\0');
  EXPECT_EQ(Flags(), "fail ");
  EXPECT_EQ(m_stream.Tell(), 2u);
}

TEST_F(FileStreamTest, CharacterAtTheEnd) {
  Open("a\n");
  Line();
  EXPECT_EQ(m_stream.GetBeforeLineFeed(), '\0');
  EXPECT_EQ(Flags(), "eof fail ");
}

TEST_F(FileStreamTest, LineStarts) {
  Open("ab\nc\n");
  const bool expected[] = {true, false, false, true, false, true, false, false};
  for (std::uint64_t position = 0; position < 8; ++position) {
    m_stream.Seek(position);
    EXPECT_EQ(m_stream.AtLineStart(), expected[position]) << position;
    EXPECT_EQ(m_stream.Tell(), position);
    EXPECT_EQ(Flags(), "");
  }
}

TEST_F(FileStreamTest, RefusalIsKept) {
  m_stream.Open(m_directory.Path("missing"), File::Access::kRead);
  EXPECT_FALSE(m_stream.IsOpen());
  EXPECT_EQ(Flags(), "fail ");
  EXPECT_EQ(m_stream.LastError(), ENOENT);
  Open("a");
  EXPECT_EQ(m_stream.LastError(), 0);
}

TEST_F(FileStreamTest, ClosedStreamHasNothing) {
  Open("abc");
  m_stream.Close();
  EXPECT_EQ(Flags(), "");
  m_stream.Seek(0);
  EXPECT_EQ(Flags(), "fail ");
  m_stream.Clear();
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(Flags(), "eof fail ");
}

TEST_F(FileStreamTest, LinesAcrossBlocksAreWhole) {
  std::string bytes;
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < 40'000; ++i) {
    lines.push_back(std::to_string(i) + std::string(i % 97, 'x'));
    bytes += lines.back() + '\n';
  }
  Open(bytes);
  for (const auto& line : lines) ASSERT_EQ(Line(), line);
  EXPECT_EQ(Flags(), "");
  m_stream.Seek(0);
  EXPECT_EQ(Line(), lines[0]);
}

TEST_F(FileStreamTest, LineOfManyBlocks) {
  const std::string line(20'000'000, 'x');
  Open("a\n" + line + "\nb\n" + line);
  EXPECT_EQ(Line(), "a");
  EXPECT_TRUE(Line() == line);
  EXPECT_EQ(Line(), "b");
  EXPECT_TRUE(Line() == line);
  EXPECT_EQ(Flags(), "eof ");
}

TEST_F(FileStreamTest, FileThatGrowsIsReadOn) {
  Open("a\n");
  EXPECT_EQ(Line(), "a");
  EXPECT_EQ(Line(), "");
  std::ofstream(m_directory.Path("file"), std::ios::app | std::ios::binary) << "b\n";
  m_stream.Clear();
  EXPECT_EQ(Line(), "b");
  EXPECT_EQ(Flags(), "");
}

/// Takes the same random steps on a standard stream and on ours.
class FileStreamTwin {
 public:
  explicit FileStreamTwin(const std::string& path) : m_standard(path, std::ios::binary) {
    m_stream.Open(path, File::Access::kRead);
  }

  void Step(std::mt19937& random, std::uint64_t size) {
    switch (random() % 6) {
      case 0:
      case 1:
        GetLine();
        break;
      case 2:
        GetCharacter();
        break;
      case 3:
        m_standard.clear();
        m_stream.Clear();
        break;
      default:
        Seek(random() % (size + 3));
    }
    Compare();
  }

 private:
  void GetLine() {
    std::string expected;
    std::string_view line;
    std::getline(m_standard, expected);
    EXPECT_EQ(m_stream.GetLine(line), !m_standard.fail());
    EXPECT_EQ(line, expected);
  }

  void GetCharacter() {
    char expected[2] = {};
    m_standard.get(expected, 2);
    EXPECT_EQ(m_stream.GetBeforeLineFeed(), expected[0]);
  }

  void Seek(std::uint64_t position) {
    m_standard.seekg(static_cast<std::streamoff>(position));
    m_stream.Seek(position);
  }

  void Compare() {
    EXPECT_EQ(m_stream.Eof(), m_standard.eof());
    EXPECT_EQ(m_stream.Fail(), m_standard.fail());
    EXPECT_EQ(m_stream.Bad(), m_standard.bad());
    EXPECT_EQ(m_stream.Good(), m_standard.good());
    EXPECT_EQ(m_stream.Tell(), static_cast<std::uint64_t>(
                                   m_standard.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in)));
  }

  std::ifstream m_standard;
  FileStream m_stream;
};

TEST_F(FileStreamTest, BehavesAsAStandardStream) {
  std::mt19937 random(20240301);
  for (int file = 0; file < 200 && !HasFailure(); ++file) {
    std::string bytes;
    for (std::size_t left = random() % 30; left > 0; --left) bytes += "\n\r ax"[random() % 5];
    FileStreamTwin twin(m_directory.Write("twin", bytes));
    for (int step = 0; step < 100; ++step) twin.Step(random, bytes.size());
  }
}

TEST_F(FileStreamTest, BehavesAsAStandardStreamAcrossBlocks) {
  std::mt19937 random(20240302);
  std::string bytes;
  while (bytes.size() < 900'000) bytes.append(random() % 3000, 'x').append(1, '\n');
  FileStreamTwin twin(m_directory.Write("twin", bytes));
  for (int step = 0; step < 3000; ++step) twin.Step(random, bytes.size());
}

}  // namespace
