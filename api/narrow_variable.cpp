#include "api/narrow_variable.h"

namespace SumaraApi {

std::string VariableContext(const std::string& variableName, const std::string& groupName,
                            const std::string& runPath) {
  std::string text;
  if (!variableName.empty()) text += "Variable name: '" + variableName + "'\n";
  if (!groupName.empty()) text += "Specified group name: '" + groupName + "'\n";
  return text + "Run: " + runPath;
}

}  // namespace SumaraApi
