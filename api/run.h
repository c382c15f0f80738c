#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
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
  struct Classification {
    bool known = false;
    bool value = false;
  };

  /// A file's text; an empty one counts as not read yet.
  const std::string& Content(std::string& cached, const std::string& path, const char* description);
  const std::string& Name();
  const std::string& Directory();
  std::string DirectoryAndName() { return Directory() + Name(); }
  CalculationType ResolveCalculationType(bool checkUnsupportedExtensions);
  CalculationType ScanForCalculationType(bool checkUnsupportedExtensions);
  CalculationType CalculationTypeOfHeader(const std::string& path) const;
  bool Classify(Classification& cached, bool (*isOfClass)(CalculationType));

  /// Starts headers, groups and variables anew if the termination file has changed.
  bool RefreshIfChanged();
  RunContents& Contents();
  void CheckSupported();
  VariablePtr FindVariable(std::string const& variableName, std::string const& groupName);
  bool Contains(std::string const& variableName, std::size_t dimensions);

  std::string m_terminationFilePath;
  std::string m_directory;
  std::string m_name;
  std::string m_messageFileContent;
  std::string m_terminationFileContent;
  std::string m_verificationFileContent;
  std::string m_timestamp;
  std::string m_calculationDescriptiveName;
  Classification m_isTurbineSimulation;
  Classification m_isSupportingCalculation;
  Classification m_isPostProcessingCalculation;
  std::optional<CalculationType> m_calculationType;
  std::optional<std::int64_t> m_terminationFileLastWrite;
  std::optional<std::int64_t> m_executionDuration;
  bool m_keepsReadersOpen;
  std::unique_ptr<RunContents> m_contents;  ///< null until something is asked of it
};

}  // namespace SumaraApi
