#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "api/types.h"

namespace Sumara {
class CAxisBase;
class IGroup;
}  // namespace Sumara

namespace SumaraApi {

/// The handle on an axis: of a group of a run, or of a group to be written.
class IndependentVariable {
 public:
  /// Labelled numbers. \throws Sumara::CException 177, 178 or 179 for a bad name, unit or label
  /// list.
  IndependentVariable(std::string const& name, std::string const& siUnit,
                      std::vector<double> const& numericLabels);
  /// Labelled strings.
  IndependentVariable(std::string const& name, std::string const& siUnit,
                      std::vector<std::string> const& stringLabels);
  /// Values at a fixed interval, which is not 0.
  IndependentVariable(std::string const& name, std::string const& siUnit, double const startValue,
                      double const stepValue);
  /// The axis of a group.
  IndependentVariable(std::shared_ptr<Sumara::CAxisBase> axis,
                      std::shared_ptr<Sumara::IGroup> group);

  /// AXISLAB of the header.
  std::string GetName();
  /// From the axis quantity code; empty if the code is unknown.
  std::string GetSIUnit();
  AxisTypeId GetAxisType() const { return m_axisType; }

  /// The data points along the axis of a group; without a group the labels, or 0 for an interval
  /// axis.
  std::size_t GetNumberOfValues() const;

  /// The text of each value; numbers in scientific notation.
  std::vector<std::string> GetValuesAsString() const;

  /// Every value of an interval axis or of an axis of labelled numbers.
  /// \throws Sumara::CException 39 for labelled strings.
  std::vector<double> const& GetValuesAsNumber() const;

  /// The same values, which stay alive and unchanged for as long as the pointer is held.
  std::shared_ptr<std::vector<double>> ShareValuesAsNumber() const;

  /// \cond internal
  std::shared_ptr<Sumara::CAxisBase> const& GetAxis() const { return m_axis; }
  bool BelongsTo(const Sumara::IGroup& group) const { return m_group.get() == &group; }
  void SetGroup(std::shared_ptr<Sumara::IGroup> group, std::uint32_t position);
  /// \endcond

 private:
  std::string m_name;
  std::string m_siUnit;
  AxisTypeId m_axisType;
  std::shared_ptr<Sumara::CAxisBase> m_axis;
  std::shared_ptr<Sumara::IGroup> m_group;
};

}  // namespace SumaraApi
