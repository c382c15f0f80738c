// A valid run by the decisions of an input, which must read back as it was made; then the same run
// damaged, which may be refused but must not do harm.
//
// Behind the bytes that make the run, each damage takes a kind, a file and a place.

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/fuzz/byte_source.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/random_run.h"
#include "tests/fuzz/run_input.h"

namespace {

using Fuzzing::ByteSource;
using Fuzzing::GroupFiles;
using Fuzzing::RandomGroup;
using Fuzzing::Require;
using Fuzzing::RunWalk;
using SumaraApi::DataTypeSpecifier;

constexpr std::size_t kMostDamages = 4;

// The valid run.

template <class T>
void CheckValues(const RandomGroup& group, std::size_t variable, std::size_t secondary,
                 const std::vector<T>& values) {
  const std::vector<double> expected = group.Column(variable, secondary);
  Require(std::equal(values.begin(), values.end(), expected.begin(), expected.end()),
          "other values than were written");
}

double MeanOf(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

void RequireFigures(const std::vector<double>& column, double mean, double maximum,
                    double minimum) {
  Require(mean == MeanOf(column), "another mean");
  Require(maximum == *std::max_element(column.begin(), column.end()), "another maximum");
  Require(minimum == *std::min_element(column.begin(), column.end()), "another minimum");
}

/// The figures that are told once all of a group is in memory.
template <class T>
void CheckFigures(const RandomGroup& group, const SumaraApi::Group& found) {
  const std::vector<std::string> names = found.GetVariableNames();
  for (const std::string& name : names) {
    if (group.axes.size() == 1) {
      found.GetVariable1D<T>(name)->GetData();
    } else {
      found.GetVariable2D<T>(name)->GetDataForAllIndependentVariableValues();
    }
  }
  for (std::size_t v = 0; v < names.size(); ++v) {
    if (group.axes.size() == 1) {
      const auto variable = found.GetVariable1D<T>(names[v]);
      RequireFigures(group.Column(v, 0), variable->GetMean(), variable->GetMaximum(),
                     variable->GetMinimum());
      continue;
    }
    const auto variable = found.GetVariable2D<T>(names[v]);
    for (std::size_t s = 0; s < group.Secondary(); ++s) {
      RequireFigures(group.Column(v, s), variable->GetMeanAtIndex(s),
                     variable->GetMaximumAtIndex(s), variable->GetMinimumAtIndex(s));
    }
  }
}

/// Whether the public classes have this type: others are for groups that are converted as they are
/// read.
bool IsServed(const RandomGroup& group, DataTypeSpecifier type) {
  const std::uint32_t code = Fuzzing::kWordCodes[group.word];
  return type != DataTypeSpecifier::ReadAsSerialisedType ||
         (code != Sumara::kShortCode && code != Sumara::kLongCode);
}

class ValidRun {
 public:
  ValidRun(const std::vector<RandomGroup>& groups, DataTypeSpecifier type)
      : m_groups(groups), m_type(type) {}

  /// The values that a walk meets, all values and figures, or both.
  void Check(Fuzzing::Ways ways) const {
    const bool isServed = std::all_of(m_groups.begin(), m_groups.end(),
                                      [&](const auto& group) { return IsServed(group, m_type); });
    const bool asksAll = isServed && ways.IsTurn(2);
    if (asksAll) CheckAnswers();
    if (!asksAll || ways.IsTurn(2)) CheckWalks(ways);
  }

 private:
  void CheckWalks(const Fuzzing::Ways& ways) const {
    Fuzzing::CheckWalks(ways, m_type, [&](RunWalk& walk) {
      walk.visitFloats = Compare<float>();
      walk.visitDoubles = Compare<double>();
      walk.visitInts = Compare<int>();
    });
  }

  template <class T>
  RunWalk::Visit<T> Compare() const {
    return [this](const SumaraApi::Group& group, std::size_t variable, std::size_t secondary,
                  const std::vector<T>& values) {
      CheckValues(m_groups.at(group.GetNumber() - 1), variable, secondary, values);
    };
  }

  /// Without this a library that refuses everything would pass.
  void CheckAnswers() const {
    const auto run = Fuzzing::OpenRun(Fuzzing::Scratch::Instance().Directory(), "run",
                                      {/*buffered=*/true, m_type});
    const auto found = run->GetAllGroups();
    Require(found.size() == m_groups.size(), "another number of groups");
    for (const auto& group : found) {
      const RandomGroup& written = m_groups.at(group->GetNumber() - 1);
      Require(group->GetNumberOfVariables() == written.variables, "another number of variables");
      Require(group->GetDataPointCount() == written.Points(), "another number of points");
      switch (group->GetVariableDataType()) {
        case SumaraApi::VariableDataType::Float32:
          CheckFigures<float>(written, *group);
          break;
        case SumaraApi::VariableDataType::Float64:
          CheckFigures<double>(written, *group);
          break;
        case SumaraApi::VariableDataType::Int32:
          CheckFigures<int>(written, *group);
          break;
      }
    }
  }

  const std::vector<RandomGroup>& m_groups;
  DataTypeSpecifier m_type;
};

// Damage.

/// The start of a line of `text`, by number.
std::size_t LineStart(const std::string& text, std::size_t line) {
  std::size_t at = 0;
  for (; line > 0; --line) {
    const std::size_t end = text.find('\n', at);
    if (end == std::string::npos) return at;
    at = end + 1;
  }
  return at;
}

std::string LineAt(const std::string& text, std::size_t line) {
  const std::size_t start = LineStart(text, line);
  const std::size_t end = std::min(text.find('\n', start), text.size());
  return text.substr(start, end - start + 1);
}

std::string CutLine(std::string& text, std::size_t line) {
  std::string cut = LineAt(text, line);
  text.erase(LineStart(text, line), cut.size());
  return cut;
}

/// Puts another number in the place of one.
void ChangeNumber(std::string& text, std::size_t place, std::size_t which) {
  static constexpr const char* kNumbers[] = {
      "0",   "-1", "3",    "4294967296", "18446744073709551615",
      "1e9", "7",  "x",    "262145",     "9223372036854775808",
      "",    "1",  "1e-9", "-0.0",       "300000"};
  const std::size_t start = text.find_first_of("0123456789", place);
  if (start == std::string::npos) return;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", start), text.size());
  text.replace(start, end - start, kNumbers[which % std::size(kNumbers)]);
}

void Damage(std::string& text, ByteSource& source) {
  const std::size_t kind = source.Pick(10);
  const std::size_t place = text.empty() ? 0 : source.Take<std::uint16_t>() % text.size();
  const std::size_t line = source.Pick(32);
  const std::size_t size = 1 + source.Pick(8);
  switch (kind) {
    case 0:
      if (!text.empty()) text[place] = static_cast<char>(text[place] ^ (1 << (size - 1)));
      break;
    case 1:
      text.resize(place);
      break;
    case 2:
      text.erase(place, size);
      break;
    case 3:
      text.insert(place, text.substr(place, size));
      break;
    case 4:
      text.insert(place, source.TakeBytes(size));
      break;
    case 5: {
      const std::string cut = CutLine(text, line);
      text.insert(LineStart(text, size), cut);
      break;
    }
    case 6:
      CutLine(text, line);
      break;
    case 7:
      text.insert(LineStart(text, line), LineAt(text, size));
      break;
    case 8:
      text.insert(LineStart(text, line), size % 2 == 0 ? "\n" : "\n\n");
      break;
    default:
      ChangeNumber(text, place, size + line);
      break;
  }
}

void DamageRun(std::vector<GroupFiles>& files, ByteSource& source) {
  for (std::size_t i = 0; i < kMostDamages && !source.IsUsedUp(); ++i) {
    GroupFiles& group = files[source.Pick(files.size())];
    Damage(source.Pick(4) == 0 ? group.data : group.header, source);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = Fuzzing::TextOf(data, size);
  ByteSource source(input);
  const DataTypeSpecifier type =
      Fuzzing::kReadingTypes[source.Pick(std::size(Fuzzing::kReadingTypes))];
  std::vector<RandomGroup> groups;
  std::vector<GroupFiles> files;
  for (std::size_t count = 1 + source.Pick(2); groups.size() < count;) {
    groups.push_back(Fuzzing::TakeGroup(source));
    files.push_back(Fuzzing::FilesOf(groups.back(), files.size()));
  }
  Fuzzing::Ways ways(input);
  if (source.IsUsedUp()) {
    Fuzzing::WriteRun(files);
    ValidRun(groups, type).Check(ways);
    return 0;
  }
  DamageRun(files, source);
  Fuzzing::WriteRun(files);
  const auto prepare = [](RunWalk&) {};
  if (ways.IsTurn(2)) {
    Fuzzing::CheckWalks(ways, type, prepare);
  } else {
    Fuzzing::WalkRun(ways, {/*buffered=*/ways.Pick(2) == 0, type}, prepare);
  }
  const auto code = static_cast<std::uint32_t>(1 + ways.Pick(Sumara::kLongCode));
  if (ways.IsTurn(2)) Fuzzing::LoadWholeGroups(files.size(), code);
  return 0;
}
