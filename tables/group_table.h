#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tables/reduction.h"
#include "tables/selection.h"
#include "tables/stored_figures.h"
#include "tables/table_error.h"
#include "vocabulary/enumerations.h"

namespace Tabulon {

/// A variable of a group. Texts are bytes of the header; units are UTF-8.
struct VariableInfo {
  std::string name;
  std::string quantity;  ///< the code of the header
  std::string unit;      ///< SI unit of the code; empty if the code is not known
};

/// An axis of a group. Texts are as those of a variable.
struct AxisInfo {
  std::string name;
  std::string quantity;
  std::string unit;
  SumaraApi::AxisTypeId kind = SumaraApi::AxisTypeId::IntervalAxis;
  std::uint64_t count = 0;          ///< the entry of DIMENS
  double minimum = 0.0;             ///< of an interval axis: value i is i * step + minimum
  double step = 0.0;                ///< likewise
  std::vector<double> values;       ///< of an axis of values, as many as the header lists
  std::vector<std::string> labels;  ///< of an axis of labels, likewise
};

/// How far a data file has come.
struct Rows {
  std::uint64_t expected = 0;  ///< the last entry of DIMENS
  std::uint64_t found = 0;     ///< whole rows that are there now; more than expected in a long file
  bool torn = false;           ///< something stands behind the last whole row
};

/// Gives a place for each column, with room for `Shape::rows` values.
template <class T>
using Room = std::function<std::vector<T*>(const Shape& shape)>;

/// A group's header as it was at `Open`, and the road to its data file, which each call opens anew.
///
/// Nothing changes after `Open` and nothing is kept open: any number of threads may call any member
/// of one object. What a call returns is the data file at one time: if it is written meanwhile, the
/// call reads again, and fails if it does not come to rest.
///
/// All members throw TableError for a file that is missing, damaged or cut off.
///
///     const auto table = Tabulon::GroupTable::Open("run.%01");
///     const Tabulon::Selection loads{.variables = {0, 3}, .first = 1000};
///     const auto [columns, rows] = table.ShapeOf(loads);
///     std::vector<float> values(columns * rows);
///     table.Read<float>(loads, values);  // values[c * rows + r]
///     const double highest = table.Reduce(loads).maximum[0];
class GroupTable {
 public:
  /// Reads the header once, without its figures. The data file is not looked at.
  static GroupTable Open(const std::string& headerPath);

  const std::string& Path() const;      ///< as it was given
  const std::string& DataPath() const;  ///< FILE, in the directory of the header
  const std::string& Name() const;      ///< GENLAB
  /// The digits of the extension `.%NN`; -1 if the path has none.
  std::int32_t Number() const;
  SumaraApi::CalculationType Calculation() const;      ///< by CONTENT
  const std::string& Content() const;                  ///< CONTENT, without quotes
  const std::string& Config() const;                   ///< CONFIG, likewise
  const std::vector<std::string>& Parameters() const;  ///< the lines that NVARS counts
  bool IsBinary() const;                               ///< by ACCESS
  std::uint32_t StoredType() const;     ///< 1 float, 2 double, 3 short, 4 int, 5 `long` of 32 bits
  std::uint64_t HeaderRecords() const;  ///< HEADREC: lines of a text file before its data
  /// DIMENS: variables, values of the secondary axis if there are two axes, points. The header may
  /// list more variables or fewer.
  const std::vector<std::uint64_t>& Dimensions() const;
  const std::vector<VariableInfo>& Variables() const;  ///< VARIAB and VARUNIT, in their order
  const std::vector<AxisInfo>& Axes() const;           ///< primary first
  bool HasFigures() const;                             ///< whether ULOADS follows the axes

  /// Bytes of the data file; none if there is no such file.
  std::optional<std::uint64_t> DataSize() const;
  /// How many rows the data file holds now. Of a text file all lines are counted.
  /// \throws Stopped
  Rows CountRows(const StopQuestion& stop = {}) const;

  /// The shape of what `Read` gives.
  /// \throws std::out_of_range for a position that the header does not have,
  ///         std::invalid_argument for a step of 0, TableError 25 if rows are missing.
  Shape ShapeOf(const Selection& selection, const StopQuestion& stop = {}) const;

  /// Reads all columns in one pass, as float, double or int: `out[c * rows + r]` is row r of column
  /// c, of the shape (columns, rows) that `ShapeOf` tells. Conversions are those of the library:
  /// integers keep their low bits, reals are cut toward zero.
  ///
  /// After a failure `out` holds anything.
  /// \throws as ShapeOf; std::invalid_argument if `out` has another size; Stopped.
  template <class T>
  void Read(const Selection& selection, std::span<T> out, const StopQuestion& stop = {}) const;

  /// The same into memory that is made when the shape is known, so that the file is opened once.
  /// \throws also what `room` throws
  template <class T>
  void Read(const Selection& selection, const Room<T>& room, const StopQuestion& stop = {}) const;

  /// The same into columns that need not lie behind each other, each with room for `rows` values.
  template <class T>
  void Read(const Selection& selection, std::span<T* const> columns, std::uint64_t rows,
            const StopQuestion& stop = {}) const;

  /// Reduces all columns of the data file in one pass, with memory for a block of rows; figures
  /// that the header holds are not looked at. Element c of a result belongs to column c.
  /// \throws as ShapeOf; Stopped.
  Reduction Reduce(const Selection& selection, const StopQuestion& stop = {}) const;

  /// Figures of some variables, as they stand in the header, which is read anew; none if it holds
  /// none. The data file is not looked at.
  /// \param at a variable for whose extremes the values of all others are wanted.
  /// \throws std::out_of_range for a variable that the header does not have, TableError 119 to 122
  ///         for a damaged block, 5009 if the header is no longer the one that was opened.
  std::optional<StoredFigures> Figures(const std::vector<std::size_t>& variables,
                                       std::optional<std::size_t> at = {}) const;

 private:
  struct Contents;
  explicit GroupTable(std::shared_ptr<const Contents> contents);

  std::shared_ptr<const Contents> m_contents;  // copies share it
};

}  // namespace Tabulon
