#include "vocabulary/completion_phrases.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using SumaraApi::CompletionState;
using SumaraApi::CompletionStateOf;
using SumaraApi::IsUnsuccessful;
using SumaraApi::TellsFinished;
using SumaraApi::TellsSuccess;

TEST(CompletionPhrasesTest, TheFirstPhraseThatDecidesWins) {
  using enum CompletionState;
  const struct {
    std::string text;
    CompletionState state;
  } endings[] = {
      {"Run completed in 5 s\nRun in progress\n*** ERROR", CompletedNormally},
      {"Run in progress\nRun terminated unexpectedly\n*** ERROR", InProgress},
      {"Run terminated unexpectedly\n*** ERROR 3\nAborted by user", Terminated},
      {"*** ERROR 3\nAborted by user", Aborted},
      {"Aborted by user", Unknown},
      {"*** ERROR 3", Errored},
      {"run completed", Unknown},
      {"", Unknown},
  };
  for (const auto& ending : endings) {
    EXPECT_EQ(CompletionStateOf(ending.text), ending.state) << ending.text;
  }
}

TEST(CompletionPhrasesTest, FinishedIsAllThatIsNotInProgress) {
  EXPECT_TRUE(TellsFinished(""));
  EXPECT_TRUE(TellsFinished("*** ERROR"));
  EXPECT_FALSE(TellsFinished("Run completed\nRun in progress"));
}

TEST(CompletionPhrasesTest, SuccessNeedsItsPhrase) {
  EXPECT_TRUE(TellsSuccess("*** ERROR\nRun completed"));
  EXPECT_FALSE(TellsSuccess("Run Completed"));
  EXPECT_FALSE(TellsSuccess(""));
}

TEST(CompletionPhrasesTest, ThreeStatesAreUnsuccessful) {
  using enum CompletionState;
  for (const CompletionState state : {Terminated, Errored, Aborted}) {
    EXPECT_TRUE(IsUnsuccessful(state)) << static_cast<int>(state);
  }
  for (const CompletionState state :
       {Unknown, InProgress, CompletedNormally, AllCompletionStates, UnsuccessfulRunsOnly}) {
    EXPECT_FALSE(IsUnsuccessful(state)) << static_cast<int>(state);
  }
}

}  // namespace
