// A text data file, read column by column, all at once and again, and held against a model.
//
// The first line of an input tells the reader: the codes of the stored and the target type, the
// header records and the dimensions. What follows is the file.

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "core/element_types.h"
#include "groupfiles/group_data_reader.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch.h"
#include "tests/fuzz/text_data_model.h"

namespace {

using Fuzzing::RefusalOf;
using Fuzzing::Require;
using Fuzzing::Ways;
using Sumara::DataLayout;
using Sumara::DataRequest;

constexpr std::uint64_t kMostIndices = 5;  // of variables and of secondary values
constexpr std::size_t kThorough = 8;       // one input of so many goes all ways

struct Setup {
  std::uint32_t storedType = 0;
  std::uint32_t targetType = 0;
  std::vector<std::uint64_t> dimensions;
  DataLayout layout;
  std::string_view text;
};

bool IsType(std::uint32_t code) { return code >= Sumara::kFloatCode && code <= Sumara::kLongCode; }

std::optional<Setup> ReadSetup(std::string_view input) {
  Setup setup;
  std::istringstream line{std::string(Fuzzing::TakePiece(input, "\n"))};
  std::uint64_t headerRecords = 0;
  line >> setup.storedType >> setup.targetType >> headerRecords;
  for (std::uint64_t size = 0; line >> size;) setup.dimensions.push_back(size);
  const std::size_t count = setup.dimensions.size();
  if (!IsType(setup.storedType) || !IsType(setup.targetType) || count < 2 || count > 3) {
    return std::nullopt;
  }
  setup.layout = DataLayout::Of(setup.dimensions, headerRecords);
  setup.text = input;
  return setup;
}

template <class U>
class Target final : public Sumara::IDataTarget<U> {
 public:
  using Place = std::pair<std::size_t, std::size_t>;

  std::vector<U>& Values(std::size_t variable, std::size_t secondary) override {
    return columns[{variable, secondary}];
  }
  void Filled(std::size_t, std::size_t) override { ++filled; }
  std::string SeriesContext(std::size_t variable) const override {
    return "series " + std::to_string(variable);
  }
  std::string GroupContext() const override { return "the group"; }

  std::map<Place, std::vector<U>> columns;
  std::size_t filled = 0;
};

template <class U>
bool AreSame(const std::vector<U>& a, const std::vector<U>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), Fuzzing::AreSameBits<U, U>);
}

std::vector<std::size_t> Indices(std::uint64_t count) {
  std::vector<std::size_t> indices(std::min(count, kMostIndices));
  std::iota(indices.begin(), indices.end(), std::size_t{0});
  return indices;
}

template <class U>
class Comparison {
 public:
  Comparison(const Setup& setup, const Ways& ways)
      : m_setup(setup),
        m_ways(ways),
        m_path(Fuzzing::Scratch::Instance().Write("run.$01", setup.text)) {
    const DataLayout& layout = setup.layout;
    m_expected = Fuzzing::ReadByModel<U>(setup.text, setup.dimensions, layout);
    m_points = m_expected.size() / layout.Stride();
    m_all.variables = Indices(layout.variables);
    m_all.secondaryIndices = Indices(layout.secondary);
  }

  /// Most inputs go two of the five ways, so that more inputs are tried.
  void Run() {
    const bool isThorough = m_ways.IsTurn(kThorough);
    const std::size_t singly = m_ways.Pick(3);
    if (isThorough || singly == 0) ReadSingly(/*keepBuffer=*/false, /*points=*/0);
    if (isThorough || singly == 1) ReadSingly(/*keepBuffer=*/true, /*points=*/0);
    if (isThorough || singly == 2) ReadSingly(/*keepBuffer=*/true, m_points);
    const bool keepBuffer = m_ways.Pick(2) == 0;
    ReadTogether(keepBuffer);
    if (isThorough) ReadTogether(!keepBuffer);
  }

 private:
  using Reader = std::unique_ptr<CIOBase>;

  Reader Open() const {
    return Sumara::MakeGroupDataReader<U>(m_setup.storedType, m_path, /*binary=*/false,
                                          m_setup.dimensions);
  }

  std::vector<U> Expected(std::size_t variable, std::size_t secondary) const {
    std::vector<U> column;
    for (std::uint64_t point = 0; point < m_points; ++point) {
      const std::uint64_t first = point * m_setup.layout.Stride();
      column.push_back(m_expected[first + secondary * m_setup.layout.variables + variable]);
    }
    return column;
  }

  /// A file of one line feed has no first line, and is refused whatever is asked for.
  bool IsRefused(const DataRequest& request) const {
    return m_setup.text == "\n" || (!m_setup.text.empty() && request.points > m_points);
  }

  void Read(const Reader& reader, const DataRequest& request) const {
    Target<U> target;
    std::uint64_t points = 0;
    const std::string refusal = RefusalOf([&] {
      points =
          dynamic_cast<Sumara::IGroupDataReader<U>&>(*reader).Read(m_setup.layout, request, target);
    });
    Require(!reader->IsOpen(), "a text file stays open");
    if (IsRefused(request)) {
      Require(!refusal.empty(), "more points are delivered than there are");
      Require(target.filled == 0, "a read that failed fills a series");
      for (const auto& column : target.columns) {
        Require(column.second.empty(), "a read that failed leaves values");
      }
      return;
    }
    if (!refusal.empty()) Fuzzing::Fail("points that are there are refused", refusal);
    const std::uint64_t expected = m_setup.text.empty() ? 0 : m_points;
    Require(points == expected, "another number of points than there are");
    const std::size_t columns = request.variables.size() * request.secondaryIndices.size();
    Require(target.columns.size() == columns, "another number of columns than was asked for");
    Require(target.filled == (m_setup.text.empty() ? 0 : columns), "a series is not told of");
    for (const auto& [place, column] : target.columns) {
      Require(AreSame(column, Expected(place.first, place.second)), "other values than the text's");
    }
  }

  void ReadSingly(bool keepBuffer, std::uint64_t points) const {
    const Reader reader = Open();
    for (int round = 0; round < 2; ++round) {
      for (const std::size_t variable : m_all.variables) {
        for (const std::size_t secondary : m_all.secondaryIndices) {
          Read(reader, {{variable}, {secondary}, points, keepBuffer});
        }
      }
    }
  }

  void ReadTogether(bool keepBuffer) const {
    const Reader reader = Open();
    DataRequest request = m_all;
    request.keepBuffer = keepBuffer;
    for (const std::uint64_t points : {m_points + 1, m_points, std::uint64_t{0}, m_points + 1}) {
      request.points = points;
      Read(reader, request);
      Read(reader, request);
    }
  }

  const Setup& m_setup;
  Ways m_ways;
  std::string m_path;
  std::vector<U> m_expected;
  std::uint64_t m_points = 0;
  DataRequest m_all;
};

/// No layout without values holds anything that could be asked for.
template <class U>
void CheckNothingHeld(const Setup& setup) {
  const std::string path = Fuzzing::Scratch::Instance().Write("run.$01", setup.text);
  const auto reader =
      Sumara::MakeGroupDataReader<U>(setup.storedType, path, /*binary=*/false, setup.dimensions);
  Target<U> target;
  const std::string refusal = RefusalOf([&] {
    dynamic_cast<Sumara::IGroupDataReader<U>&>(*reader).Read(setup.layout, {{0}, {0}, 0, true},
                                                             target);
  });
  Require(!refusal.empty() && target.filled == 0, "values of a layout that holds none");
}

template <class U>
void CheckFile(const Setup& setup, const Ways& ways) {
  if (setup.layout.Stride() == 0) {
    CheckNothingHeld<U>(setup);
  } else {
    Comparison<U>(setup, ways).Run();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = Fuzzing::TextOf(data, size);
  const auto setup = ReadSetup(input);
  if (!setup) return 0;
  Sumara::VisitElementType(
      setup->targetType,
      [&](auto tag) { CheckFile<typename decltype(tag)::Type>(*setup, Ways(input)); },
      [] { Fuzzing::Fail("a data type that is none"); });
  return 0;
}
