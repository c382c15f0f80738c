#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "api/types.h"

namespace Sumara {
class IGroup;
}

namespace SumaraApi {

class GroupContents;

/// One output group of a run: a table of variables over one or two independent variables.
///
/// A group outlives its run for all but the typed variables, which belong to the run.
class Group {
 public:
  Group(std::string headerFilePath, std::shared_ptr<GroupContents> contents,
        std::weak_ptr<Run> run);

  /// GENLAB of the header.
  std::string GetName() const;
  /// The number of the header's extension, unique within a run.
  std::uint64_t GetNumber() const;
  std::string GetHeaderFilePath() const { return m_headerFilePath; }

  std::size_t GetNumberOfVariables() const;
  /// 1 or 2.
  std::size_t GetNumberOfIndependentVariables() const;

  /// A variable by name, so spelled or else the first in any case, for what needs no data.
  /// \throws Sumara::CException 159 if there is none of this name.
  VariablePtr GetVariable(std::string const& variableName) const;
  /// In the order of the header.
  std::vector<std::string> GetVariableNames() const;
  /// Whether the group has one (two) independent variables and a variable of this name, whatever
  /// its case.
  bool ContainsVariable1D(std::string const& variableName) const;
  bool ContainsVariable2D(std::string const& variableName) const;

  /// Primary first.
  std::vector<IndependentVariablePtr> GetIndependentVariables() const;
  /// \throws Sumara::CException 167 if there is none of this name or id.
  IndependentVariablePtr GetIndependentVariable(std::string const& independentVariableName) const;
  IndependentVariablePtr GetIndependentVariable(
      IndependentVariableId const independentVariableId) const;

  /// CONTENT of the header, as it stands.
  std::string GetCalculationShortName() const;
  std::string GetCalculationDescriptiveName() const;
  CalculationType GetCalculationType() const;

  /// Seconds: points times step, to four decimals.
  /// \throws Sumara::CException 168 if the primary axis is not an interval axis named Time.
  double GetTimeDomainSimulationLength() const;

  /// Values along the primary axis.
  std::size_t GetDataPointCount() const;
  /// The type as which the data is read. \throws Sumara::CException 172 for 16-bit and `long`
  /// groups.
  VariableDataType GetVariableDataType() const;
  VariableDataFormat GetVariableDataFormat() const;

  /// The typed variable. T is float, double or int, as `GetVariableDataType` tells.
  /// \throws Sumara::CException 171 if the run is gone, 159, 161 or 162, 163.
  template <class T>
  std::shared_ptr<Variable1D<T>> GetVariable1D(std::string const& variableName) const;
  template <class T>
  std::shared_ptr<Variable2D<T>> GetVariable2D(std::string const& variableName) const;
  /// All variables, in the order of the header.
  template <class T>
  std::vector<std::shared_ptr<Variable1D<T>>> GetAllVariables1D() const;
  template <class T>
  std::vector<std::shared_ptr<Variable2D<T>>> GetAllVariables2D() const;

 private:
  const Sumara::IGroup& ModelGroup() const;
  RunPtr LockRun() const;
  bool ContainsVariable(std::string const& variableName, std::size_t dimensions) const;
  template <class TypedVariable>
  std::vector<std::shared_ptr<TypedVariable>> NarrowAll() const;

  std::string m_headerFilePath;
  std::shared_ptr<GroupContents> m_contents;
  std::weak_ptr<Run> m_run;
};

}  // namespace SumaraApi
