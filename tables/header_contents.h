#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/file.h"
#include "groupfiles/data_layout.h"
#include "groupfiles/group_header.h"
#include "tables/group_table.h"

namespace Tabulon {

/// What a header tells, without its figures.
struct HeaderContents {
  std::string path;
  std::string dataPath;
  std::int32_t number = -1;
  Sumara::HeaderTop top;
  Sumara::DataLayout layout;
  SumaraApi::CalculationType calculation = SumaraApi::CalculationType::Unknown;
  std::vector<VariableInfo> variables;
  std::vector<AxisInfo> axes;  ///< primary first
  std::vector<std::string> parameters;
  std::optional<std::uint64_t> figures;  ///< where they begin in the file, if it has any
  Sumara::FileState file;                ///< when it was read

  std::uint64_t RowsExpected() const { return top.dimensions.back(); }
};

struct GroupTable::Contents : HeaderContents {};

/// \throws TableError
HeaderContents ReadHeader(const std::string& path);

}  // namespace Tabulon
