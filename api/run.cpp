#include "api/run.h"

#include <filesystem>
#include <utility>

#include "api/directory_listings.h"
#include "api/group.h"
#include "api/run_contents.h"
#include "core/directory.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "core/reader.h"
#include "core/text.h"
#include "model/control.h"
#include "vocabulary/calculation_kinds.h"
#include "vocabulary/completion_phrases.h"
#include "vocabulary/run_files.h"

namespace SumaraApi {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;

}  // namespace

const std::string Run::TerminationFileExtension{kTerminationExtension};
const std::string Run::VerificationFileExtension{kVerificationExtension};
const std::string Run::MessageFileExtension{kMessageExtension};

Run::Run(std::string terminationFilePath, bool bufferedRead)
    : m_terminationFilePath(std::move(terminationFilePath)), m_keepsReadersOpen(bufferedRead) {}

Run::~Run() = default;

std::string_view Run::Name() const {
  return Sumara::StemOf(Sumara::FileNameOf(m_terminationFilePath));
}
std::string Run::Directory() const { return Sumara::DirectoryOf(m_terminationFilePath); }
std::string Run::DirectoryAndName() const { return Directory().append(Name()); }

std::string Run::GetName() { return std::string(Name()); }
std::string Run::GetDirectory() { return Directory(); }

// Change detection.

bool Run::HasChanged() {
  const std::int64_t lastWrite = Sumara::LastWriteTicks(m_terminationFilePath);
  if (!m_terminationFileLastWrite) m_terminationFileLastWrite = lastWrite;
  return std::exchange(m_terminationFileLastWrite, lastWrite) != lastWrite;
}

bool Run::RefreshIfChanged() {
  if (!HasChanged()) return false;
  m_contents.reset();
  return true;
}

void Run::NoteLastWrite() {
  if (m_terminationFileLastWrite) return;
  try {
    m_terminationFileLastWrite = Sumara::LastWriteTicks(m_terminationFilePath);
  } catch (const std::filesystem::filesystem_error&) {
    // A file that is gone is noticed by whoever asks whether it has changed.
  }
}

// Side files.

Run::SideFiles& Run::Side() {
  if (m_side == nullptr) m_side = std::make_unique<SideFiles>();
  return *m_side;
}

const std::string& Run::Content(std::string& cached, const std::string& path,
                                const char* description) {
  if (!cached.empty() && !HasChanged()) return cached;
  NoteLastWrite();
  cached.clear();  // a read that fails must not leave the text of before the change
  cached = Sumara::ReadWholeFile(path, description, /*trim=*/true);
  return cached;
}

std::string Run::GetTerminationFileContent() {
  return Content(Side().terminationText, m_terminationFilePath, "run termination file");
}

std::string Run::GetMessageFileContent() {
  return Content(Side().messageText, DirectoryAndName() + MessageFileExtension, "run message file");
}

std::string Run::GetVerificationFileContent() {
  return Content(Side().verificationText, DirectoryAndName() + VerificationFileExtension,
                 "run verification file");
}

std::string Run::GetTimestamp() {
  std::string& timestamp = Side().timestamp;
  if (timestamp.empty() || HasChanged()) {
    NoteLastWrite();
    timestamp.clear();
    timestamp = Sumara::LastWriteTimeText(m_terminationFilePath);
  }
  return timestamp;
}

double Run::GetExecutionDurationSeconds() {
  std::optional<std::int64_t>& duration = Side().executionDuration;
  if (HasChanged()) duration.reset();
  if (!duration) {
    const std::string start = DirectoryAndName() + VerificationFileExtension;
    if (!Sumara::Exists(start)) {
      throw CIOException(5022, Sumara::FileContext(start),
                         "Attempting to get run execution duration");
    }
    const std::int64_t seconds =
        (*m_terminationFileLastWrite - Sumara::LastWriteTicks(start)) / kTicksPerSecond;
    if (seconds < 0) throw Sumara::CException(143, "Run: " + DirectoryAndName());
    duration = seconds;
  }
  return static_cast<double>(*duration);
}

CompletionState Run::GetCompletionState() { return CompletionStateOf(GetTerminationFileContent()); }
bool Run::HasFinished() { return TellsFinished(GetTerminationFileContent()); }
bool Run::WasSuccessful() { return TellsSuccess(GetTerminationFileContent()); }

bool Run::WasUnsuccessful() { return IsUnsuccessful(GetCompletionState()); }

// Calculation.

CalculationType Run::GetCalculationType() {
  return ResolveCalculationType(/*checkUnsupportedExtensions=*/true);
}

CalculationType Run::GetCalculationTypeFromHeaders() {
  return ResolveCalculationType(/*checkUnsupportedExtensions=*/false);
}

CalculationType Run::ResolveCalculationType(bool checkUnsupportedExtensions) {
  if (!m_calculationType) {
    const bool hasGroups = m_contents != nullptr && !m_contents->Groups().empty();
    m_calculationType = hasGroups ? m_contents->Groups().front()->GetCalculationType()
                                  : ScanForCalculationType(checkUnsupportedExtensions);
  }
  return *m_calculationType;
}

CalculationType Run::ScanForCalculationType(bool checkUnsupportedExtensions) {
  NoteLastWrite();
  const std::string directory = Directory();
  for (const std::string& fileName : FilesOfRun(directory, Name())) {
    const std::string_view extension = Sumara::ExtensionOf(fileName);
    if (IsHeaderExtension(extension)) return CalculationTypeOfHeader(directory + fileName);
    if (!checkUnsupportedExtensions) continue;
    const CalculationType type = CalculationTypeOfExtension(extension);
    if (type != CalculationType::Unknown) return type;
  }
  return CalculationType::Unknown;
}

CalculationType Run::CalculationTypeOfHeader(const std::string& path) const {
  CReader<float, float> header(path, static_cast<std::int32_t>(FileMode::kReadText));
  header.Open();
  std::string content;
  header.SeekLabel("CONTENT", content, {.rewind = true});
  Sumara::StripQuotes(content);
  return CalculationTypeOf(content);
}

std::string Run::GetCalculationDescriptiveName() { return DescriptiveNameOf(GetCalculationType()); }

bool Run::IsTurbineSimulation() { return SumaraApi::IsTurbineSimulation(GetCalculationType()); }
bool Run::IsSupportingCalculation() { return IsSupporting(GetCalculationType()); }
bool Run::IsPostProcessingCalculation() { return IsPostProcessing(GetCalculationType()); }
bool Run::IsCalculationTypeSupported() { return IsSupported(GetCalculationType()); }

}  // namespace SumaraApi
