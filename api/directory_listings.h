#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vocabulary/run_files.h"

namespace SumaraApi {

/// The listings of the directories that were asked for last, so that a directory of thousands of
/// runs is not listed for each of them.
///
/// A listing serves while the directory's last write stands. It is not kept at all if that is so
/// young that a change behind it might show the same time.
class DirectoryListings {
 public:
  /// \param directory with a trailing separator.
  /// \throws std::filesystem::filesystem_error as `DirectoryListing`.
  std::shared_ptr<const DirectoryListing> Of(const std::string& directory);

  /// Stands for one call that asks for many runs: while it lasts, the directory that was asked for
  /// last is taken as it was then.
  class Call {
   public:
    explicit Call(DirectoryListings& listings) : m_listings(listings) {
      m_listings.m_isWithinCall = true;
    }
    ~Call() {
      m_listings.m_isWithinCall = false;
      m_listings.m_ofCall.reset();
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

   private:
    DirectoryListings& m_listings;
  };

 private:
  struct Kept {
    std::shared_ptr<const DirectoryListing> listing;
    std::int64_t lastWrite;
  };

  std::shared_ptr<const DirectoryListing> AsItStands(const std::string& directory);

  bool m_isWithinCall = false;
  std::shared_ptr<const DirectoryListing> m_ofCall;
  std::vector<Kept> m_kept;  ///< first the one that was asked for last
};

/// The names of the files of a run, as `DirectoryListing::FilesOf`.
std::vector<std::string> FilesOfRun(const std::string& directory, std::string_view runName);

}  // namespace SumaraApi
