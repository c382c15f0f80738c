#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/group1d.h"
#include "model/group2d.h"

namespace testing_support {

inline Sumara::GroupDescription DescriptionOf(const std::string& path) {
  return {path, /*binary=*/true, "Loads", "TRANSIENT", "UserDefined", ""};
}

inline std::shared_ptr<Sumara::CAxisBase> Interval(double minimum = 0.0, double step = 0.5) {
  return std::make_shared<Sumara::CIntervalAxis>("Time", "T", minimum, step);
}
inline std::shared_ptr<Sumara::CAxisBase> Values(std::vector<double> labels) {
  return std::make_shared<Sumara::CLabelledValueAxis>("Radius", "L", std::move(labels),
                                                      Sumara::kPrimary);
}
inline std::shared_ptr<Sumara::CAxisBase> Strings(std::vector<std::string> labels) {
  return std::make_shared<Sumara::CLabelledStringAxis>("Part", "N", std::move(labels),
                                                       Sumara::kPrimary);
}

/// A new group for output, "run.%01" in the working directory: its context reads "File path:
/// ./Loads".
template <class T>
std::shared_ptr<Sumara::CGroup1D<T>> NewGroup1D(
    const std::shared_ptr<Sumara::CAxisBase>& axis = Interval()) {
  return std::make_shared<Sumara::CGroup1D<T>>(DescriptionOf("run.%01"), axis);
}
template <class T>
std::shared_ptr<Sumara::CGroup2D<T>> NewGroup2D(
    const std::shared_ptr<Sumara::CAxisBase>& primary,
    const std::shared_ptr<Sumara::CAxisBase>& secondary) {
  return std::make_shared<Sumara::CGroup2D<T>>(DescriptionOf("run.%01"), primary, secondary);
}

/// A series in a group, with points.
template <class T>
std::shared_ptr<Sumara::CSeries1D<T>> Add(Sumara::CGroup1D<T>& group, const std::string& name,
                                          const std::vector<T>& points = {}) {
  auto series = std::make_shared<Sumara::CSeries1D<T>>(name, "FL");
  group.AddSeries(series, /*renameOnClash=*/false);
  if (!points.empty()) series->AddSeriesPoints(points, /*check=*/true);
  return series;
}
template <class T>
std::shared_ptr<Sumara::CSeries2D<T>> Add(Sumara::CGroup2D<T>& group, const std::string& name,
                                          const std::vector<std::vector<T>>& vectors = {}) {
  auto series = std::make_shared<Sumara::CSeries2D<T>>(name, "FL");
  group.AddSeries(series, /*renameOnClash=*/false);
  if (!vectors.empty()) series->AddSeriesPoints(vectors, /*check=*/true);
  return series;
}

}  // namespace testing_support
