#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "api/types.h"

namespace Sumara {
class CControl;
class IGroup;
}  // namespace Sumara

namespace SumaraApi {

class IndependentVariables;

/// One dependent variable of an output group: what can be told of it without its data.
///
/// `Variable1D` and `Variable2D` reach the data and the statistics. A variable keeps its group
/// alive.
class Variable {
 public:
  virtual ~Variable();
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

  /// Releases the data of this variable; it is read again when it is asked for again.
  virtual void Unload();

  /// The name as it stands in the header.
  std::string GetName() const { return m_name; }

  /// The unit of the quantity code; empty if the code is unknown. \throws Sumara::CException 145
  std::string GetSIUnit();

  /// VARUNIT of the header, for example L for a length. \throws Sumara::CException 144
  std::string GetQuantityCode() const;

  /// 1 or 2.
  std::size_t GetNumberOfIndependentVariables() const;

  /// GENLAB of the header.
  std::string GetParentGroupName() const;
  /// The number of the header's extension.
  std::uint64_t GetParentGroupNumber() const;
  std::string GetParentGroupHeaderFileFullPath();

  /// Seconds: points times step. \throws Sumara::CException 168 if the primary axis is not an
  /// interval axis named Time.
  double GetTimeDomainSimulationLength() const;

  /// Points along the primary axis; for two axes that is the count for one secondary value.
  std::size_t GetDataPointCount() const;

  /// The type as which the data is read, which may differ from the type in the file.
  VariableDataType GetDataType() const;
  VariableDataFormat GetDataFormat() const;

  /// Primary first.
  std::vector<IndependentVariablePtr> GetIndependentVariables() const;

 protected:
  Variable(std::string name, std::shared_ptr<Sumara::IGroup> group,
           std::shared_ptr<Sumara::CControl> control,
           std::shared_ptr<IndependentVariables> independentVariables);

  /// Has the header's statistics read, if the group was loaded without them.
  void EnsureStatistics();

  /// The variable and its group, for failures.
  std::string Context() const;

  std::string m_name;
  std::shared_ptr<Sumara::IGroup> m_group;
  std::shared_ptr<Sumara::CControl> m_control;
  std::shared_ptr<IndependentVariables> m_independentVariables;

 private:
  std::string m_siUnit;
};

}  // namespace SumaraApi
