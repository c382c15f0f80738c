#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/name_list.h"

// The fields of a group header as plain values. The text around them is told in docs/format.md.

namespace Sumara {

/// The kinds of axis, as AXIMETH numbers them.
enum class AxisMethod : std::int32_t { kStrings = 1, kInterval = 2, kValues = 3 };

/// The fields above the axis blocks.
struct HeaderTop {
  std::string dataFileName;               ///< FILE
  bool binary = false;                    ///< ACCESS is "D"
  std::uint32_t dataType = 0;             ///< code of FORMAT
  std::uint64_t headerRecordCount = 0;    ///< HEADREC; 0 if absent
  std::string content;                    ///< CONTENT
  std::string config;                     ///< CONFIG
  std::uint32_t axisCount = 0;            ///< NDIMENS less one: 1 or 2
  std::vector<std::uint64_t> dimensions;  ///< DIMENS: variables, secondary size if two axes, points
  std::string name;                       ///< GENLAB
};

/// One axis block.
struct AxisDescription {
  std::string name;      ///< AXISLAB
  std::string quantity;  ///< AXIUNIT
  AxisMethod method = AxisMethod::kInterval;
  double minimum = 0.0;             ///< MIN, of an interval axis
  double step = 0.0;                ///< STEP, of an interval axis
  std::vector<double> values;       ///< AXIVAL
  std::vector<std::string> labels;  ///< AXITICK
  std::uint64_t pointCount = 0;     ///< the entry of DIMENS for this axis
};

/// VARIAB and VARUNIT: as many quantities as names.
struct HeaderVariables {
  NameList names;
  NameList quantities;
};

}  // namespace Sumara
