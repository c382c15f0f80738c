#pragma once

#include <cstdint>
#include <string>

#include "core/exceptions.h"
#include "model/group_base.h"
#include "model/model_context.h"

namespace SumaraApi {

/// The statistics of a variable, as failures number them.
enum class StatsType : std::int32_t { kMaximum = 0, kMinimum = 1, kMean = 2 };

/// The extreme of one variable where the values of all are known.
using Extremum = Sumara::Extreme;

/// The code of the failure to get a statistic. \throws Sumara::CException 132
inline std::int32_t FailureCodeOf(StatsType type) {
  switch (type) {
    case StatsType::kMaximum:
      return 151;
    case StatsType::kMinimum:
      return 152;
    case StatsType::kMean:
      return 150;
  }
  throw Sumara::CException(132,
                           "Stats type ID = " + std::to_string(static_cast<std::int32_t>(type)));
}

/// The code of the failure to get a contemporaneous value. \throws Sumara::CException 133
inline std::int32_t FailureCodeOf(Extremum extremum) {
  switch (extremum) {
    case Extremum::kMaximum:
      return 154;
    case Extremum::kMinimum:
      return 155;
  }
  throw Sumara::CException(133);
}

/// Calls `get`; what the library refuses comes with `code`, `context` and the refusal as inner
/// text.
template <class Get>
decltype(auto) Wrapped(std::int32_t code, const std::string& context, Get&& get) {
  try {
    return get();
  } catch (const CExceptionBase& failure) {
    throw Sumara::CException(code, context, failure.what());
  }
}

template <class T>
double MeanOf(Sumara::CGroupBase<T>& group, const std::string& name, std::uint64_t secondary) {
  return group.Statistics().Get(Sumara::StatisticKind::kMean, name, secondary,
                                /*preferComputed=*/true);
}

/// The value of the variable at `column` where the variable `name` has its extreme.
template <class T>
T UloadOf(Sumara::CGroupBase<T>& group, const std::string& name, Extremum extremum,
          std::uint64_t column, std::uint64_t secondary) {
  return group.Statistics().GetUload(group.GetSeriesIndex(name, /*exact=*/true), extremum, column,
                                     secondary);
}

/// The value of `other`, whatever its case, where the variable `name` has its extreme.
template <class T>
T ContemporaneousOf(Sumara::CGroupBase<T>& group, const std::string& name, Extremum extremum,
                    const std::string& other, std::uint64_t secondary) {
  return UloadOf(group, name, extremum, group.GetSeriesIndex(other, /*exact=*/false), secondary);
}

/// The extreme itself: a variable's own value where it has it.
template <class T>
T ExtremeOf(Sumara::CGroupBase<T>& group, const std::string& name, Extremum extremum,
            std::uint64_t secondary) {
  return UloadOf(group, name, extremum, group.GetSeriesIndex(name, /*exact=*/true), secondary);
}

}  // namespace SumaraApi
