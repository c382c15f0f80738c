#include "groupfiles/kept_figures.h"

#include <memory>
#include <span>
#include <utility>

#include "core/file.h"

namespace Sumara {

void KeptFigures::Set(HeaderFigures figures) {
  m_figures = std::move(figures);
  if (!m_inUse) Keep(m_figures.text.size);
}

bool KeptFigures::Restore(const std::string& path) {
  if (m_figures.text.data != nullptr || m_figures.rows.BlockCount() == 0) return true;
  File file;
  if (file.Open(path, File::Access::kRead) != 0 || file.State() != m_figures.file) return false;
  const std::size_t size = m_figures.size;
  FileBytes text{std::make_unique_for_overwrite<char[]>(size), size};
  int error = 0;
  const std::span<char> target(text.data.get(), size);
  if (file.ReadAt(m_figures.start, target, error) != size) return false;
  if (file.State() != m_figures.file) return false;  // written meanwhile
  m_figures.text = std::move(text);
  return true;
}

void KeptFigures::Begin() {
  m_inUse = true;
  Forget();
}

void KeptFigures::End() {
  m_inUse = false;
  Keep(m_figures.text.size);
}

void KeptFigures::DropKept() noexcept {
  m_figures.text = {};
  Forget();
}

}  // namespace Sumara
