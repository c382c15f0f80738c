#include "vocabulary/completion_phrases.h"

namespace SumaraApi {
namespace {

constexpr std::string_view kCompleted = "Run completed";
constexpr std::string_view kInProgress = "Run in progress";

bool HoldsPhrase(std::string_view text, std::string_view phrase) {
  return text.find(phrase) != std::string_view::npos;
}

}  // namespace

CompletionState CompletionStateOf(std::string_view terminationText) {
  if (HoldsPhrase(terminationText, kCompleted)) return CompletionState::CompletedNormally;
  if (HoldsPhrase(terminationText, kInProgress)) return CompletionState::InProgress;
  if (HoldsPhrase(terminationText, "Run terminated unexpectedly"))
    return CompletionState::Terminated;
  if (!HoldsPhrase(terminationText, "*** ERROR")) return CompletionState::Unknown;
  if (HoldsPhrase(terminationText, "Aborted by user")) return CompletionState::Aborted;
  return CompletionState::Errored;
}

bool TellsFinished(std::string_view terminationText) {
  return !HoldsPhrase(terminationText, kInProgress);
}

bool TellsSuccess(std::string_view terminationText) {
  return HoldsPhrase(terminationText, kCompleted);
}

bool IsUnsuccessful(CompletionState state) {
  return state == CompletionState::Terminated || state == CompletionState::Errored ||
         state == CompletionState::Aborted;
}

}  // namespace SumaraApi
