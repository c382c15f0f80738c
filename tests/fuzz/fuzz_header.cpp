// A group header, read field by field and as the group that it tells of.

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "core/element_types.h"
#include "core/numbers.h"
#include "core/text.h"
#include "groupfiles/header_reader.h"
#include "groupfiles/header_text.h"
#include "model/group_base.h"
#include "model/group_loader.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch.h"
#include "tests/groupfiles/plain_figures.h"

namespace {

using Fuzzing::RefusalOf;
using Sumara::PreviewMode;

constexpr std::uint64_t kMostIndices = 8;

/// All that one pass gives.
template <class T>
struct Header {
  Sumara::HeaderTop top;
  std::vector<Sumara::AxisDescription> axes;
  std::vector<std::string> parameters;
  std::vector<testing_support::PlainFigures<T>> statistics;
  Sumara::HeaderVariables variables;
};

template <class T>
Header<T> ReadHeader(const std::string& path) {
  Sumara::CHeaderReader reader(path);
  reader.Start();
  Header<T> header;
  header.top = reader.ReadTop();
  for (std::uint32_t i = 0; i < header.top.axisCount; ++i) {
    header.axes.push_back(reader.ReadAxis(header.top, i + 1));
  }
  header.parameters = reader.ReadNamedParameters();
  const std::uint64_t count = header.top.dimensions.front();
  header.statistics = testing_support::FiguresOf<T>(reader.ReadFigures(count, ~std::uint64_t{0}));
  header.variables = reader.ReadVariables();
  return header;
}

template <class T>
std::string WriteHeader(const Header<T>& header) {
  const int precision = Sumara::PrecisionOf(header.top.dataType);
  std::string text = Sumara::TopText(header.top) + Sumara::VariablesText(header.variables);
  for (const auto& axis : header.axes) text += Sumara::AxisText(axis, precision);
  text += Sumara::NamedParametersText(header.parameters);
  for (const auto& block : header.statistics) {
    text += Sumara::UloadsText(block.uloads, precision);
    text += Sumara::StatisticsText("MAXTIME", block.maxTime, precision);
    text += Sumara::StatisticsText("MINTIME", block.minTime, precision);
    text += Sumara::StatisticsText("MEAN", block.mean, precision);
  }
  return text;
}

// The format cannot hold every text: not each header that is read can be written as it was.

bool IsOneLine(std::string_view text) { return !Sumara::ContainsLineBreak(text); }
bool IsPlain(std::string_view text) {
  return IsOneLine(text) && text.find_first_of("'\"") == std::string_view::npos;
}
bool IsPlainWord(std::string_view text) {
  return IsPlain(text) && !text.empty() && Sumara::TrimSpace(text) == text;
}
bool IsWritableNumber(double value) {
  constexpr double kAlmostAll = 1e300;
  return std::abs(value) < kAlmostAll;
}

template <class T>
bool IsWritable(const Header<T>& header) {
  const auto& [top, axes, parameters, statistics, variables] = header;
  return IsPlainWord(top.dataFileName) && IsOneLine(top.content) && IsOneLine(top.config) &&
         IsOneLine(top.name) && std::all_of(parameters.begin(), parameters.end(), IsOneLine) &&
         std::all_of(variables.names.begin(), variables.names.end(), IsPlain) &&
         std::all_of(variables.quantities.begin(), variables.quantities.end(), IsPlainWord) &&
         std::all_of(axes.begin(), axes.end(), [](const Sumara::AxisDescription& axis) {
           return IsOneLine(axis.name) && IsPlainWord(axis.quantity) &&
                  std::all_of(axis.labels.begin(), axis.labels.end(), IsPlain) &&
                  IsWritableNumber(axis.minimum) && IsWritableNumber(axis.step);
         });
}

/// A header that was written reads as it was written.
template <class T>
void CheckRoundTrip(const Header<T>& header) {
  if (!IsWritable(header)) return;
  const std::string text = WriteHeader(header);
  const std::string path = Fuzzing::Scratch::Instance().Write("again.%01", text);
  Fuzzing::RequireSame(WriteHeader(ReadHeader<T>(path)), text, "a written header reads otherwise");
}

void ReadFields(const std::string& path) {
  Sumara::HeaderTop top;
  const std::string refusal = RefusalOf([&] {
    Sumara::CHeaderReader reader(path);
    reader.Start();
    top = reader.ReadTop();
  });
  if (!refusal.empty()) return;
  Sumara::VisitElementType(
      top.dataType,
      [&](auto tag) {
        using T = typename decltype(tag)::Type;
        Header<T> header;
        if (RefusalOf([&] { header = ReadHeader<T>(path); }).empty()) CheckRoundTrip(header);
      },
      [] { Fuzzing::Fail("a data type that is none"); });
}

// As a group.

template <class T>
std::string StatisticsOf(Sumara::CGroupBase<T>& group, std::uint64_t secondary) {
  std::string text;
  const auto& rows = group.Statistics().GetUloads(secondary, /*preferComputed=*/false);
  text += Sumara::UloadsText(rows, Sumara::PrecisionOf(Sumara::kDoubleCode));
  for (const auto kind : {Sumara::StatisticKind::kMaxTime, Sumara::StatisticKind::kMinTime,
                          Sumara::StatisticKind::kMean}) {
    text += Sumara::StatisticsText(
        " ", group.Statistics().Get(kind, secondary, /*preferComputed=*/false),
        Sumara::PrecisionOf(Sumara::kDoubleCode));
  }
  return text;
}

/// The figures of the secondary values, up to the first that has none.
std::string StatisticsOf(Sumara::IGroup& group) {
  std::string text;
  const std::string refusal = RefusalOf([&] {
    Sumara::VisitElementType(
        group.GetDataType(),
        [&](auto tag) {
          using T = typename decltype(tag)::Type;
          for (std::uint64_t secondary = 0; secondary < kMostIndices; ++secondary) {
            text += StatisticsOf(dynamic_cast<Sumara::CGroupBase<T>&>(group), secondary);
          }
        },
        [] { Fuzzing::Fail("a group of no data type"); });
  });
  return text + refusal;
}

std::string AxisOf(const Sumara::IGroup& group, std::uint32_t position) {
  const auto axis = group.GetAxis(position, /*mustExist=*/true);
  std::string text = axis->GetName() + "|" + axis->GetQuantity() + "|" +
                     std::to_string(group.GetNumberOfPoints(position)) + "|" +
                     std::to_string(group.GetNumberOfLabels(position));
  const std::string refusal = RefusalOf([&] {
    for (std::uint64_t index = 0; index < kMostIndices; ++index) {
      text += "|" + axis->GetLabelAsString(index, group.GetDataType());
    }
  });
  return text + "|" + refusal;
}

/// What a group tells without statistics, whatever the type in which it is held.
std::string ContentOf(const Sumara::IGroup& group) {
  std::string text = group.GetName() + "|" + group.GetConfig() + "|" + group.GetDataSource() + "|" +
                     group.GetDataFilePath() + "|" + std::to_string(group.GetHeaderRecordCount());
  for (std::uint32_t position = 0; position < group.GetNumberOfAxes(); ++position) {
    text += "\n" + AxisOf(group, position);
  }
  for (const std::string& name : group.GetSeriesNames().Strings()) {
    text += "\n" + name + "|" + group.GetSeriesQuantity(name);
  }
  for (const std::string& line : group.GetOptionalVariables()) text += "\n" + line;
  return text;
}

std::shared_ptr<Sumara::IGroup> Load(const std::string& path, PreviewMode mode,
                                     std::uint32_t targetType) {
  std::shared_ptr<Sumara::IGroup> group;
  RefusalOf([&] { group = Sumara::LoadGroup(path, mode, targetType, [](const auto&) {}); });
  return group;
}

void LoadGroups(const std::string& path) {
  const auto preview = Load(path, PreviewMode::kWithoutStatistics, /*targetType=*/0);
  const auto withStatistics = Load(path, PreviewMode::kWithStatistics, /*targetType=*/0);
  const auto full = Load(path, PreviewMode::kFull, /*targetType=*/0);
  if (preview == nullptr) {
    Fuzzing::Require(withStatistics == nullptr && full == nullptr,
                     "a group loads, but not without its statistics");
    return;
  }
  const std::string content = ContentOf(*preview);
  if (full != nullptr) Fuzzing::RequireSame(ContentOf(*full), content, "a full group");
  if (withStatistics == nullptr) {
    Fuzzing::Require(!RefusalOf([&] { Sumara::LoadStoredStatistics(path, *preview); }).empty(),
                     "statistics are refused at once and taken later");
    return;
  }
  Fuzzing::RequireSame(ContentOf(*withStatistics), content, "a group with its statistics");
  Sumara::LoadStoredStatistics(path, *preview);
  preview->SetPreviewMode(PreviewMode::kWithStatistics);
  Fuzzing::RequireSame(StatisticsOf(*preview), StatisticsOf(*withStatistics),
                       "statistics that were read later");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& scratch = Fuzzing::Scratch::Instance();
  static const std::string kData = scratch.Write("run.$01", std::string(48, '1'));
  const std::string_view text = Fuzzing::TextOf(data, size);
  const std::string path = scratch.Write("run.%01", text);
  ReadFields(path);
  LoadGroups(path);
  const auto type = static_cast<std::uint32_t>(1 + Fuzzing::PickWay(text, Sumara::kLongCode));
  if (const auto group = Load(path, PreviewMode::kWithStatistics, type)) StatisticsOf(*group);
  return 0;
}
