#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "core/exceptions.h"

namespace Sumara {
namespace {

constexpr std::int32_t kUnspecified = -1;
constexpr std::string_view kUnspecifiedText = "Unspecified error";
constexpr std::string_view kMissingText = ": Error description missing";

constexpr std::int32_t kFirstIOCode = 5000;
constexpr std::int32_t kIOPrefixLimit = 4999;  // codes above it are told as "IO error"

/// The texts of the codes from 5000 on, in the order of their codes.
constexpr std::array<std::string_view, 29> kIOTexts = {
    "The file does not exist",
    "Requested IO operation not known",
    "Filename not set or invalid",
    "Input buffer empty - check file has content",
    "Stream closed - call Prepare method before attempting to read ASCII data",
    "Stream must be open before enquiring length",
    "Stream must be open before enquiring if empty",
    "Stream has error flag(s)",
    "Data requested past end of file",
    "Failed to read data",
    "Read offset invalid",
    "Failed to cast raw input buffer to array of required type",
    "A std::vector was passed: binary read returns one value",
    "Failed to check ASCII data uniformity due to unpopulated DIMENS std::vector",
    "Label to read was empty",
    "String to populate from was empty",
    "Vector to populate from was empty",
    "Start index of container to populate is out of bounds",
    "Label was not found - end of file encountered",
    "Label was not found on the current line - return after one attempt was requested",
    "Failed to determine length of first line in file",
    "Closing delimeter for string being parsed was not found",
    "File not found",
    "Directory not found",
    "Path could not be normalised - check the path exists",
    "Directory could not be normalised - check the directory exists",
    "Failed to check whether file exists",
    "Failed to check whether directory exists",
    "Failed to create directory - check permissions, and ensure path does not contain "
    "illegal characters\nIf using an absolute path, check the volume or drive mapping is "
    "valid.\nIf using a UNC path, ensure the server name is correct and the server is "
    "available",
};

/// The texts of the codes from 0 on, in the order of their codes.
constexpr std::array<std::string_view, 181> kModelTexts = {
    // 0
    "Success",
    "Requested series not found in current group",
    "Adding series with the same name as an existing series (case insensitive) is not "
    "allowed",
    "Series name must not be empty, must contain at least one non-whitespace character, "
    "and must not contain carriage return or line feed characters",
    "Series quantity code must not be empty, must contain at least one non-whitespace "
    "character, and must not contain carriage return or line feed characters",
    "Cannot get statistics for a series that does not contain data",
    "A series must belong to a group before data is added",
    "A series that is serialised may not be modified",
    "A series' group cannot be changed after data has been added",
    "Invalid index requested from primary axis (data point index)",
    // 10
    "Invalid index requested from secondary axis (index of data point vector)",
    "Invalid data type used to create a series",
    "Unable to overwrite series data. Use AddSeriesPoints to append multiple data points",
    "Series input data empty",
    "Series data being appended must contain no more than one data point for each "
    "primary axis label",
    "Series data being set must contain exactly one data point for each primary axis "
    "label",
    "Series input data must contain exactly one vector of data points for each secondary "
    "axis label",
    "A series added to a group must have the same datatype and number of dimensions as "
    "the group",
    "A series must not be empty to replace data point",
    "Requested series exceed number of series in the group",
    // 20
    "Requested secondary axis values exceed number of labels in the group",
    "Requested variables vector empty",
    "Requested secondary axis values vector empty",
    "Compound request vector empty",
    "SetData min/max arguments invalid",
    "Error reading series data",
    "Transient data container for 1D ASCII series was empty following read from file",
    "Transient data container for 2D ASCII series was empty following read from file",
    "Failed to populate 1D ASCII series data container from transient data container",
    "Failed to populate 2D ASCII series data container from transient data container",
    // 30
    "Axis name must not be empty, must contain at least one non-whitespace character, "
    "and must not contain carriage return or line feed characters",
    "Axis quantity code must not be empty, must contain at least one non-whitespace "
    "character, and must not contain carriage return or line feed characters",
    "Labelled axis labels array must not be empty",
    "Interval axis step size must be non-zero",
    "Labelled axis has no labels",
    "The number of secondary axis values must be specified in order to read 2D group",
    "Invalid data type used to create a labelled axis",
    "Specified axis not found",
    "Axis does not match the type requested, e.g. a labelled value axis was requested "
    "but a labelled string axis was found",
    "Labelled string axis labels cannot be requested as numeric labels",
    // 40
    "Axis index not found - unable to return corresponding axis value",
    "Getting labelled string axis values via incrementable pointer not supported. Use "
    "DataAtIndex to get labelled string axis values individually",
    "Axis value not found - unable to return corresponding axis index",
    "Secondary axis value not found",
    "Axis labels are not unique",
    "Cannot get statistics for a group that does not contain data",
    "Cannot get stats for 2D group with unpopulated secondary axis (the secondary axis "
    "represents the secondary independent variable)",
    "Adding group with the same path as an existing group is not allowed",
    "Requested group not found",
    "Could not find group to remove",
    // 50
    "No series found in current group",
    "No axes found in current group",
    "A group that is serialised may not be modified",
    "Preview group does not contain series objects",
    "A group must contain an axis before a series can be added",
    "Requested series was not found in the group",
    "Group name (GENLAB) must not be empty, must contain at least one non-whitespace "
    "character, and must not contain carriage return or line feed characters",
    "Group config (CONFIG) must not contain carriage return or line feed characters",
    "Group data source (CONTENT) must not be empty, must contain at least one "
    "non-whitespace character, and must not contain carriage return or line feed "
    "characters",
    "Group path not specified. The path may be relative or absolute, and should always "
    "contain at least the group file name.",
    // 60
    "Group file name not specified within path. The path may be relative or absolute, "
    "and should always contain at least the group file name.",
    "Group type does not correspond to data type",
    "Group data file empty when expecting to find data",
    "Group object is null",
    "Group has invalid number of dimensions - must be 1D or 2D",
    "Invalid data type used to create a group",
    "Target type for group cannot be changed when group has already been cached",
    "The group number has not been assigned or is otherwise invalid",
    "1D append vector container empty",
    "1D append data point vector empty",
    // 70
    "2D append vector container empty",
    "2D append data point vector empty",
    "Each series in group must contain the same number of data points when series use a "
    "primary labelled axis, or when data is being written incrementally",
    "One data point expected per 1D series",
    "Number of 1D data point vectors not equal to number of series present. One "
    "one-dimensional data point vector expected per 1D series",
    "Number of 2D data point vectors not equal to number of series present. One "
    "one-dimensional data point vector expected per 2D series",
    "Number of 2D data point vectors not equal to number of series present. One "
    "two-dimensional data point vector expected per 2D series",
    "SWIG exception: Group must have valid number of axes before downcast is allowed",
    "SWIG exception: Series must have group before downcast is allowed",
    "File extension has already been allocated",
    // 80
    "File extension invalid:",
    "Failed to open file",
    "Data file path invalid",
    "Directory does not exist",
    "Global results file path has not been set",
    "Global group name is empty. Set it using SetGlobalDirectoryAndRunName",
    "Data reader object is null. For a group to read data files, the path to the binary "
    "should be passed to the constructor",
    "Data reader object is not of the correct type for the serialised group - check "
    "header data format (FORMAT) value corresponds to data type",
    "Asymmetric group cannot be serialised; only symmetric groups may be serialised",
    "Preview group does not contain data therefore is not eligible for data "
    "serialisation; only preview group headers may be serialised",
    // 90
    "Group deserialised in the current session cannot be serialised; only new "
    "(non-deserialised) groups may be serialised",
    "Group containing no series cannot be serialised",
    "All cached groups are preview groups; only groups containing data are eigible for "
    "data serialisation",
    "No groups cached - unable to write data",
    "No groups cached - unable to write headers",
    "Unable to set series data when writing incrementally",
    "Data writer for requested group was null",
    "Header does not specify access type (ACCESS)",
    "Header does not specify data format (FORMAT)",
    "Header does not specify data source (CONTENT)",
    // 100
    "Header does not specify config (CONFIG)",
    "Header does not specify number of dimensions (NDIMENS)",
    "Header does not specify group name (GENLAB)",
    "Header does not specify number of optional variables (NVARS)",
    "Header does not specify axis name (AXISLAB)",
    "Header does not specify axis quantity identifier (AXIUNIT)",
    "Header does not specify axis type (AXIMETH)",
    "Header does not specify axis discrete value intervals (AXIVAL)",
    "Axis discrete value intervals invalid (AXITICK)",
    "Header does not specify axis discrete string intervals (AXITICK)",
    // 110
    "Axis discrete string intervals invalid (AXITICK)",
    "Header does not specify axis minimum value (MIN)",
    "Header does not specify axis step value (STEP)",
    "Header does not specify variables (VARIAB)",
    "Header variables invalid (VARIAB)",
    "Header does not specify variable quantity identifier (VARUNIT)",
    "Header quantity identifier invalid (VARUNIT)",
    "Number of header variables (VARIAB) and quantity identifiers (VARUNIT) are not the "
    "same",
    "Header does not specify data dimensions (DIMENS)",
    "Header does not contain the expected number of ultimate loads blocks (ULOADS)",
    // 120
    "Header does not contain the expected number of maximum time blocks (MAXTIME)",
    "Header does not contain the expected number of minimum time blocks (MINTIME)",
    "Header does not contain the expected number of means blocks (MEAN)",
    "Header does not contain stats",
    "Preview group was requested without header stats",
    "Error populating vector from stats",
    "Error populating vector from data dimensions (DIMENS)",
    "Data type invalid (FORMAT)",
    "Number of dimensions invalid (NDIMENS)",
    "Axis type invalid (AXIMETH)",
    // 130
    "Axis dimensions invalid (DIMENS)",
    "Unsupported data type",
    "Unsupported stats type",
    "Unsupported extremum type",
    "Received null pointer to data source for populating data vector",
    "Received null pointer to output data file writer",
    "Unable to assign vector",
    "Number of items requested greater than number present",
    "Requested item not found",
    "Run directory was not found",
    // 140
    "A filesystem error was encountered when finding runs",
    "Run was not found - run termination file (.$TE) missing or invalid",
    "Run that was previouly cached no longer exists on disk - run termination file "
    "(.$TE) missing or invalid",
    "Failed to calculate run execution time ($VE file had a more recent timestamp than "
    "$TE file)",
    "Getting variable quantity identifier failed",
    "Getting variable SI unit failed",
    "Getting SI unit from quantity identifier failed",
    "Getting data for 1D variable failed",
    "Getting data for 2D variable (specified independent variable) failed",
    "Getting data for 2D variable (all independent variables) failed",
    // 150
    "Getting variable mean value failed",
    "Getting variable maximum value failed",
    "Getting variable minimum value failed",
    "Getting variable minimum and maximum value failed",
    "Getting variable contemporaneous maximum value failed",
    "Getting variable contemporaneous minimum value failed",
    "Specific group name was not specified",
    "Specific group was not found",
    "Variable name was not specified",
    "The variable was not found",
    // 160
    "The variable to remove from the cache was not found",
    "The variable requested is not 1D - call equivalent 2D function to get variable",
    "The variable requested is not 2D - call equivalent 1D function to get variable",
    "The variable was requested using a data type that does not match the data type used "
    "when the variable was read. Call the function appropriate to the data type of the "
    "variable to get variable",
    "The variable was found but not in the specified output group",
    "The variable was found in more than one output group. Specify a disambiguating "
    "group name",
    "Variable supplied was null",
    "Independent variable was not found",
    "Unable to get the simulation length in seconds because the group does not contain "
    "time series data",
    "Run name regular expression invalid",
    // 170
    "Group has unsupported number of axes",
    "Group request cannot be fulfilled because the run it belongs to was unloaded. "
    "Reload the run and try again",
    "Data type is not supported by the Tabulon API",
    "File format is not supported by the Tabulon API",
    "Output group contains no variables and cannot be written",
    "Variable name invalid",
    "Variable unit invalid",
    "Independent variable name invalid",
    "Independent variable unit invalid",
    "Independent variable labels array empty",
    // 180
    "The request cannot be fulfilled for an unsupported calculation type",
};

/// Follows the texts of the codes for a missing or bad file name extension.
std::string ExtensionRule() {
  return " The file name extension must be of the form %n, where n is a positive integer with an "
         "upper limit of " +
         std::to_string(std::numeric_limits<std::uint64_t>::max());
}

bool EndsInExtensionRule(std::int32_t code) { return code == 59 || code == 60 || code == 80; }

std::optional<std::string_view> FindIOText(std::int32_t code) {
  if (code == kUnspecified) return kUnspecifiedText;
  if (code == 0) return "Request successfully completed";
  const std::int64_t index = std::int64_t{code} - kFirstIOCode;
  if (index < 0 || index >= static_cast<std::int64_t>(kIOTexts.size())) return std::nullopt;
  return kIOTexts[static_cast<std::size_t>(index)];
}

std::optional<std::string_view> FindModelText(std::int32_t code) {
  if (code == kUnspecified) return kUnspecifiedText;
  if (code < 0 || code >= static_cast<std::int32_t>(kModelTexts.size())) return std::nullopt;
  return kModelTexts[static_cast<std::size_t>(code)];
}

}  // namespace

std::string IOErrorText(std::int32_t code) {
  const auto text = FindIOText(code);
  if (!text) return "IO error " + std::to_string(code).append(kMissingText);
  const std::string_view prefix = code > kIOPrefixLimit ? "IO error " : "";
  return std::string(prefix).append(std::to_string(code)).append(": ").append(*text);
}

std::string ModelErrorText(std::int32_t code) {
  if (code >= kIOPrefixLimit) return IOErrorText(code);
  const auto text = FindModelText(code);
  if (!text) return "Sumara Tables error " + std::to_string(code).append(kMissingText);
  std::string result = std::string("Sumara Tables error: ").append(*text);
  if (EndsInExtensionRule(code)) result += ExtensionRule();
  return result;
}

}  // namespace Sumara
