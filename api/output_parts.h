#pragma once

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "api/independent_variable.h"
#include "api/types.h"
#include "core/exceptions.h"
#include "model/axes.h"
#include "model/group_base.h"
#include "model/model_context.h"
#include "vocabulary/quantity_codes.h"

// What output groups over one and over two independent variables are made of.

namespace SumaraApi {

inline Sumara::GroupDescription DescribeOutput(std::string const& groupPath,
                                               std::string const& groupName,
                                               std::string const& dataSource,
                                               std::string const& groupConfig,
                                               VariableDataFormat variableDataFormat) {
  Sumara::GroupDescription description;
  description.path = groupPath;
  description.binary = variableDataFormat == VariableDataFormat::Binary;
  description.name = groupName;
  description.config = groupConfig;
  description.dataSource = dataSource;
  return description;
}

/// The axis of an independent variable for a new group.
///
/// A group marks the axis that it is given as its own. The variable may belong to a group of a run,
/// whose axis has to stay as it is: the new group gets a copy.
inline std::shared_ptr<Sumara::CAxisBase> AxisForOutput(const IndependentVariable& variable) {
  return variable.GetAxis()->Copy();
}

/// Adds a series without data. Series is a `Sumara::CSeries1D<T>` or `Sumara::CSeries2D<T>`.
template <class Series>
std::shared_ptr<Series> AddOutputSeries(Sumara::IGroup& group, std::string const& name,
                                        std::string const& siUnit) {
  try {
    auto series = std::make_shared<Series>(name, CodeForWriting(siUnit));
    group.AddSeries(series, /*renameOnClash=*/false);
    return series;
  } catch (const Sumara::CException& refusal) {
    switch (refusal.ErrorCode()) {
      case 3:
        throw Sumara::CException(175, {}, refusal.what());
      case 4:
        throw Sumara::CException(176, {}, refusal.what());
      default:
        throw;
    }
  }
}

/// Adds a series, and has `addPoints` put its points there: both, or nothing where memory runs out.
/// Points that are refused leave the series without data.
template <class Series, class AddPoints>
void AddOutputSeriesWithData(Sumara::IGroup& group, std::string const& name,
                             std::string const& siUnit, AddPoints addPoints) {
  const auto series = AddOutputSeries<Series>(group, name, siUnit);
  try {
    addPoints(*series);
  } catch (const std::bad_alloc&) {
    group.RemoveLastSeries();
    throw;
  }
}

/// The series of a name, whatever its case.
template <class Series>
Series& FindOutputSeries(const Sumara::IGroup& group, std::string const& name) {
  try {
    const std::uint64_t index = group.GetSeriesIndex(name, /*exact=*/false);
    return static_cast<Series&>(*group.GetSeriesByPlace()[index]);
  } catch (const Sumara::CException& miss) {
    throw Sumara::CException(
        159, "Group name: '" + group.GetName() + "'; Variable name requested: '" + name + "'",
        miss.what());
  }
}

}  // namespace SumaraApi
