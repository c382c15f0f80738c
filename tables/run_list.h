#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tables/table_error.h"
#include "vocabulary/enumerations.h"

namespace Tabulon {

/// A group header by its file name, as the directory lists it.
struct HeaderFile {
  std::string name;
  std::int32_t number = 0;  ///< NN of the extension; -1 if that is no number of 32 bits
};

/// The files of a run, by their names in its directory. Empty names stand for files that are not
/// there.
struct RunFiles {
  std::string directory;  ///< with a trailing separator; empty for that of the process
  std::string name;       ///< base name, as the termination file has it
  std::string termination;
  std::string messages;
  std::string verification;
  std::vector<HeaderFile> headers;  ///< in the order of their numbers, each number once
  /// Extensions of files that tell the kind of a calculation without header: ".$mx", ".$fp",
  /// ".sea".
  std::vector<std::string> otherKinds;
  std::optional<SumaraApi::CompletionState> state;  ///< if it was asked for

  std::string Path() const { return directory + name; }  ///< without an extension
};

struct UnreadableDirectory {
  std::string path;
  std::string text;  ///< the system's words
};

struct ListOptions {
  bool recursive = true;
  bool completion = false;  ///< reads each termination file
};

/// Tells the runs below `root`, a directory after the other, each with its runs in the natural
/// order of their names and before the directories in it. Links to directories are not followed.
///
/// Nothing is kept between calls: any number of threads may list at a time.
/// \param visit is given each run.
/// \param unreadable is given each directory that cannot be listed, also the root; the walk goes
/// on. \throws TableError 139 if there is no directory `root`, Stopped; what the two functions
/// throw.
void ListRuns(const std::string& root, const ListOptions& options,
              const std::function<void(RunFiles&&)>& visit,
              const std::function<void(UnreadableDirectory&&)>& unreadable,
              const StopQuestion& stop = {});

/// The files of the run to which `path` leads: that of any of its files, or without an extension.
/// Its directory alone is listed. A base name in another case serves if there is no exact one.
/// \return none if there is no termination file.
/// \throws TableError 139 if there is no directory, 5009 if it cannot be listed; Stopped.
std::optional<RunFiles> FindRun(const std::string& path, bool completion = false,
                                const StopQuestion& stop = {});

/// How a run ended, by the text of its termination file. \throws TableError 5000, 5009
SumaraApi::CompletionState CompletionOf(const std::string& terminationPath);

/// The kind of calculation of a header, which is read up to CONTENT only.
SumaraApi::CalculationType CalculationOfHeader(const std::string& headerPath);

}  // namespace Tabulon
