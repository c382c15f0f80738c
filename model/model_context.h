#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Where a failure of the model happened, in words. The parts without a group stand in
// core/error_context.h.

namespace Sumara {

class CAxisBase;
class IGroup;
class ISeries;

/// "File path: ", the directory and the name of the group; or what to say of a null group.
std::string GroupContext(const IGroup* group);

/// The series and, if it has one, its group.
std::string SeriesContext(const ISeries* series);

/// A series by name and its group, which may be null.
std::string SeriesContext(std::string_view name, const IGroup* group);

/// A series by name in a group of that context.
std::string SeriesContextIn(std::string_view name, std::string_view groupContext);

/// A value that is sought on an axis.
std::string AxisValueContext(std::string_view name, std::string_view value);
std::string AxisValueContext(std::string_view name, double value);

/// An axis at an index, and its group.
std::string AxisContext(std::string_view name, std::uint64_t index, const IGroup* group);

/// An axis with its position, and its group, which may be null.
std::string AxisPositionContext(std::string_view name, std::uint32_t position, const IGroup* group);

/// A number as a stream writes it by default.
std::string NumberText(double value);

}  // namespace Sumara
