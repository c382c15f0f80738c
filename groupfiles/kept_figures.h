#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "groupfiles/figure_rows.h"
#include "groupfiles/kept_data.h"

namespace Sumara {

/// The figures of a header between requests. Their text counts among the kept data of all groups,
/// and may be given up between two requests; where their rows stand is not forgotten.
class KeptFigures final : private KeptData {
 public:
  /// A request: what is here, or is set or restored meanwhile, stays up to its end.
  class Use {
   public:
    explicit Use(KeptFigures& figures) : m_figures(figures) { m_figures.Begin(); }
    ~Use() { m_figures.End(); }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    std::string_view Text() const { return m_figures.m_figures.text.View(); }

   private:
    KeptFigures& m_figures;
  };

  void Set(HeaderFigures figures);

  const FigureRows& Rows() const { return m_figures.rows; }

  /// Reads a text that was given up again, for the present use.
  /// \param path of the header.
  /// \return false, and nothing is read, if the header no longer stands as it was.
  bool Restore(const std::string& path);

 private:
  void Begin();
  void End();
  void DropKept() noexcept override;

  HeaderFigures m_figures;
  bool m_inUse = false;
};

}  // namespace Sumara
