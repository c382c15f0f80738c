#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api/types.h"

namespace SumaraApi {

class RunContents;

/// One simulation run on disk, known by its termination file.
///
/// A run finds everything lazily: what it is, how it ended, which groups and variables it has.
/// Answers are cached and dropped when the termination file changes; the first one asked for
/// notices.
class Run : public std::enable_shared_from_this<Run> {
 public:
  static const std::string TerminationFileExtension;
  static const std::string VerificationFileExtension;
  static const std::string MessageFileExtension;

  /// Touches memory only.
  Run(std::string terminationFilePath, bool bufferedRead);
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  /// The base name of the run's files.
  std::string GetName();
  /// Canonical, with a trailing separator.
  std::string GetDirectory();

  std::string GetTerminationFilePath() const { return m_terminationFilePath; }
  /// The whole of a side file, without trailing white space. \throws CIOException 5022 if it is
  /// missing.
  std::string GetTerminationFileContent();
  std::string GetMessageFileContent();
  std::string GetVerificationFileContent();

  /// The last write of the termination file in local time, "YYYY-MM-DD hh:mm:ss".
  std::string GetTimestamp();
  /// Whole seconds from the last write of the verification file to that of the termination file.
  /// \throws Sumara::CException 143 if they are negative.
  double GetExecutionDurationSeconds();

  /// How the run ended, from phrases in the termination file.
  CompletionState GetCompletionState();
  bool HasFinished();
  bool WasSuccessful();
  /// True for runs that were terminated, that failed or that were aborted.
  bool WasUnsuccessful();

  /// From the CONTENT of a header, or from the extension of a file of the run; kept for good.
  CalculationType GetCalculationType();
  std::string GetCalculationDescriptiveName();
  bool IsTurbineSimulation();
  bool IsSupportingCalculation();
  bool IsPostProcessingCalculation();
  bool IsCalculationTypeSupported();

  /// Whether a variable of this name, whatever its case, has one (two) independent variables; true
  /// too if the name stands in several groups.
  bool ContainsVariable1D(std::string const& variableName);
  bool ContainsVariable2D(std::string const& variableName);

  /// A variable for what needs no data.
  /// \throws Sumara::CException 158, 159, 165 if the name stands in more than one group.
  VariablePtr GetVariable(std::string const& variableName);
  /// \throws Sumara::CException 156, 158, 159, 164.
  VariablePtr GetVariableFromSpecificOutputGroup(std::string const& variableName,
                                                 std::string const& specificGroupName);

  /// The typed variable. T is float, double or int, as `Variable::GetDataType` tells.
  /// \throws Sumara::CException as above, and 161 or 162, 163.
  template <class T>
  std::shared_ptr<Variable1D<T>> GetVariable1D(std::string const& variableName);
  template <class T>
  std::shared_ptr<Variable1D<T>> GetVariable1DFromSpecificOutputGroup(
      std::string const& variableName, std::string const& specificGroupName);
  template <class T>
  std::shared_ptr<Variable2D<T>> GetVariable2D(std::string const& variableName);
  template <class T>
  std::shared_ptr<Variable2D<T>> GetVariable2DFromSpecificOutputGroup(
      std::string const& variableName, std::string const& specificGroupName);

  /// Releases a variable and its data.
  /// \return false if it was never asked for.
  /// \throws Sumara::CException 158, 156, 160.
  bool UnloadVariable(std::string const& variableName);
  bool UnloadVariableFromSpecificGroup(std::string const& variableName,
                                       std::string const& specificGroupName);

  /// \throws Sumara::CException 157 if there is none of this name, 180 for an unsupported
  /// calculation.
  GroupPtr GetGroup(std::string const& groupName);
  /// All output groups, in the order of the directory.
  std::vector<GroupPtr> GetAllGroups();

  /// \cond internal
  const std::string& TerminationFilePath() const { return m_terminationFilePath; }
  /// Whether the termination file has changed since somebody asked; true for the first who asks.
  bool HasChanged();
  /// Stores the last write now, so that the first rewrite is noticed.
  void NoteLastWrite();
  /// The calculation type, found without looking at the extensions of unsupported calculations.
  CalculationType GetCalculationTypeFromHeaders();
  /// Gives back the buffers of the groups, and from now on after each read.
  void ReleaseReaders();
  /// \endcond

 private:
  /// What its side files tell; an empty text counts as not read yet.
  struct SideFiles {
    std::string terminationText;
    std::string messageText;
    std::string verificationText;
    std::string timestamp;
    std::optional<std::int64_t> executionDuration;
  };

  SideFiles& Side();
  const std::string& Content(std::string& cached, const std::string& path, const char* description);
  std::string_view Name() const;
  std::string Directory() const;
  std::string DirectoryAndName() const;
  template <class TypedVariable>
  std::shared_ptr<TypedVariable> Narrow(const VariablePtr& variable) const;
  CalculationType ResolveCalculationType(bool checkUnsupportedExtensions);
  CalculationType ScanForCalculationType(bool checkUnsupportedExtensions);
  CalculationType CalculationTypeOfHeader(const std::string& path) const;

  /// Starts headers, groups and variables anew if the termination file has changed.
  bool RefreshIfChanged();
  RunContents& Contents();
  void CheckSupported();
  VariablePtr FindVariable(std::string const& variableName, std::string const& groupName);
  bool Contains(std::string const& variableName, std::size_t dimensions);

  std::string m_terminationFilePath;
  std::optional<std::int64_t> m_terminationFileLastWrite;
  std::optional<CalculationType> m_calculationType;
  bool m_keepsReadersOpen;
  // Null until something is asked of them: of most runs of a search nothing is.
  std::unique_ptr<SideFiles> m_side;
  std::unique_ptr<RunContents> m_contents;
};

}  // namespace SumaraApi
