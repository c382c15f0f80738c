#include "model/file_writer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdint>
#include <ios>

#include "core/exceptions.h"
#include "tests/support/message_of.h"
#include "tests/support/temp_directory.h"

namespace {

using Sumara::OutputFile;
using testing_support::MessageOf;
using testing_support::TempDirectory;

/// Lets files of the process grow to `bytes` only; what exceeds it is an error and no signal.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*m_handler)(int);
  rlimit m_before{};
};

TEST(OutputFileTest, PiecesAreOnDiskAtOnce) {
  const TempDirectory directory;
  directory.Write("x", "what was there before");
  OutputFile file(directory.Path("x"));
  EXPECT_EQ(directory.Read("x"), "");
  file.Write(std::string("one\n"));
  EXPECT_EQ(directory.Read("x"), "one\n");
  file.Write(std::string("two"));
  EXPECT_EQ(directory.Read("x"), "one\ntwo");
  file.Close();
  EXPECT_EQ(directory.Read("x"), "one\ntwo");
}

TEST(OutputFileTest, OpeningFailuresNameTheFileAndTheReason) {
  const TempDirectory directory;
  directory.Write("file", "");
  const struct {
    std::string path;
    const char* reason;
  } table[] = {
      {directory.Path(), "Is a directory"},
      {directory.Path("missing/x"), "No such file or directory"},
      {directory.Path("file/x"), "Not a directory"},
      {directory.Path(std::string(300, 'x')), "File name too long"},
      {"", "No such file or directory"},
  };
  for (const auto& row : table) {
    EXPECT_EQ(MessageOf([&] { OutputFile file(row.path); }),
              "ios_base::failbit set: " + row.path + ": " + row.reason);
  }
  EXPECT_THROW(OutputFile file(directory.Path()), std::ios_base::failure);
}

TEST(OutputFileTest, DevicesAreNotWritten) {
  EXPECT_EQ(MessageOf([] { OutputFile file("/dev/full"); }),
            "ios_base::failbit set: /dev/full: Operation not supported");
}

TEST(OutputFileTest, WhatFitsBeforeAFailureStays) {
  const TempDirectory directory;
  const std::string path = directory.Path("x");
  OutputFile file(path);
  {
    const FileSizeLimit limit(10);
    file.Write(std::string("12345678"));
    EXPECT_EQ(MessageOf([&] { file.Write(std::string("abcdefgh")); }),
              "ios_base::badbit set: " + path + ": File too large");
    EXPECT_THROW(file.Write(std::string("x")), std::ios_base::failure);
  }
  EXPECT_EQ(directory.Read("x"), "12345678ab");
}

TEST(CWriterTest, TextIsWrittenAtOnce) {
  const TempDirectory directory;
  directory.Write("x", "a longer text that was there before");
  CWriter writer(directory.Path("x"));
  writer.Text() << "value " << 3 << "\n";
  EXPECT_EQ(directory.Read("x"), "a longer text that was there before");
  EXPECT_EQ(writer.GetMode(), 3);
  writer.Write();
  EXPECT_FALSE(writer.IsOpen());
  EXPECT_EQ(directory.Read("x"), "value 3\n");
}

TEST(CWriterTest, FileThatDoesNotOpenRaises5007) {
  const TempDirectory directory;
  CWriter writer(directory.Path());
  EXPECT_EQ(MessageOf([&] { writer.Write(); }),
            "IO error 5007: Stream has error flag(s).\n"
            "Further information: failbit: last operation on stream invalid - check file or "
            "directory exists, path does not contain illegal characters, and file is not locked by "
            "another process\n"
            "Further information: Is a directory\n"
            "Path: " +
                directory.Path());
  CWriter nameless("");
  EXPECT_EQ(MessageOf([&] { nameless.Write(); }), "IO error 5002: Filename not set or invalid.");
}

TEST(CWriterTest, TextThatDoesNotFitIsABadStream) {
  const TempDirectory directory;
  CWriter writer(directory.Path("x"));
  writer.Text() << "12345678";
  const FileSizeLimit limit(4);
  EXPECT_EQ(MessageOf([&] { writer.Write(); }),
            "ios_base::badbit set: " + directory.Path("x") + ": File too large");
}

}  // namespace
