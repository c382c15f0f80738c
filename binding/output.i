// What is written.

// A vector that was made for the call, its argument `number`, is handed over.
%define %handing_over(Function, number, before...)
%feature("action") Function "arg1->Function(before, elements" #number ".HandOver());"
%enddef
%handing_over(AppendData, 3, *arg2)
%handing_over(AddVariableWithData, 4, *arg2, *arg3)

namespace SumaraApi {

class IOutputSpecification {
 public:
  %operation(get_path, GetPath, "The path of the header file.")
  virtual std::string GetPath() const = 0;
  %operation(get_file_format, GetFileFormat, "A FileFormat.")
  virtual FileFormat GetFileFormat() const = 0;
  virtual ~IOutputSpecification();
};

class OutputGroup : public IOutputSpecification {
 public:
  virtual ~OutputGroup();

  %operation(get_path, GetPath, "The path of the header file, as given.")
  std::string GetPath() const override;
  %operation(get_file_format, GetFileFormat, "A FileFormat.")
  FileFormat GetFileFormat() const override;
  %operation(get_group_name, GetGroupName, "GENLAB of the header.")
  std::string GetGroupName() const;
  %operation(get_data_source, GetDataSource, "CONTENT of the header.")
  std::string GetDataSource() const;
  %operation(get_group_config, GetGroupConfig, "CONFIG of the header.")
  std::string GetGroupConfig() const;
  %operation(get_variable_data_format, GetVariableDataFormat, "A VariableDataFormat.")
  VariableDataFormat GetVariableDataFormat() const;
  %operation(get_data_file_path, GetDataFilePath, "The path of the data file.")
  std::string GetDataFilePath() const;
  %operation(set_tefile_creation, SetTEFileCreation,
"Whether a termination file is written, by which the output is found as a run: a TEFileCreation.

The file has the name of the output group. Default: TEFileCreation_Create.")
  void SetTEFileCreation(TEFileCreation teFileCreation);
};

template <class T>
class OutputGroup1D : public OutputGroup {
 public:
  %feature("docstring") OutputGroup1D
"An output group over one independent variable.

groupPath is the path of the header file, with its extension .%NN. dataSource is 'UserDefined' or
the short name of a calculation; groupConfig typically TRANSIENT, STATIONARY, LIST or TABLE. The
data format is a VariableDataFormat, binary by default.";
  OutputGroup1D(std::string const &groupPath, std::string const &groupName,
                std::string const &dataSource, std::string const &groupConfig,
                IndependentVariable &independentVariable,
                VariableDataFormat const variableDataFormat = VariableDataFormat::Binary);
  virtual ~OutputGroup1D();

  %operation(add_variable, AddVariable, "Adds a variable without data.")
  void AddVariable(std::string const &variableName, std::string const &siUnit);
  %operation(_add_variable_with_data_native_array, AddVariableWithData,
"Adds a variable and its values along the independent variable: any iterable.")
  void AddVariableWithData(std::string const &variableName, std::string const &siUnit,
                           std::vector< T > const &data);
  %operation(_append_data_native_array, AppendData,
"Appends values along the independent variable: any iterable.")
  void AppendData(std::string const &variableName, std::vector< T > const &data);
};

template <class T>
class OutputGroup2D : public OutputGroup {
 public:
  %feature("docstring") OutputGroup2D
"An output group over a primary and a secondary independent variable; else as OutputGroup1D.";
  OutputGroup2D(std::string const &groupPath, std::string const &groupName,
                std::string const &dataSource, std::string const &groupConfig,
                IndependentVariable &primaryIndependentVariable,
                IndependentVariable &secondaryIndependentVariable,
                VariableDataFormat const variableDataFormat = VariableDataFormat::Binary);
  virtual ~OutputGroup2D();

  %operation(add_variable, AddVariable, "Adds a variable without data.")
  void AddVariable(std::string const &variableName, std::string const &siUnit);
  %operation(_add_variable_with_data_native_array, AddVariableWithData,
"Adds a variable and its values: one iterable along the primary variable for each secondary value.")
  void AddVariableWithData(std::string const &variableName, std::string const &siUnit,
                           std::vector<std::vector< T > > const &data);
  %operation(_append_data_native_array, AppendData,
"Appends values: one iterable along the primary variable for each secondary value.")
  void AppendData(std::string const &variableName, std::vector<std::vector< T > > const &data);
};

%define %output_groups(Suffix, T)
%template(OutputGroup1D_ ## Suffix) OutputGroup1D< T >;
%template(OutputGroup2D_ ## Suffix) OutputGroup2D< T >;
%enddef
%for_each_element_type(%output_groups)

}  // namespace SumaraApi
