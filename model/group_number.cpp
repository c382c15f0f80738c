#include "model/group_number.h"

#include <algorithm>
#include <stdexcept>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/text.h"

namespace Sumara {

std::uint64_t ParseGroupNumber(const std::string& path) {
  const std::size_t place = path.rfind(".%");
  if (place == std::string::npos) throw CException(80, FileContext(path));
  if (place == 0) throw CException(60, FileContext(path));
  const std::string digits = path.substr(place + 2);
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), IsDigit))
    throw CException(80, FileContext(path));
  try {
    return static_cast<std::uint64_t>(std::stoi(digits));
  } catch (const std::out_of_range&) {
    throw CException(80, FileContext(path), "stoi argument out of range");
  }
}

std::string GroupNumberToExtension(std::uint64_t number, GroupFile kind) {
  if (number == kNoGroupNumber) {
    throw CException(67, "Group number may not be used in a file extension (number = " +
                             std::to_string(number) + ")");
  }
  const char* const mark = kind == GroupFile::kHeader ? ".%" : kind == GroupFile::kData ? ".$" : "";
  return std::string(mark) + (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace Sumara
