// Runs.

namespace SumaraApi {

class Run {
 public:
  %rename(termination_file_extension) TerminationFileExtension;
  static const std::string TerminationFileExtension;
  %rename(verification_file_extension) VerificationFileExtension;
  static const std::string VerificationFileExtension;
  %rename(message_file_extension) MessageFileExtension;
  static const std::string MessageFileExtension;

  ~Run();

  %operation(get_name, GetName, "The name of the run's files, not the CONTENT of its headers.")
  std::string GetName();
  %operation(get_directory, GetDirectory, "The canonical directory, with a trailing separator.")
  std::string GetDirectory();
  %operation(get_termination_file_content, GetTerminationFileContent,
"The whole of the $TE file. RuntimeError if it is missing.")
  std::string GetTerminationFileContent();
  %operation(get_termination_file_path, GetTerminationFilePath, "The full path of the $TE file.")
  std::string GetTerminationFilePath() const;
  %operation(get_message_file_content, GetMessageFileContent,
"The whole of the $ME file. RuntimeError if it is missing.")
  std::string GetMessageFileContent();
  %operation(get_verification_file_content, GetVerificationFileContent,
"The whole of the $VE file. RuntimeError if it is missing.")
  std::string GetVerificationFileContent();

  %operation(get_timestamp, GetTimestamp,
"The last write of the $TE file in local time, as 'YYYY-MM-DD hh:mm:ss'.")
  std::string GetTimestamp();
  %operation(get_execution_duration_seconds, GetExecutionDurationSeconds,
"Seconds from the last write of the $VE file to that of the $TE file. RuntimeError if negative.")
  double GetExecutionDurationSeconds();
  %operation(get_completion_state, GetCompletionState, "A CompletionState.")
  CompletionState GetCompletionState();
  %operation(has_finished, HasFinished, "Whether the run has ended.")
  bool HasFinished();
  %operation(was_successful, WasSuccessful, "Whether the run completed normally.")
  bool WasSuccessful();
  %operation(was_unsuccessful, WasUnsuccessful,
"Whether the run was terminated, failed or was aborted.")
  bool WasUnsuccessful();

  %operation(get_calculation_descriptive_name, GetCalculationDescriptiveName,
"For example 'Power production simulation'.")
  std::string GetCalculationDescriptiveName();
  %operation(get_calculation_type, GetCalculationType, "A CalculationType.")
  CalculationType GetCalculationType();
  %operation(is_turbine_simulation, IsTurbineSimulation, "Whether the run is a turbine simulation.")
  bool IsTurbineSimulation();
  %operation(is_supporting_calculation, IsSupportingCalculation,
"Whether the run is a supporting calculation.")
  bool IsSupportingCalculation();
  %operation(is_post_processing_calculation, IsPostProcessingCalculation,
"Whether the run is a post-processing calculation.")
  bool IsPostProcessingCalculation();
  %operation(is_calculation_type_supported, IsCalculationTypeSupported,
"Whether the run gives more than limited metadata.")
  bool IsCalculationTypeSupported();

  %operation(contains_variable_1d, ContainsVariable1D,
"Whether a variable of this name, whatever its case, has one independent variable.")
  bool ContainsVariable1D(std::string const &variableName);
  %operation(contains_variable_2d, ContainsVariable2D,
"Whether a variable of this name, whatever its case, has two independent variables.")
  bool ContainsVariable2D(std::string const &variableName);

  %operation(_get_variable, GetVariable,
"A variable by name, for what needs no data.

RuntimeError if there is none of the name, or one in several groups.")
  std::shared_ptr<Variable> GetVariable(std::string const &variableName);
  %operation(_get_variable_from_specific_output_group, GetVariableFromSpecificOutputGroup,
"A variable of one group by name, for what needs no data.")
  std::shared_ptr<Variable> GetVariableFromSpecificOutputGroup(
      std::string const &variableName, std::string const &specificGroupName);
  %operation(unload_variable, UnloadVariable,
"Releases a variable and its data; False if it was never asked for. Arrays of it stay good.")
  bool UnloadVariable(std::string const &variableName);
  %operation(unload_variable_from_specific_group, UnloadVariableFromSpecificGroup,
"Releases a variable of one group and its data; False if it was never asked for.")
  bool UnloadVariableFromSpecificGroup(std::string const &variableName,
                                       std::string const &specificGroupName);

  %operation(_get_all_groups_native_array, GetAllGroups,
"All output groups, in the order of the directory, as a tuple.")
  std::vector<std::shared_ptr<Group> > GetAllGroups();
  %operation(get_group, GetGroup, "An output group by name. RuntimeError if there is none.")
  std::shared_ptr<Group> GetGroup(std::string const &groupName);

  %feature("docstring") GetVariable1D
"A variable by name. RuntimeError if it has two independent variables or another data type.";
  %feature("docstring") GetVariable1DFromSpecificOutputGroup
"A variable of one group by name.

RuntimeError if it has two independent variables or another data type.";
  %feature("docstring") GetVariable2D
"A variable by name. RuntimeError if it has one independent variable or another data type.";
  %feature("docstring") GetVariable2DFromSpecificOutputGroup
"A variable of one group by name.

RuntimeError if it has one independent variable or another data type.";
  template <class T>
  std::shared_ptr<Variable1D< T > > GetVariable1D(std::string const &variableName);
  template <class T>
  std::shared_ptr<Variable1D< T > > GetVariable1DFromSpecificOutputGroup(
      std::string const &variableName, std::string const &specificGroupName);
  template <class T>
  std::shared_ptr<Variable2D< T > > GetVariable2D(std::string const &variableName);
  template <class T>
  std::shared_ptr<Variable2D< T > > GetVariable2DFromSpecificOutputGroup(
      std::string const &variableName, std::string const &specificGroupName);

  %define %run_variables(suffix, T)
  %template(_RUNPREFIX_get_variable_1d_ ## suffix) GetVariable1D< T >;
  %template(_RUNPREFIX_get_variable_1d_from_specific_output_group_ ## suffix)
      GetVariable1DFromSpecificOutputGroup< T >;
  %template(_RUNPREFIX_get_variable_2d_ ## suffix) GetVariable2D< T >;
  %template(_RUNPREFIX_get_variable_2d_from_specific_output_group_ ## suffix)
      GetVariable2DFromSpecificOutputGroup< T >;
  %enddef
  %run_variables(float32, float)
  %run_variables(float64, double)
  %run_variables(int32, int)
};

}  // namespace SumaraApi
