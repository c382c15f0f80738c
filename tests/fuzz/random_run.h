#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "core/element_types.h"
#include "tests/fuzz/byte_source.h"
#include "tests/fuzz/run_input.h"

// Valid runs by the decisions of an input, written here and not by the library's writer.

namespace Fuzzing {

struct RandomAxis {
  std::string name;
  std::string lines;  ///< of the header, behind AXIUNIT
  std::size_t count = 0;
};

/// A group of small whole numbers, which every word and every text holds exactly.
struct RandomGroup {
  std::size_t word = 0;  ///< place in `kWordSpellings`
  bool binary = true;
  std::size_t variables = 1;
  std::vector<RandomAxis> axes;  ///< of two, the secondary one first
  std::size_t headerRecords = 0;
  std::vector<std::int16_t> values;  ///< in the order of the file

  std::size_t Secondary() const { return axes.size() == 2 ? axes.front().count : 1; }
  std::size_t Points() const { return axes.back().count; }

  std::vector<double> Column(std::size_t variable, std::size_t secondary) const {
    std::vector<double> column;
    for (std::size_t point = 0; point < Points(); ++point) {
      column.push_back(values[(point * Secondary() + secondary) * variables + variable]);
    }
    return column;
  }
};

inline constexpr std::uint32_t kWordCodes[] = {Sumara::kFloatCode, Sumara::kDoubleCode,
                                               Sumara::kShortCode, Sumara::kIntCode,
                                               Sumara::kLongCode};
inline constexpr const char* kWordSpellings[] = {"R*4", "R*8", "I*2", "I*4", "I*8"};

inline RandomAxis TakeAxis(ByteSource& source, const std::string& name) {
  RandomAxis axis;
  axis.name = name;
  axis.count = 1 + source.Pick(5);
  switch (source.Pick(3)) {
    case 0:
      axis.lines = "AXIMETH\t2\nMIN \t" + std::to_string(source.Take<std::int8_t>());
      axis.lines += "\nSTEP\t" + std::to_string(1 + source.Pick(9)) + ".5\n";
      break;
    case 1:
      axis.lines = "AXIMETH\t3\nAXIVAL\t";
      for (std::size_t i = 0; i < axis.count; ++i) axis.lines += std::to_string(i) + ".25 ";
      axis.lines += "\n";
      break;
    default:
      axis.lines = "AXIMETH\t1\nAXITICK\t";
      for (std::size_t i = 0; i < axis.count; ++i) axis.lines += "'at " + std::to_string(i) + "' ";
      axis.lines += "\n";
      break;
  }
  return axis;
}

inline RandomGroup TakeGroup(ByteSource& source) {
  RandomGroup group;
  group.word = source.Pick(std::size(kWordCodes));
  group.binary = source.Toss();
  group.variables = 1 + source.Pick(4);
  if (source.Toss()) group.axes.push_back(TakeAxis(source, "Station"));
  group.axes.push_back(TakeAxis(source, "Time"));
  if (!group.binary) group.headerRecords = source.Pick(2);
  group.values.resize(group.variables * group.Secondary() * group.Points());
  for (auto& value : group.values) {
    value = static_cast<std::int16_t>(source.Take<std::uint8_t>() - 128);
  }
  return group;
}

inline std::string HeaderText(const RandomGroup& group, const std::string& number) {
  std::string sizes = std::to_string(group.variables);
  std::string axes;
  for (const RandomAxis& axis : group.axes) {
    sizes += "\t" + std::to_string(axis.count);
    axes += "AXISLAB\t'" + axis.name + "'\nAXIUNIT\tT\n" + axis.lines;
  }
  std::string names;
  std::string quantities;
  for (std::size_t i = 0; i < group.variables; ++i) {
    names += "'v" + std::to_string(i) + "' ";
    quantities += "FL ";
  }
  std::string records;
  if (group.headerRecords > 0) records = "HEADREC\t" + std::to_string(group.headerRecords) + "\n";
  return "FILE\trun.$" + number + "\nACCESS\t" + (group.binary ? "D" : "S") +
         "\nFORM\tF\nRECL\t4\nFORMAT\t" + kWordSpellings[group.word] + "\n" + records +
         "CONTENT\t'POWPROD'\nCONFIG\t'TRANSIENT'\nNDIMENS\t" +
         std::to_string(group.axes.size() + 1) + "\nDIMENS\t" + sizes + "\nGENLAB\t'Group " +
         number + "'\nVARIAB\t" + names + "\nVARUNIT\t" + quantities + "\n" + axes + "NVARS\t0\n";
}

inline std::string BinaryText(const RandomGroup& group) {
  std::string bytes;
  Sumara::VisitElementType(
      kWordCodes[group.word],
      [&](auto tag) {
        using T = typename decltype(tag)::Type;
        for (const std::int16_t value : group.values) {
          const auto word = static_cast<T>(value);
          bytes.append(reinterpret_cast<const char*>(&word), sizeof(word));
        }
      },
      [] { Fail("a data type that is none"); });
  return bytes;
}

inline std::string LinesText(const RandomGroup& group) {
  const bool hasOneVariable = group.axes.size() == 2 && group.variables == 1;
  const std::size_t perLine = hasOneVariable ? group.Secondary() : group.variables;
  std::string text;
  for (std::size_t i = 0; i < group.headerRecords; ++i) text += "Results of a run\n";
  for (std::size_t i = 0; i < group.values.size(); ++i) {
    text += " " + std::to_string(group.values[i]);
    if ((i + 1) % perLine == 0) text += "\n";
  }
  return text;
}

inline GroupFiles FilesOf(const RandomGroup& group, std::size_t place) {
  return {HeaderText(group, GroupNumberText(place)),
          group.binary ? BinaryText(group) : LinesText(group)};
}

}  // namespace Fuzzing
