#pragma once

#include <string>
#include <vector>

#include "core/reader.h"
#include "groupfiles/figure_rows.h"
#include "groupfiles/group_header.h"

namespace Sumara {

/// Reads a group header in one pass, forward.
///
/// The calls follow the file: `ReadTop`, `ReadAxis` for each axis in file order (of two, the
/// secondary axis comes first), `ReadNamedParameters`, `ReadFigures`.
/// `ReadVariables` starts from the top again. A failure has the code of its field, with the path;
/// the fields FILE, ACCESS, FORM and RECL leave the failure of the search as it is.
class CHeaderReader : public CReader<float, float> {
 public:
  explicit CHeaderReader(std::string path);

  /// Opens the file. \throws Sumara::CException 81
  void Start();

  HeaderTop ReadTop();

  /// \param entry the position in DIMENS of the size of this axis.
  AxisDescription ReadAxis(const HeaderTop& top, std::size_t entry);

  /// The NVARS lines, as they stand; none if NVARS is not on the next line.
  std::vector<std::string> ReadNamedParameters();

  /// The figures that follow, of `variableCount` variables, in at most so many blocks: found and
  /// counted, but not converted. A header without statistics has no block.
  /// \throws CException as `FindFigureRows`; 119 if the rest of the file cannot be read.
  HeaderFigures ReadFigures(std::uint64_t variableCount, std::uint64_t mostBlocks);

  /// The same of a header whose figures are known to begin at `position` of the file; what stands
  /// before them is not looked at.
  HeaderFigures ReadFiguresAt(std::uint64_t position, std::uint64_t variableCount,
                              std::uint64_t mostBlocks);

  HeaderVariables ReadVariables();

 private:
  std::string Context() const;
  std::string Field(const char* label, std::int32_t code, bool continuation = true);
  std::string QuotedField(const char* label, std::int32_t code);
  NameList QuotedList(std::string value, std::int32_t code) const;
  double NumberField(const char* label, std::int32_t code);
  std::uint64_t ReadHeaderRecordCount();
  void ReadAxisValues(AxisDescription& axis);
};

/// The data type code of a FORMAT value, or 0 if there is none of that spelling.
std::uint32_t DataTypeOfFormat(std::string_view format);

}  // namespace Sumara
