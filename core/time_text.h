#pragma once

#include <ctime>
#include <string>

namespace Sumara {

/// A time as "2024-03-01 09:05:07"; a year has four digits at least.
std::string TimeText(const std::tm& time);

}  // namespace Sumara
