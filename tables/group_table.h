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

/// Texts are bytes of the header; units are UTF-8.
struct VariableInfo {
  std::string name;
  std::string quantity;  ///< the code of the header
  std::string unit;      ///< SI unit of the code; empty if the code is not known
};

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
class GroupTable {
 public:
  /// Reads the header once, without its figures. The data file is not looked at.
  static GroupTable Open(const std::string& headerPath);

  const std::string& Path() const;
  const std::string& DataPath() const;  ///< FILE, in the directory of the header
  const std::string& Name() const;      ///< GENLAB
  /// The digits of the extension `.%NN`; -1 if the path has none.
  std::int32_t Number() const;
  SumaraApi::CalculationType Calculation() const;
  const std::string& Content() const;
  const std::string& Config() const;
  const std::vector<std::string>& Parameters() const;  ///< the lines that NVARS counts
  bool IsBinary() const;
  std::uint32_t StoredType() const;  ///< 1 float, 2 double, 3 short, 4 int, 5 `long` of 32 bits
  std::uint64_t HeaderRecords() const;
  const std::vector<std::uint64_t>& Dimensions() const;  ///< DIMENS
  const std::vector<VariableInfo>& Variables() const;
  const std::vector<AxisInfo>& Axes() const;  ///< primary first
  bool HasFigures() const;

  /// Bytes of the data file; none if there is no such file.
  std::optional<std::uint64_t> DataSize() const;
  /// Of a text file all lines are counted.
  Rows CountRows(const StopQuestion& stop = {}) const;

  /// The shape of what `Read` gives.
  /// \throws std::out_of_range for a position that the header does not have,
  ///         std::invalid_argument for a step of 0, TableError 25 if rows are missing.
  Shape ShapeOf(const Selection& selection, const StopQuestion& stop = {}) const;

  /// Reads all columns in one pass, as float, double or int: `out[c * rows + r]` is row r of column
  /// c. Conversions are those of the library: integers keep their low bits, reals are cut toward
  /// zero.
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

  /// Reduces all columns in one pass, with memory for a block of rows.
  /// \throws as Read
  Reduction Reduce(const Selection& selection, const StopQuestion& stop = {}) const;

  /// Figures of some variables, read from the header anew; none if it holds none.
  /// \param at a variable for whose extremes the values of all others are wanted.
  /// \throws TableError 5009 if the header is no longer the one that was opened.
  std::optional<StoredFigures> Figures(const std::vector<std::size_t>& variables,
                                       std::optional<std::size_t> at = {}) const;

 private:
  struct Contents;
  explicit GroupTable(std::shared_ptr<const Contents> contents);

  std::shared_ptr<const Contents> m_contents;  // copies share it
};

}  // namespace Tabulon
