#pragma once

#include <cstdint>

#include "core/file.h"

namespace Tabulon {

/// A reader that tells the state of the file that it has open, and the place that it has come to.
template <class Reader>
class Watched final : public Reader {
 public:
  using Reader::Reader;

  const Sumara::File& OpenFile() const { return this->m_stream.SystemFile(); }
  Sumara::FileState State() const { return OpenFile().State(); }

  std::uint64_t Position() const { return this->m_stream.Tell(); }
};

}  // namespace Tabulon
