#include "model/group_identity.h"

#include <algorithm>
#include <utility>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "core/text.h"

namespace Sumara {

GroupIdentity::GroupIdentity(GroupDescription description) : m_description(std::move(description)) {
  if (!IsValidName(Name())) throw CException(56, Context());
  if (ContainsLineBreak(Config())) throw CException(57, Context());
  if (!IsValidName(DataSource())) throw CException(58, Context());
  if (Path().empty()) throw CException(59, Context());
  m_number = ParseGroupNumber(Path());
}

std::string GroupIdentity::FileName() const { return std::string(FileNameOf(Path())); }

std::string GroupIdentity::FileStem() const { return std::string(StemOf(FileNameOf(Path()))); }

std::string GroupIdentity::Directory() const {
  if (Path().empty()) return {};
  std::string directory = DirectoryOf(Path());
  if (directory.empty()) return std::string(".") + kSeparator;
  return directory;
}

std::string GroupIdentity::DataFileName() const {
  if (!m_description.dataFileName.empty() || Path().empty()) return m_description.dataFileName;
  std::string name = FileName();
  std::replace(name.begin(), name.end(), '%', '$');
  return name;
}

void GroupIdentity::AddNamedParameters(const std::vector<std::string>& lines) {
  m_namedParameters.insert(m_namedParameters.end(), lines.begin(), lines.end());
}

std::string GroupIdentity::Context() const {
  std::string directory = Directory();
  if (directory.empty()) return "Group name: '" + Name() + "'";
  WithTrailingSeparator(directory);
  return FileContext(directory + Name());
}

}  // namespace Sumara
