#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Sumara {

/// The shape of a group's data file.
///
/// Values follow each other with the point running slowest, the secondary index next and the
/// variable fastest. A text file has a line for each point, or for each point and secondary index
/// if there are two axes and more than one variable.
struct DataLayout {
  std::uint64_t variables = 0;
  std::uint64_t secondary = 1;  ///< size of the secondary axis; 1 if there is none
  bool twoAxes = false;
  std::uint64_t headerRecords = 0;  ///< lines of a text file that are not data

  /// DIMENS of a header as `DataDimensions` gives it, with HEADREC.
  static DataLayout Of(const std::vector<std::uint64_t>& dimensions, std::uint64_t headerRecords);

  /// Words from one point to the next; all ones if that is beyond 64 bits.
  std::uint64_t Stride() const;
  /// Words from the start of a point to the value of a variable at a secondary index.
  std::uint64_t Base(std::uint64_t variable, std::uint64_t secondaryIndex) const {
    return OffsetOf(secondaryIndex, variables, variable);
  }
  /// `index * step + base`; all ones if it is beyond 64 bits.
  static std::uint64_t OffsetOf(std::uint64_t index, std::uint64_t step, std::uint64_t base);
  bool Holds(std::uint64_t variable, std::uint64_t secondaryIndex) const {
    return variable < variables && secondaryIndex < secondary;
  }
  /// Points for which `words` words hold a value at `base`.
  std::uint64_t PointsWithin(std::uint64_t words, std::uint64_t base) const;

  bool operator==(const DataLayout&) const = default;

  std::uint64_t LinesPerPoint() const { return twoAxes && variables != 1 ? secondary : 1; }
  std::uint64_t ValuesPerLine() const { return twoAxes && variables == 1 ? secondary : variables; }
};

/// DIMENS without the entries that a group of so many axes has no use for: NDIMENS alone says
/// whether there are two, and the number of points is always the last.
std::vector<std::uint64_t> DataDimensions(std::vector<std::uint64_t> dimensions, std::size_t axes);

/// The product of all entries; all ones if it is beyond 64 bits.
std::uint64_t ProductOf(const std::vector<std::uint64_t>& dimensions);

/// What a read is asked for.
struct DataRequest {
  std::vector<std::size_t> variables;         ///< positions in VARIAB
  std::vector<std::size_t> secondaryIndices;  ///< {0} if there is one axis
  std::uint64_t points = 0;                   ///< 0 asks for all that the file holds
  bool keepBuffer = true;                     ///< false: nothing is kept for the next request
};

/// Where a read puts its values, and the words in which its failures speak of them.
template <class U>
class IDataTarget {
 public:
  virtual ~IDataTarget() = default;

  /// The vector of a variable at a secondary index; the read replaces its content.
  virtual std::vector<U>& Values(std::size_t variable, std::size_t secondaryIndex) = 0;
  /// Called when that vector holds its data.
  virtual void Filled(std::size_t variable, std::size_t secondaryIndex) = 0;
  virtual std::string SeriesContext(std::size_t variable) const = 0;
  virtual std::string GroupContext() const = 0;
};

}  // namespace Sumara
