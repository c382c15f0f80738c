#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/control.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/run_walk.h"
#include "tests/fuzz/scratch.h"

// A run on disk, and what must hold for any run, however damaged.

namespace Fuzzing {

inline constexpr std::size_t kMostGroups = 3;

/// The two files of a group.
struct GroupFiles {
  std::string header;
  std::string data;
};

/// The number of a group in the names of its files.
inline std::string GroupNumberText(std::size_t place) { return "0" + std::to_string(place + 1); }

/// Makes the run "run" of these groups.
inline void WriteRun(const std::vector<GroupFiles>& groups) {
  Scratch& scratch = Scratch::Instance();
  scratch.Write("run.$TE", "Run completed\n");
  for (std::size_t place = 0; place < kMostGroups; ++place) {
    const std::string number = GroupNumberText(place);
    if (place < groups.size()) {
      scratch.Write("run.%" + number, groups[place].header);
      scratch.Write("run.$" + number, groups[place].data);
    } else {
      scratch.Remove("run.%" + number);
      scratch.Remove("run.$" + number);
    }
  }
}

inline constexpr SumaraApi::DataTypeSpecifier kReadingTypes[] = {
    SumaraApi::DataTypeSpecifier::ReadAsSerialisedType, SumaraApi::DataTypeSpecifier::ReadAsFloat32,
    SumaraApi::DataTypeSpecifier::ReadAsFloat64};

/// Walks the run, as it is read with or without buffers. `prepare` is told of the walk before it
/// begins. \return all that the run told.
inline std::string WalkRun(const Ways& ways, const Reading& reading,
                           const std::function<void(RunWalk&)>& prepare) {
  RunWalk road(OpenRun(Scratch::Instance().Directory(), "run", reading), ways);
  prepare(road);
  std::string told = road.Walk();
  SumaraApi::TabulonApi::ClearRuns();  // what is kept now is lost
  return told;
}

/// Walks the run with and without buffers, which must make no difference.
inline void CheckWalks(const Ways& ways, SumaraApi::DataTypeSpecifier type,
                       const std::function<void(RunWalk&)>& prepare) {
  RequireSame(WalkRun(ways, {/*buffered=*/false, type}, prepare),
              WalkRun(ways, {/*buffered=*/true, type}, prepare),
              "reading without buffers gives other answers than with them");
}

/// Loads all of each group at once, as any of the five types.
inline void LoadWholeGroups(std::size_t count, std::uint32_t type) {
  for (std::size_t place = 0; place < count; ++place) {
    const std::string path = Scratch::Instance().Path("run.%" + GroupNumberText(place));
    Sumara::CControl control;
    RefusalOf([&] {
      control.GetGroup(path, std::vector<std::size_t>{}, std::vector<std::size_t>{}, type);
    });
  }
}

}  // namespace Fuzzing
