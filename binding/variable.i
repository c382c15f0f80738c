// Variables and independent variables.

namespace SumaraApi {

// Labels are numbers or strings: what was read to find out that they are no numbers serves to find
// out whether they are strings.
%typemap(typecheck, precedence=SWIG_TYPECHECK_VECTOR, noblock=1)
    const std::vector<double> &numericLabels {
  Binding::ReadAhead labels($input);
  $1 = Binding::Fits<double>(labels);
  if (!PyErr_Occurred() && !$1 && Binding::Fits<std::string>(labels)) {
    return _wrap_new_IndependentVariable__SWIG_1(self, argc, argv);
  }
  if (PyErr_Occurred()) {
    return nullptr;
  }
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_STRING_ARRAY)
    const std::vector<std::string> &stringLabels "$1 = false;"

class IndependentVariable {
 public:
  %feature("docstring") IndependentVariable
"An independent variable for an output group: labelled numbers, labelled strings, or values at a
fixed interval from a start value.";
  IndependentVariable(std::string const &name, std::string const &siUnit,
                      std::vector<double> const &numericLabels);
  IndependentVariable(std::string const &name, std::string const &siUnit,
                      std::vector<std::string> const &stringLabels);
  IndependentVariable(std::string const &name, std::string const &siUnit, double const startValue,
                      double const stepValue);
  ~IndependentVariable();

  %operation(get_name, GetName, "AXISLAB of the header.")
  std::string GetName();
  %operation(get_siunit, GetSIUnit, "The unit; empty if the quantity is unknown.")
  std::string GetSIUnit();
  %operation(get_axis_type, GetAxisType, "An AxisTypeId.")
  AxisTypeId GetAxisType() const;
  %operation(get_number_of_values, GetNumberOfValues,
"The labels given at creation, or the data points along an interval axis: 0 outside a group.")
  std::size_t GetNumberOfValues() const;
  %operation(_get_values_as_string_native_array, GetValuesAsString,
"The text of each value, as a tuple.")
  std::vector<std::string> GetValuesAsString() const;
  %operation(_get_values_as_number_native_array, GetValuesAsNumber,
"Every value, as a tuple. RuntimeError for labelled strings.")
  std::vector<double> const &GetValuesAsNumber() const;

  %extend {
    %feature("docstring") _get_values_as_number_numpy_from_vector
"Every value, as an array of float64 over the library's memory. RuntimeError for labelled strings.";
    Binding::ArrayView<double> _get_values_as_number_numpy_from_vector() {
      Binding::ImportNumPy();
      return {$self->ShareValuesAsNumber()};
    }
  }
};

class Variable {
 public:
  virtual ~Variable();

  %operation(get_name, GetName, "The unabbreviated name.")
  std::string GetName() const;
  %operation(get_siunit, GetSIUnit, "The unit, for example m; empty if the quantity is unknown.")
  std::string GetSIUnit();
  %operation(get_quantity_code, GetQuantityCode, "VARUNIT of the header, for example L.")
  std::string GetQuantityCode() const;
  %operation(get_number_of_independent_variables, GetNumberOfIndependentVariables, "1 or 2.")
  std::size_t GetNumberOfIndependentVariables() const;
  %operation(get_parent_group_name, GetParentGroupName, "GENLAB of the header.")
  std::string GetParentGroupName() const;
  %operation(get_parent_group_number, GetParentGroupNumber, "The number of the header's extension.")
  size_t GetParentGroupNumber() const;
  %operation(get_parent_group_header_file_full_path, GetParentGroupHeaderFileFullPath,
"The path of the header.")
  std::string GetParentGroupHeaderFileFullPath();
  %operation(get_time_domain_simulation_length, GetTimeDomainSimulationLength,
"Seconds. RuntimeError for a calculation that is not in the time domain.")
  double GetTimeDomainSimulationLength() const;
  %operation(get_data_point_count, GetDataPointCount,
"Points along the primary axis; with two axes the count for one secondary value.")
  std::size_t GetDataPointCount() const;
  %operation(get_data_type, GetDataType,
"A VariableDataType: as which the data is read, which may differ from the type in the file.")
  VariableDataType GetDataType() const;
  %operation(get_data_format, GetDataFormat, "A VariableDataFormat.")
  VariableDataFormat GetDataFormat() const;
  %operation(_get_independent_variables_native_array, GetIndependentVariables,
"The independent variables, primary first, as a tuple.")
  std::vector<std::shared_ptr<IndependentVariable> > GetIndependentVariables() const;
};

template <class T>
class Variable1D : public Variable {
 public:
  virtual ~Variable1D();

  %operation(_get_data_native_array, GetData,
"All values in the order of the file, as a tuple. They are read on the first request.")
  std::vector< T > const &GetData();
  %extend {
    %feature("docstring") _get_data_numpy_from_vector
"All values in the order of the file, as an array over the library's memory.

What is written into it is seen by later requests. The array stays good after an unload.";
    Binding::ArrayView< T > _get_data_numpy_from_vector() {
      Binding::ImportNumPy();
      return {$self->ShareData()};
    }
  }

  %operation(get_independent_variable, GetIndependentVariable, "The only one.")
  std::shared_ptr<IndependentVariable> GetIndependentVariable() const;
  %figure(get_mean, GetMean,
"The mean, in double precision.")
  double GetMean();
  %figure(get_maximum, GetMaximum,
"The largest value, in the type of the data.")
  T GetMaximum();
  %figure(get_minimum, GetMinimum,
"The smallest value, in the type of the data.")
  T GetMinimum();
  %figure(get_minimum_contemporaneous, GetMinimumContemporaneous,
"The value of the named variable of the group where this one has its minimum.")
  T GetMinimumContemporaneous(std::string const &contemporaneousVariableName);
  %figure(get_maximum_contemporaneous, GetMaximumContemporaneous,
"The value of the named variable of the group where this one has its maximum.")
  T GetMaximumContemporaneous(std::string const &contemporaneousVariableName);
};

template <class T>
class Variable2D : public Variable {
 public:
  virtual ~Variable2D();

  %operation(_get_data_at_value_native_array, GetDataAtValue,
"The values along the primary axis at one secondary value, a number or its text, as a tuple.")
  std::vector< T > const &GetDataAtValue(double const secondaryIndependentVariableValue);
  std::vector< T > const &GetDataAtValue(std::string const &secondaryIndependentVariableValue);
  %operation(_get_data_at_index_native_array, GetDataAtIndex,
"The values along the primary axis at one secondary index from 0, as a tuple.")
  std::vector< T > const &GetDataAtIndex(size_t secondaryIndependentVariableIndex);
  %operation(_get_data_for_all_independent_variable_values_native_array,
             GetDataForAllIndependentVariableValues,
"All values, as a tuple of tuples: outer index secondary, inner index primary.")
  std::vector<std::vector< T > > const &GetDataForAllIndependentVariableValues();

  %figure(get_mean_at_value, GetMeanAtValue,
"The mean at one secondary value, in double precision.")
  double GetMeanAtValue(double const secondaryIndependentVariableValue);
  double GetMeanAtValue(std::string const &secondaryIndependentVariableValue);
  %figure(get_mean_at_index, GetMeanAtIndex,
"The mean at one secondary index, in double precision.")
  double GetMeanAtIndex(size_t secondaryIndependentVariableIndex);
  %figure(get_maximum_at_value, GetMaximumAtValue,
"The largest value at one secondary value.")
  T GetMaximumAtValue(double const secondaryIndependentVariableValue);
  T GetMaximumAtValue(std::string const &secondaryIndependentVariableValue);
  %figure(get_maximum_at_index, GetMaximumAtIndex,
"The largest value at one secondary index.")
  T GetMaximumAtIndex(size_t secondaryIndependentVariableIndex);
  %figure(get_minimum_at_value, GetMinimumAtValue,
"The smallest value at one secondary value.")
  T GetMinimumAtValue(double const secondaryIndependentVariableValue);
  T GetMinimumAtValue(std::string const &secondaryIndependentVariableValue);
  %figure(get_minimum_at_index, GetMinimumAtIndex,
"The smallest value at one secondary index.")
  T GetMinimumAtIndex(size_t secondaryIndependentVariableIndex);

  %operation(get_independent_variable, GetIndependentVariable,
"An independent variable by name, whatever its case, or by IndependentVariableId.")
  std::shared_ptr<IndependentVariable> GetIndependentVariable(
      std::string const &independentVariableName) const;
  std::shared_ptr<IndependentVariable> GetIndependentVariable(
      IndependentVariableId const independentVariableId) const;

  %figure(get_minimum_contemporaneous_at_value, GetMinimumContemporaneousAtValue,
"The value of the named variable of the group where this one has its minimum, at one secondary
value.")
  T GetMinimumContemporaneousAtValue(std::string const &contemporaneousVariableName,
                                     std::string const &secondaryIndependentVariableValue);
  T GetMinimumContemporaneousAtValue(std::string const &contemporaneousVariableName,
                                     double const secondaryIndependentVariableValue);
  %figure(get_minimum_contemporaneous_at_index, GetMinimumContemporaneousAtIndex,
"The value of the named variable of the group where this one has its minimum, at one secondary
index.")
  T GetMinimumContemporaneousAtIndex(std::string const &contemporaneousVariableName,
                                     size_t secondaryIndependentVariableIndex);
  %figure(get_maximum_contemporaneous_at_value, GetMaximumContemporaneousAtValue,
"The value of the named variable of the group where this one has its maximum, at one secondary
value.")
  T GetMaximumContemporaneousAtValue(std::string const &contemporaneousVariableName,
                                     std::string const &secondaryIndependentVariableValue);
  T GetMaximumContemporaneousAtValue(std::string const &contemporaneousVariableName,
                                     double const secondaryIndependentVariableValue);
  %figure(get_maximum_contemporaneous_at_index, GetMaximumContemporaneousAtIndex,
"The value of the named variable of the group where this one has its maximum, at one secondary
index.")
  T GetMaximumContemporaneousAtIndex(std::string const &contemporaneousVariableName,
                                     size_t secondaryIndependentVariableIndex);

  %extend {
    %feature("docstring") _get_data_at_value_numpy_from_vector
"The values at one secondary value, a number or its text, as an array over the library's memory.";
    Binding::ArrayView< T > _get_data_at_value_numpy_from_vector(std::string const &value) {
      Binding::ImportNumPy();
      return {$self->ShareDataAtValue(value)};
    }
    Binding::ArrayView< T > _get_data_at_value_numpy_from_vector(double const value) {
      Binding::ImportNumPy();
      return {$self->ShareDataAtValue(value)};
    }
    %feature("docstring") _get_data_at_index_numpy_from_vector
"The values at one secondary index from 0, as an array over the library's memory.";
    Binding::ArrayView< T > _get_data_at_index_numpy_from_vector(size_t index) {
      Binding::ImportNumPy();
      return {$self->ShareDataAtIndex(index)};
    }
  }
};

%define %variables(Suffix, T)
%template(Variable1D_ ## Suffix) Variable1D< T >;
%template(Variable2D_ ## Suffix) Variable2D< T >;
%enddef
%for_each_element_type(%variables)

}  // namespace SumaraApi
