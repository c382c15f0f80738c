// Reads a run with the installed library, as a user's program does.
#include <tabulon/api/run.h>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <vector>

#include "api/group.h"
#include "api/independent_variable.h"
#include "api/tabulon_api.h"
#include "api/variable1d.h"
#include "core/exceptions.h"
#include "tables/group_table.h"
#include "tables/run_list.h"

namespace {

using SumaraApi::TabulonApi;

/// Prints a variable and tells whether its data and its figures agree.
template <class T>
bool Describe(SumaraApi::Run& run, std::string const& name) {
  const auto variable = run.GetVariable1D<T>(name);
  double sum = 0;
  for (const T value : variable->GetData()) sum += static_cast<double>(value);
  const double mean = sum / static_cast<double>(variable->GetDataPointCount());
  std::cout << "  " << name << " [" << variable->GetSIUnit() << "] over "
            << variable->GetIndependentVariable()->GetName() << ": "
            << variable->GetDataPointCount() << " points, mean " << variable->GetMean() << '\n';
  // A header keeps its statistics with few digits.
  return std::abs(mean - variable->GetMean()) <= 1e-3 * (1 + std::abs(mean));
}

bool DescribeOfType(SumaraApi::Run& run, SumaraApi::Group const& group, std::string const& name) {
  switch (group.GetVariableDataType()) {
    case SumaraApi::VariableDataType::Float32:
      return Describe<float>(run, name);
    case SumaraApi::VariableDataType::Float64:
      return Describe<double>(run, name);
    case SumaraApi::VariableDataType::Int32:
      return Describe<int>(run, name);
  }
  return false;
}

bool RefusesUnknownRun(std::string const& directory) {
  try {
    TabulonApi::GetRun(directory, "no such run");
  } catch (CExceptionBase const& failure) {
    std::cout << failure.what() << '\n';
    return failure.ErrorCode() == 141;
  }
  return false;
}

bool DescribeRun(std::string const& directory, std::string const& name) {
  const SumaraApi::RunPtr run = TabulonApi::GetRun(directory, name);
  std::cout << run->GetName() << ": " << run->GetCalculationDescriptiveName() << '\n';
  std::size_t described = 0;
  for (SumaraApi::GroupPtr const& group : run->GetAllGroups()) {
    if (group->GetNumberOfIndependentVariables() != 1) continue;
    const std::string first = group->GetVariableNames().front();
    if (!DescribeOfType(*run, *group, first)) return false;
    ++described;
  }
  return described > 0;
}

/// The same run as tables.
bool ReadsTable(std::string const& directory, std::string const& name) {
  const auto table = Tabulon::GroupTable::Open(directory + "/" + name + ".%01");
  const Tabulon::Selection first{{0}};
  std::vector<double> values(table.ShapeOf(first).rows);
  table.Read<double>(first, std::span<double>(values));
  const Tabulon::Reduction figures = table.Reduce(first);
  std::cout << "table " << table.Name() << ": " << values.size() << " rows, mean "
            << figures.mean.front() << '\n';
  std::size_t runs = 0;
  Tabulon::ListRuns(
      directory, {}, [&](Tabulon::RunFiles&&) { ++runs; }, [](Tabulon::UnreadableDirectory&&) {});
  return !values.empty() && values.front() >= figures.minimum.front() && runs > 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: consumer DIRECTORY RUN\n";
    return EXIT_FAILURE;
  }
  const bool passed =
      DescribeRun(argv[1], argv[2]) && RefusesUnknownRun(argv[1]) && ReadsTable(argv[1], argv[2]);
  std::cout << (passed ? "consumer passed" : "consumer FAILED") << '\n';
  return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}
