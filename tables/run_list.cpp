#include "tables/run_list.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "core/reader.h"
#include "core/text.h"
#include "tables/failures.h"
#include "tables/run_directory.h"
#include "vocabulary/calculation_kinds.h"
#include "vocabulary/completion_phrases.h"

namespace Tabulon {
namespace {

using SumaraApi::CompletionState;

void RequireDirectory(const std::string& path) {
  if (AsTableErrors(path, [&] { return Sumara::IsDirectory(path); })) return;
  throw TableError::Of(Sumara::CException(139, Sumara::DirectoryContext(path)), path);
}

/// The state of a listed run; a file that went meanwhile, or that may not be read, tells nothing.
CompletionState StateOf(const RunFiles& run) {
  try {
    return CompletionOf(run.directory + run.termination);
  } catch (const TableError&) {
    return CompletionState::Unknown;
  }
}

/// The run of a directory to which a file name leads, spelled so if there is one.
std::optional<RunFiles> Chosen(std::vector<RunFiles> runs, std::string_view fileName) {
  for (const std::string_view name : {fileName, Sumara::StemOf(fileName)}) {
    for (RunFiles& run : runs) {
      if (run.name == name) return std::move(run);
    }
  }
  for (const std::string_view name : {fileName, Sumara::StemOf(fileName)}) {
    for (RunFiles& run : runs) {
      if (Sumara::EqualsNoCase(run.name, name)) return std::move(run);
    }
  }
  return std::nullopt;
}

}  // namespace

void ListRuns(const std::string& root, const ListOptions& options,
              const std::function<void(RunFiles&&)>& visit,
              const std::function<void(UnreadableDirectory&&)>& unreadable,
              const StopQuestion& stop) {
  RequireDirectory(root);
  std::vector<std::string> pending{root};
  Sumara::WithTrailingSeparator(pending.back());
  while (!pending.empty()) {
    const std::string path = std::move(pending.back());
    pending.pop_back();
    Ask(stop);
    try {
      const RunDirectory directory(path, stop);
      for (RunFiles& run : directory.Runs()) {
        if (options.completion) {
          Ask(stop);
          run.state = StateOf(run);
        }
        visit(std::move(run));
      }
      if (!options.recursive) continue;
      const std::vector<std::string> below = directory.Directories();
      std::for_each(below.rbegin(), below.rend(), [&](const std::string& name) {
        pending.push_back(path + name + Sumara::kSeparator);
      });
    } catch (const std::filesystem::filesystem_error& failure) {
      unreadable({path, failure.code().message()});
    }
  }
}

std::optional<RunFiles> FindRun(const std::string& path, bool completion,
                                const StopQuestion& stop) {
  const std::string directory = Sumara::DirectoryOf(path);
  RequireDirectory(directory.empty() ? "." : directory);
  try {
    std::optional<RunFiles> run =
        Chosen(RunDirectory(directory, stop).Runs(), Sumara::FileNameOf(path));
    if (run && completion) run->state = StateOf(*run);
    return run;
  } catch (const std::filesystem::filesystem_error& failure) {
    const CIOException cause(5009, directory, failure.code().message());
    throw TableError::Of(cause, directory);
  }
}

CompletionState CompletionOf(const std::string& terminationPath) {
  return AsTableErrors(terminationPath, [&] {
    return SumaraApi::CompletionStateOf(
        Sumara::ReadWholeFile(terminationPath, "run termination file", /*trim=*/false));
  });
}

SumaraApi::CalculationType CalculationOfHeader(const std::string& headerPath) {
  return AsTableErrors(headerPath, [&] {
    CReader<float, float> header(headerPath, static_cast<std::int32_t>(FileMode::kReadText));
    header.Open();
    std::string content;
    header.SeekLabel("CONTENT", content, {.rewind = true});
    Sumara::StripQuotes(content);
    return SumaraApi::CalculationTypeOf(content);
  });
}

}  // namespace Tabulon
