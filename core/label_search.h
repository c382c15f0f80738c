#pragma once

#include <cstdint>
#include <string_view>

#include "core/exceptions.h"

// The failures of a search for a labelled line, for those who search without a file.

namespace Sumara {

/// A label that is not there: 5018 up to the end of the file, 5019 on the next line.
/// \param refusal the code for a stream that could not be searched, or 0.
CIOException LabelNotFound(std::string_view label, std::string_view path, std::int32_t code,
                           std::int32_t refusal = 0);

/// A line that cannot be read, or has no label: 5009.
/// \param current the label so far.
CIOException UnreadableLine(std::string_view sought, std::string_view current,
                            std::string_view path, std::string_view reason = {});

}  // namespace Sumara
