#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "api/types.h"

namespace SumaraApi {

/// The runs that the process keeps, by the path of their termination file, whatever its case.
///
/// A run is found by the path that it holds itself. Many at a time are put in order only when
/// somebody seeks one. What fails leaves the cache as it was.
class RunCache {
 public:
  /// Null if there is none.
  RunPtr Find(std::string_view path);
  /// \return the kept run of that path: this one, unless there was one.
  RunPtr Add(const RunPtr& run);
  /// Keeps these; they take the places of those of the same paths, and later ones of earlier ones.
  void Replace(const std::vector<RunPtr>& runs);
  void Remove(std::string_view path);
  void Clear();
  /// Gives back the buffers of all runs, and from now on after each read.
  void ReleaseReaders();

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view path) const;
    std::size_t operator()(const RunPtr& run) const;
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(const RunPtr& a, std::string_view b) const;
    bool operator()(std::string_view a, const RunPtr& b) const { return (*this)(b, a); }
    bool operator()(const RunPtr& a, const RunPtr& b) const;
  };
  using Runs = std::unordered_set<RunPtr, Hash, Equal>;

  Runs& InOrder();

  Runs m_runs;
  std::vector<RunPtr> m_added;  ///< since somebody sought one; they replace those of `m_runs`
};

}  // namespace SumaraApi
