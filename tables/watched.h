#pragma once

#include <cerrno>
#include <cstdint>

#include "core/exceptions.h"
#include "core/file.h"
#include "core/paths.h"

namespace Tabulon {

/// A reader that tells the state of the file that it has open, and the place that it has come to.
template <class Reader>
class Watched final : public Reader {
 public:
  using Reader::Reader;

  const Sumara::File& OpenFile() const { return this->m_stream.SystemFile(); }
  /// \throws CIOException 5009 if the system does not tell it: what is not known is like nothing.
  Sumara::FileState State() const {
    errno = 0;
    const Sumara::FileState state = OpenFile().State();
    if (state == Sumara::FileState{})
      throw CIOException(5009, this->m_path, Sumara::SystemErrorText(errno));
    return state;
  }

  std::uint64_t Position() const { return this->m_stream.Tell(); }
};

}  // namespace Tabulon
