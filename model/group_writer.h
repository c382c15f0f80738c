#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "model/file_writer.h"
#include "model/igroup.h"

// Writes the two files of a group. The formats are told in docs/format.md.

namespace Sumara {

/// The group as the routines below take it. Each refuses an empty holder. \throws CException 63
struct GroupHolder {
  std::shared_ptr<IGroup> group;
};

/// Writes the header, with the statistics blocks if the group holds data, or is being written in
/// chunks, and they are not switched off. Groups that came from disk and previews are written too.
void WriteHeader(const GroupHolder& holder, OutputFile& file, bool withoutStatistics);

/// Writes the data and tells the axes how many points there are. T is the group's type in memory;
/// values are stored as the group's target type, or as T if it has none.
///
/// A group that is written in chunks goes to the same file with one call a chunk.
/// \param check whether `CheckSerialisable` is asked first.
/// \throws CException 64 if the group is no `CGroup1D<T>` or `CGroup2D<T>`, 65 for an unknown
///         target type, 88 if a series is shorter than the first.
/// \throws std::ios_base::failure
template <class T>
void Write(const GroupHolder& holder, OutputFile& file, bool check);

/// RECL and FORMAT, of the target type or, if that is unset or unknown, of the group's type.
int GetRecordLength(const GroupHolder& holder);
std::string GetDataFormat(const GroupHolder& holder);

/// The value of DIMENS.
std::string GetDimens(const GroupHolder& holder);

/// The statistics blocks: one, or one for each index of the secondary axis.
/// \throws CException 131, 61, and what the statistics throw
std::string GetHeaderStats(const GroupHolder& holder);

/// The block of a labelled axis. \throws CException 37, 34
std::string GetLabelledAxisHeader(const GroupHolder& holder, std::uint32_t position);

/// Refuses a group whose data may not be written. \throws CException 89, 90, 91, 88
void CheckSerialisable(const GroupHolder& holder);

/// Tells the axes how many points the group has now.
void UpdateAxisPointCounts(const GroupHolder& holder);

}  // namespace Sumara
