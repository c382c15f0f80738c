// Output groups of a run.

namespace SumaraApi {

class Group {
 public:
  ~Group();

  %operation(get_name, GetName, "GENLAB of the header.")
  std::string GetName() const;
  %operation(get_number, GetNumber, "The number of the header's extension, unique within the run.")
  size_t GetNumber() const;
  %operation(get_header_file_path, GetHeaderFilePath, "The canonical path of the header.")
  std::string GetHeaderFilePath() const;
  %operation(get_number_of_variables, GetNumberOfVariables, "The number of dependent variables.")
  std::size_t GetNumberOfVariables() const;
  %operation(get_number_of_independent_variables, GetNumberOfIndependentVariables, "1 or 2.")
  std::size_t GetNumberOfIndependentVariables() const;

  %operation(get_variable, GetVariable,
"A variable by name, whatever its case, for what needs no data. RuntimeError if there is none.")
  std::shared_ptr<Variable> GetVariable(std::string const &variableName) const;
  %operation(_get_variable_names_native_array, GetVariableNames,
"VARIAB of the header: the names in its order, as a tuple.")
  std::vector<std::string> GetVariableNames() const;
  %operation(contains_variable_1d, ContainsVariable1D,
"Whether the group has one independent variable and a variable of this name, whatever its case.")
  bool ContainsVariable1D(std::string const &variableName) const;
  %operation(contains_variable_2d, ContainsVariable2D,
"Whether the group has two independent variables and a variable of this name, whatever its case.")
  bool ContainsVariable2D(std::string const &variableName) const;

  %operation(_get_independent_variables_native_array, GetIndependentVariables,
"The independent variables, primary first, as a tuple.")
  std::vector<std::shared_ptr<IndependentVariable> > GetIndependentVariables() const;
  %operation(get_independent_variable, GetIndependentVariable,
"An independent variable by name, whatever its case, or by IndependentVariableId.")
  std::shared_ptr<IndependentVariable> GetIndependentVariable(
      std::string const &independentVariableName) const;
  std::shared_ptr<IndependentVariable> GetIndependentVariable(
      IndependentVariableId const independentVariableId) const;

  %operation(get_calculation_short_name, GetCalculationShortName, "CONTENT of the header.")
  std::string GetCalculationShortName() const;
  %operation(get_calculation_descriptive_name, GetCalculationDescriptiveName,
"For example 'Power production simulation'.")
  std::string GetCalculationDescriptiveName() const;
  %operation(get_calculation_type, GetCalculationType, "A CalculationType.")
  CalculationType GetCalculationType() const;
  %operation(get_time_domain_simulation_length, GetTimeDomainSimulationLength,
"Seconds. RuntimeError for a calculation that is not in the time domain.")
  double GetTimeDomainSimulationLength() const;
  %operation(get_data_point_count, GetDataPointCount,
"Points of one variable; with two independent variables the count for one secondary value.")
  std::size_t GetDataPointCount() const;
  %operation(get_variable_data_type, GetVariableDataType,
"A VariableDataType: as which the data is read, which may differ from the type in the file.")
  VariableDataType GetVariableDataType() const;
  %operation(get_variable_data_format, GetVariableDataFormat, "A VariableDataFormat.")
  VariableDataFormat GetVariableDataFormat() const;

  %feature("docstring") GetVariable1D
"A variable by name. RuntimeError if the group has two independent variables or another data type.";
  %feature("docstring") GetVariable2D
"A variable by name. RuntimeError if the group has one independent variable or another data type.";
  %feature("docstring") GetAllVariables1D
"All variables in the order of the header, as a tuple.

The group must have one independent variable.";
  %feature("docstring") GetAllVariables2D
"All variables in the order of the header, as a tuple.

The group must have two independent variables.";
  template <class T>
  std::shared_ptr<Variable1D< T > > GetVariable1D(std::string const &variableName) const;
  template <class T>
  std::shared_ptr<Variable2D< T > > GetVariable2D(std::string const &variableName) const;
  template <class T>
  std::vector<std::shared_ptr<Variable1D< T > > > GetAllVariables1D() const;
  template <class T>
  std::vector<std::shared_ptr<Variable2D< T > > > GetAllVariables2D() const;

  %define %group_variables(suffix, T)
  %template(_GROUPPREFIX_get_variable_1d_ ## suffix) GetVariable1D< T >;
  %template(_GROUPPREFIX_get_all_variables_1d_ ## suffix ## _native_array) GetAllVariables1D< T >;
  %template(_GROUPPREFIX_get_variable_2d_ ## suffix) GetVariable2D< T >;
  %template(_GROUPPREFIX_get_all_variables_2d_ ## suffix ## _native_array) GetAllVariables2D< T >;
  %enddef
  %group_variables(float32, float)
  %group_variables(float64, double)
  %group_variables(int32, int)
};

}  // namespace SumaraApi
