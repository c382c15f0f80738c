#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "groupfiles/group_header.h"

// The lines of a group header, made from its fields; `CHeaderReader` reads them back. They are told
// in docs/format.md.

namespace Sumara {

/// RECL of a data type code: bytes of a stored word; 0 for a code outside 1 to 5.
///
/// The code of `long` has 8, although its words have 4 bytes in a binary file.
int RecordLengthOf(std::uint32_t dataType);

/// FORMAT of a data type code, for example "R*4".
std::string FormatOf(std::uint32_t dataType);

/// The value of DIMENS.
std::string DimensionsText(const std::vector<std::uint64_t>& dimensions);

/// FILE to GENLAB. HEADREC is for readers only.
std::string TopText(const HeaderTop& top);

/// VARIAB and VARUNIT.
std::string VariablesText(const HeaderVariables& variables);

/// One axis block. `precision` is the number of digits behind the point, as `PrecisionOf` tells.
std::string AxisText(const AxisDescription& axis, int precision);

/// NVARS and its lines, also if there are none.
std::string NamedParametersText(const std::vector<std::string>& lines);

/// ULOADS of one statistics block.
template <class T>
std::string UloadsText(const std::vector<std::vector<T>>& rows, int precision);

/// MAXTIME, MINTIME or MEAN of one statistics block.
std::string StatisticsText(std::string_view label, const std::vector<double>& values,
                           int precision);

/// The same with each value cut to a whole number, as times on a primary axis are written.
std::string WholeStatisticsText(std::string_view label, const std::vector<double>& values);

}  // namespace Sumara
