#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tables/run_list.h"
#include "tests/support/other_process.h"
#include "tests/tables/table_fixture.h"

namespace Tabulon {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kVariables = 4;
constexpr std::size_t kPoints = 20'000;
constexpr int kThreads = 8;

/// Seconds of the test: some in everyday runs, `TABULON_THREADS_SECONDS` in long ones.
double Seconds() {
  const char* const told = std::getenv("TABULON_THREADS_SECONDS");
  return told != nullptr ? std::atof(told) : 2.0;
}

/// Of more than one block, with figures that are all the version.
HeaderText Header(bool binary, int version) {
  const std::string row = " " + std::to_string(version) + " " + std::to_string(version) + " " +
                          std::to_string(version) + " " + std::to_string(version);
  return HeaderText::OneAxis()
      .With("NVARS", "1")
      .Append({std::string(40'000, 'x')})
      .With("ACCESS", binary ? "D" : "S")
      .With("DIMENS", std::to_string(kVariables) + "\t" + std::to_string(kPoints))
      .With("VARIAB", "'a' 'b' 'c' 'd'")
      .With("VARUNIT", "L L L L")
      .Append({"ULOADS" + row, row, row, row, row, row, row, row, "MAXTIME" + row, "MINTIME" + row,
               "MEAN" + row});
}

/// A file of one version: all its values are the same.
std::string Data(bool binary, int version) {
  std::string data;
  if (binary) {
    const std::vector<float> words(kVariables * kPoints, static_cast<float>(version));
    data.assign(reinterpret_cast<const char*>(words.data()), words.size() * sizeof(float));
  } else {
    const std::string number = " " + std::to_string(version);
    for (std::size_t p = 0; p < kPoints; ++p) data += number + number + number + number + "\n";
  }
  return data;
}

void WriteFile(const std::string& path, const std::string& data) {
  std::ofstream(path, std::ios::binary)
      .write(data.data(), static_cast<std::streamsize>(data.size()));
}

/// What another program does to the files of runs, again and again, until it is killed.
class Vandal {
 public:
  explicit Vandal(std::string directory)
      : m_directory(std::move(directory)), m_process([this] {
          for (unsigned step = 0;; ++step) Step(step);
        }) {}

 private:
  void Step(unsigned step) const {
    const bool binary = step % 2 == 0;
    const int version = static_cast<int>(step % 8 + 1);
    const std::string base = m_directory + (binary ? "/binary" : "/text");
    const std::string data = Data(binary, version);
    switch (step / 2 % 5) {
      case 0:  // all at once, under another name
        WriteFile(base + ".new", data);
        std::rename((base + ".new").c_str(), (base + ".$01").c_str());
        break;
      case 1:  // cut, then written
        WriteFile(base + ".$01", data);
        break;
      case 2:  // cut short
        if (::truncate((base + ".$01").c_str(), static_cast<off_t>(data.size() / 3)) != 0) break;
        break;
      case 3:
        if (step / 10 % 2 == 0) std::remove((base + ".%01").c_str());
        WriteFile(
            base + ".%01",
            Header(binary, version).With("FILE", base.substr(base.rfind('/') + 1) + ".$01").Text());
        break;
      default:
        std::remove((base + ".$TE").c_str());
        WriteFile(base + ".$TE", "Run completed");
        std::remove((base + ".$01").c_str());
        WriteFile(base + ".$01", data);
    }
    ::usleep(3000 * (step % 7));
  }

  std::string m_directory;
  testing_support::OtherProcess m_process;
};

class ThreadsTest : public TableTest {
 protected:
  void SetUp() override {
    for (const bool binary : {true, false}) {
      const std::string name = binary ? "binary" : "text";
      m_directory.Write(name + ".%01", Header(binary, 1).With("FILE", name + ".$01").Text());
      m_directory.Write(name + ".$01", Data(binary, 1));
      m_directory.Write(name + ".$TE", "Run completed");
    }
  }

  /// Whether all values are of one version.
  static bool AreOfOneVersion(const std::vector<float>& values) {
    return std::all_of(values.begin(), values.end(),
                       [&](float value) { return value == values.front(); });
  }

  void ReadOnce(const GroupTable& table) {
    for (std::size_t column = 0; column < kVariables; ++column) {
      std::vector<float> values(kPoints);
      table.Read<float>({.variables = {column}}, std::span<float>(values));
      if (!AreOfOneVersion(values)) ++m_mixtures;
      ++m_answers;
    }
  }

  void ReduceOnce(const GroupTable& table) {
    const Reduction figures = table.Reduce({.variables = {0, 1, 2, 3}});
    for (std::size_t c = 0; c < kVariables; ++c) {
      if (figures.minimum[c] != figures.maximum[c]) ++m_mixtures;
    }
    ++m_answers;
  }

  void TakeFiguresOnce(const GroupTable& table) {
    const StoredFigures figures = table.Figures({0, 2}, 1).value();
    for (const auto* values : {&figures.minimum, &figures.mean, &figures.atMinimum}) {
      if (std::any_of(values->begin(), values->end(),
                      [&](double value) { return value != figures.maximumTime.front(); }))
        ++m_mixtures;
    }
    ++m_answers;
  }

  /// One job of a thread; a failure of the files is an answer too.
  void Work(const GroupTable& shared, bool binary, unsigned turn) {
    try {
      switch (turn % 5) {
        case 0:
          ReadOnce(shared);
          break;
        case 1:
          ReduceOnce(shared);
          break;
        case 2:
          ReadOnce(GroupTable::Open(m_directory.Path(binary ? "binary.%01" : "text.%01")));
          break;
        case 3:
          shared.CountRows();
          TakeFiguresOnce(GroupTable::Open(shared.Path()));
          break;
        default:
          ListRuns(
              m_directory.Path(), {.completion = true}, [](RunFiles&&) {},
              [](UnreadableDirectory&&) {});
      }
    } catch (const TableError&) {
      ++m_failures;
    }
  }

  void RunThreads() {
    const GroupTable binary = GroupTable::Open(m_directory.Path("binary.%01"));
    const GroupTable text = GroupTable::Open(m_directory.Path("text.%01"));
    const Vandal vandal(m_directory.Path());
    const auto end = Clock::now() + std::chrono::duration<double>(Seconds());
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < kThreads; ++t) {
      threads.emplace_back([&, t] {
        for (unsigned turn = t; Clock::now() < end; ++turn)
          Work(t % 2 == 0 ? binary : text, t % 2 == 0, turn);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }

  std::atomic<int> m_mixtures = 0;
  std::atomic<int> m_answers = 0;
  std::atomic<int> m_failures = 0;
};

TEST_F(ThreadsTest, FilesThatOthersRewriteGiveOneVersionOrAFailure) {
  RunThreads();
  EXPECT_EQ(m_mixtures, 0);
  EXPECT_GT(m_answers, 0);
  RecordProperty("answers", m_answers);
  RecordProperty("failures", m_failures);
}

}  // namespace
}  // namespace Tabulon
