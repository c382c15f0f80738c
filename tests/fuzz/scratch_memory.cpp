#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/scratch.h"

namespace Fuzzing {

Scratch::Scratch() : m_directory(MemoryFiles::kDirectory) {}

Scratch::~Scratch() = default;

std::string Scratch::Write(const std::string& name, std::string_view bytes) {
  std::string path = Path(name);
  MemoryFiles::Write(path, bytes);
  return path;
}

void Scratch::Remove(const std::string& name) { MemoryFiles::Remove(Path(name)); }

}  // namespace Fuzzing
