#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/io_base.h"
#include "groupfiles/data_layout.h"

namespace Sumara {

/// Fills series with the values of a data file, delivered as U whatever the type in the file.
template <class U>
class IGroupDataReader {
 public:
  virtual ~IGroupDataReader() = default;

  /// Reads the requested values into `target`.
  ///
  /// A request for a definite number of points fails if the file holds fewer; one for all points
  /// takes what there is. \return the number of points delivered. \throws Sumara::CException 25,
  /// with the cause as inner exception.
  virtual std::uint64_t Read(const DataLayout& layout, const DataRequest& request,
                             IDataTarget<U>& target) = 0;
};

/// Makes the reader of a data file that stores the type of code `storedType`: an
/// `IGroupDataReader<U>`.
/// \throws Sumara::CException 65 for a code outside 1 to 5.
template <class U>
std::unique_ptr<CIOBase> MakeGroupDataReader(std::uint32_t storedType, std::string path,
                                             bool binary, std::vector<std::uint64_t> dimensions);

}  // namespace Sumara
