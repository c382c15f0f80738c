#include "tables/header_figures.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

#include "core/exceptions.h"
#include "groupfiles/figure_rows.h"
#include "groupfiles/header_reader.h"
#include "tables/header_failure.h"
#include "tables/watched.h"

namespace Tabulon {
namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

/// Room for the figures of `count` variables.
StoredFigures NoFigures(std::size_t count, std::size_t all, std::size_t secondary, bool at) {
  StoredFigures figures;
  figures.secondary = secondary;
  for (auto* values : {&figures.minimum, &figures.maximum, &figures.mean, &figures.minimumTime,
                       &figures.maximumTime}) {
    values->assign(count * secondary, kNothing);
  }
  if (at) {
    figures.atMinimum.assign(all * secondary, kNothing);
    figures.atMaximum.assign(all * secondary, kNothing);
  }
  return figures;
}

/// Values of one line of a block, up to the last that is wanted.
std::vector<double> LineOf(const Sumara::HeaderFigures& header, std::size_t block,
                           Sumara::FigureLine line, std::size_t count) {
  std::vector<double> values(count);
  Sumara::ReadFigures<double>(header.text.View(), header.rows.Line(block, line), values);
  return values;
}

template <class T>
double ValueOf(const Sumara::HeaderFigures& header, std::size_t block, std::size_t variable,
               Sumara::Extreme extreme) {
  return Sumara::ConvertElement<double>(Sumara::ReadFigure<T>(
      header.text.View(), header.rows.UloadsRow(block, variable, extreme), variable));
}

template <class T>
void TakeBlock(const Sumara::HeaderFigures& header, std::size_t s,
               const std::vector<std::size_t>& variables, StoredFigures& figures) {
  if (variables.empty()) return;
  const std::size_t count = *std::max_element(variables.begin(), variables.end()) + 1;
  const std::vector<double> maxTime = LineOf(header, s, Sumara::FigureLine::kMaxTime, count);
  const std::vector<double> minTime = LineOf(header, s, Sumara::FigureLine::kMinTime, count);
  const std::vector<double> mean = LineOf(header, s, Sumara::FigureLine::kMean, count);
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const std::size_t v = variables[i];
    const std::size_t place = i * figures.secondary + s;
    figures.maximum[place] = ValueOf<T>(header, s, v, Sumara::Extreme::kMaximum);
    figures.minimum[place] = ValueOf<T>(header, s, v, Sumara::Extreme::kMinimum);
    figures.maximumTime[place] = maxTime[v];
    figures.minimumTime[place] = minTime[v];
    figures.mean[place] = mean[v];
  }
}

/// The values of all variables where one has its extreme.
template <class T>
void TakeRow(const Sumara::HeaderFigures& header, std::size_t s, std::size_t variable,
             Sumara::Extreme extreme, StoredFigures& figures) {
  std::vector<double>& all =
      extreme == Sumara::Extreme::kMaximum ? figures.atMaximum : figures.atMinimum;
  std::vector<T> values(all.size() / figures.secondary);
  Sumara::ReadFigures<T>(header.text.View(), header.rows.UloadsRow(s, variable, extreme), values);
  for (std::size_t v = 0; v < values.size(); ++v)
    all[v * figures.secondary + s] = Sumara::ConvertElement<double>(values[v]);
}

template <class T>
std::optional<StoredFigures> Taken(const Sumara::HeaderFigures& header,
                                   const HeaderContents& contents,
                                   const std::vector<std::size_t>& variables,
                                   std::optional<std::size_t> at) {
  const auto blocks = static_cast<std::size_t>(header.rows.BlockCount());
  if (blocks == 0) return std::nullopt;
  StoredFigures figures =
      NoFigures(variables.size(), static_cast<std::size_t>(contents.layout.variables),
                static_cast<std::size_t>(contents.layout.secondary), at.has_value());
  for (std::size_t s = 0; s < blocks; ++s) {
    TakeBlock<T>(header, s, variables, figures);
    if (!at) continue;
    TakeRow<T>(header, s, *at, Sumara::Extreme::kMaximum, figures);
    TakeRow<T>(header, s, *at, Sumara::Extreme::kMinimum, figures);
  }
  return figures;
}

void CheckVariables(const HeaderContents& contents, const std::vector<std::size_t>& variables) {
  for (const std::size_t v : variables) {
    if (v >= contents.variables.size() || v >= contents.layout.variables)
      throw std::out_of_range("variable " + std::to_string(v) + " of " +
                              std::to_string(contents.variables.size()));
  }
}

/// Reads the header from its figures on: all else is known, as long as nobody wrote to it.
Sumara::HeaderFigures FiguresOf(const HeaderContents& contents) {
  Watched<Sumara::CHeaderReader> header(contents.path);
  const auto checkState = [&] {
    if (header.State() != contents.file)
      throw CIOException(5009, contents.path, "The header was written since it was opened");
  };
  try {
    header.Start();
    checkState();
    Sumara::HeaderFigures figures = header.ReadFiguresAt(
        *contents.figures, contents.layout.variables, contents.layout.secondary);
    checkState();
    return figures;
  } catch (const CExceptionBase& failure) {
    throw HeaderFailure(header, failure, /*axis=*/0);
  }
}

}  // namespace

std::optional<StoredFigures> ReadFigures(const HeaderContents& contents,
                                         const std::vector<std::size_t>& variables,
                                         std::optional<std::size_t> at) {
  CheckVariables(contents, variables);
  if (at) CheckVariables(contents, {*at});
  if (!contents.figures) return std::nullopt;
  const Sumara::HeaderFigures figures = FiguresOf(contents);
  return Sumara::VisitElementType(
      contents.top.dataType,
      [&](auto tag) {
        return Taken<typename decltype(tag)::Type>(figures, contents, variables, at);
      },
      []() -> std::optional<StoredFigures> { return std::nullopt; });
}

}  // namespace Tabulon
