#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "tests/support/temp_directory.h"

// Runs as bytes on disk, laid out here and not by the library's writer.

namespace testing_support {

/// One axis block of a header.
struct SampleAxis {
  std::string name = "Time";
  std::string quantity = "T";
  std::string values = "AXIMETH\t2\nMIN \t0.0\nSTEP\t0.5\n";
  std::size_t count = 4;
};

inline SampleAxis IntervalAxis(const std::string& name, const std::string& quantity,
                               const std::string& minimum, const std::string& step,
                               std::size_t count) {
  return {name, quantity, "AXIMETH\t2\nMIN \t" + minimum + "\nSTEP\t" + step + "\n", count};
}

inline SampleAxis ValueAxis(const std::string& name, const std::string& quantity,
                            const std::vector<std::string>& labels) {
  std::string line = "AXIMETH\t3\nAXIVAL\t";
  for (const std::string& label : labels) line += label + " ";
  return {name, quantity, line + "\n", labels.size()};
}

inline SampleAxis StringAxis(const std::string& name, const std::string& quantity,
                             const std::vector<std::string>& labels) {
  std::string line = "AXIMETH\t1\nAXITICK\t";
  for (const std::string& label : labels) line += "'" + label + "' ";
  return {name, quantity, line + "\n", labels.size()};
}

struct SampleVariable {
  std::string name;
  std::string quantity;
};

/// One output group. `values` are in the order of the file: variable fastest, then secondary value,
/// then point.
struct SampleGroup {
  std::string name = "Rotor";
  std::string content = "POWPROD";
  std::string format = "R*4";
  bool binary = true;
  std::vector<SampleVariable> variables = {{"Speed", "A/T"}, {"Power", "P"}};
  std::vector<SampleAxis> axes = {SampleAxis{}};  ///< of two, the primary first
  std::vector<double> values = {1, 10, 4, 40, 2, 20, 3, 30};
  std::string statistics = {};  ///< the lines below the axis blocks
};

/// A statistics block from its lines of values.
inline std::string StatisticsBlock(const std::vector<std::string>& uloads,
                                   const std::string& maxTime, const std::string& minTime,
                                   const std::string& mean) {
  std::string text = "ULOADS";
  for (const std::string& row : uloads) text += "   " + row + "\n";
  return text + "MAXTIME   " + maxTime + "\nMINTIME   " + minTime + "\nMEAN   " + mean + "\n";
}

inline std::string SampleHeader(const SampleGroup& group, const std::string& dataFileName) {
  std::string dimensions = std::to_string(group.variables.size());
  std::string blocks;
  for (auto axis = group.axes.rbegin(); axis != group.axes.rend(); ++axis) {
    dimensions += "\t" + std::to_string(axis->count);
    blocks += "AXISLAB\t'" + axis->name + "'\nAXIUNIT\t" + axis->quantity + "\n" + axis->values;
  }
  std::string names;
  std::string quantities;
  for (const SampleVariable& variable : group.variables) {
    names += "'" + variable.name + "' ";
    quantities += variable.quantity + " ";
  }
  return "FILE\t" + dataFileName + "\nACCESS\t" + (group.binary ? "D" : "S") +
         "\nFORM\tF\nRECL\t4\nFORMAT\t" + group.format + "\nCONTENT\t'" + group.content +
         "'\nCONFIG\t'TRANSIENT'\nNDIMENS\t" + std::to_string(group.axes.size() + 1) +
         "\nDIMENS\t" + dimensions + "\nGENLAB\t'" + group.name + "'\nVARIAB\t" + names +
         "\nVARUNIT\t" + quantities + "\n" + blocks + group.statistics;
}

template <class Word>
std::string WordBytes(const std::vector<double>& values) {
  std::vector<Word> words;
  for (const double value : values) words.push_back(static_cast<Word>(value));
  return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(Word)};
}

inline std::string DataBytes(const SampleGroup& group) {
  if (!group.binary) {
    const bool linePerPoint = group.axes.size() == 1 || group.variables.size() == 1;
    const std::size_t perLine =
        linePerPoint ? group.values.size() / group.axes.front().count : group.variables.size();
    std::string text;
    for (std::size_t i = 0; i < group.values.size(); ++i) {
      text += " " + std::to_string(group.values[i]) + ((i + 1) % perLine == 0 ? "\n" : "");
    }
    return text;
  }
  if (group.format == "R*8") return WordBytes<double>(group.values);
  if (group.format == "I*2") return WordBytes<std::int16_t>(group.values);
  if (group.format == "I*4") return WordBytes<std::int32_t>(group.values);
  return WordBytes<float>(group.values);
}

/// Sets the last write of a file. Tests never rely on the time that passes between two writes.
inline void SetLastWrite(const std::string& path, std::int64_t seconds,
                         std::int64_t nanoseconds = 0) {
  const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
  if (::utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) {
    throw std::system_error(errno, std::generic_category(), path);
  }
}

inline constexpr std::int64_t kFirstWrite = 1'700'000'000;

/// The files of one run in a directory that exists.
class SampleRun {
 public:
  SampleRun(const TempDirectory& directory, std::string name,
            const std::string& termination = "Run completed\n")
      : m_directory(directory), m_name(std::move(name)) {
    Write(".$TE", termination);
    SetLastWrite(Path(".$TE"), kFirstWrite);
  }

  /// The path of the file with this extension.
  std::string Path(const std::string& extension) const {
    return m_directory.Path(m_name + extension);
  }

  const SampleRun& Write(const std::string& extension, std::string_view bytes) const {
    m_directory.Write(m_name + extension, bytes);
    return *this;
  }

  /// Writes header and data under the number `NN`, as it is spelled.
  const SampleRun& Group(const std::string& number, const SampleGroup& group) const {
    Header(number, group);
    return Write(".$" + number, DataBytes(group));
  }

  const SampleRun& Header(const std::string& number, const SampleGroup& group) const {
    const std::string file = m_name.substr(m_name.find_last_of('/') + 1);
    return Write(".%" + number, SampleHeader(group, file + ".$" + number));
  }

  /// Moves the last write of the termination file, as a rewrite does.
  const SampleRun& Touch(std::int64_t secondsLater = 1) const {
    SetLastWrite(Path(".$TE"), kFirstWrite + secondsLater);
    return *this;
  }

 private:
  const TempDirectory& m_directory;
  std::string m_name;
};

}  // namespace testing_support
