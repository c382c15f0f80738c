// Whole runs: header and data files of one input, opened and walked through the public interface.
//
// An input holds header, data, header, data and so on, each ended by the mark below.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "core/element_types.h"
#include "groupfiles/data_layout.h"
#include "groupfiles/header_reader.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/run_input.h"

namespace {

using Fuzzing::GroupFiles;

constexpr std::string_view kMark = "\n#####\n";

std::vector<GroupFiles> SplitInput(std::string_view input) {
  std::vector<GroupFiles> groups;
  while (!input.empty() && groups.size() < Fuzzing::kMostGroups) {
    GroupFiles& files = groups.emplace_back();
    files.header = Fuzzing::TakePiece(input, kMark);
    files.data = Fuzzing::TakePiece(input, kMark);
  }
  return groups;
}

// A binary value is the word at its place, converted as the language does.

/// One value of the bytes of a binary file in double precision, which holds every word exactly.
template <class T>
double WordAt(std::string_view bytes, std::uint64_t place) {
  T word{};
  std::memcpy(&word, bytes.data() + place * sizeof(T), sizeof(T));
  if constexpr (std::is_same_v<T, Sumara::Long>) {
    return static_cast<std::int32_t>(word);
  } else {
    return static_cast<double>(word);
  }
}

/// What a group's data file holds, told by its header alone.
class BinaryFile {
 public:
  explicit BinaryFile(const SumaraApi::Group& group) {
    Sumara::CHeaderReader header(group.GetHeaderFilePath());
    header.Start();
    m_top = header.ReadTop();
  }

  bool IsBinary() const { return m_top.binary; }
  const std::string& Name() const { return m_top.dataFileName; }

  void Check(std::string_view bytes, std::size_t variable, std::size_t secondary,
             const std::vector<double>& values) const {
    const auto layout =
        Sumara::DataLayout::Of(Sumara::DataDimensions(m_top.dimensions, m_top.axisCount), 0);
    Sumara::VisitElementType(
        m_top.dataType,
        [&](auto tag) {
          using T = typename decltype(tag)::Type;
          for (std::size_t point = 0; point < values.size(); ++point) {
            const std::uint64_t place =
                point * layout.Stride() + secondary * layout.variables + variable;
            Fuzzing::Require((place + 1) * sizeof(T) <= bytes.size(),
                             "a value from behind the end of the file");
            Fuzzing::Require(Fuzzing::AreSameBits(values[point], WordAt<T>(bytes, place)),
                             "another value than the file's");
          }
        },
        [] { Fuzzing::Fail("a data type that is none"); });
  }

 private:
  Sumara::HeaderTop m_top;
};

void CheckDoubles(const std::vector<GroupFiles>& groups, const SumaraApi::Group& group,
                  std::size_t variable, std::size_t secondary, const std::vector<double>& values) {
  const BinaryFile file(group);
  const std::size_t place = group.GetNumber() - 1;
  if (!file.IsBinary() || place >= groups.size()) return;
  if (file.Name() != "run.$" + Fuzzing::GroupNumberText(place)) return;
  // Of variables with one name the first answers.
  const auto names = group.GetVariableNames();
  const auto first = std::find(names.begin(), names.end(), names[variable]);
  if (static_cast<std::size_t>(first - names.begin()) != variable) return;
  file.Check(groups[place].data, variable, secondary, values);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = Fuzzing::TextOf(data, size);
  // In a name of the input the walk would take these words for those of a refusal.
  if (input.find(Fuzzing::kWrongType) != std::string_view::npos) return 0;
  const std::vector<GroupFiles> groups = SplitInput(input);
  Fuzzing::WriteRun(groups);
  Fuzzing::Ways ways(input);
  const auto asType = Fuzzing::kReadingTypes[ways.Pick(std::size(Fuzzing::kReadingTypes))];
  const auto type = static_cast<std::uint32_t>(1 + ways.Pick(Sumara::kLongCode));
  Fuzzing::CheckWalks(ways, asType, [&](Fuzzing::RunWalk& walk) {
    walk.visitDoubles = [&](const SumaraApi::Group& group, std::size_t variable,
                            std::size_t secondary, const std::vector<double>& values) {
      CheckDoubles(groups, group, variable, secondary, values);
    };
  });
  if (ways.IsTurn(2)) Fuzzing::LoadWholeGroups(groups.size(), type);
  return 0;
}
