#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/group_number.h"

namespace Sumara {

/// What a group is made of, whether it is read or to be written.
struct GroupDescription {
  std::string path;  ///< of the header file
  bool binary = true;
  std::string name;          ///< GENLAB
  std::string config;        ///< CONFIG
  std::string dataSource;    ///< CONTENT
  std::string dataFileName;  ///< FILE; empty to follow the header's name
};

/// What a group says of itself: its texts, where its files are, its numbers and types.
class GroupIdentity {
 public:
  /// \throws CException for texts that are not valid, in this order: 56 the name, 57 the
  ///         configuration, 58 the data source, 59 an empty path, 60 and 80 a path without a
  ///         number.
  explicit GroupIdentity(GroupDescription description);

  const std::string& Path() const { return m_description.path; }
  void SetPath(const std::string& path) { m_description.path = path; }
  std::string FileName() const;
  std::string FileStem() const;
  /// With a separator at its end; "./" for a bare file name, empty without a path.
  std::string Directory() const;
  /// That of the header, with dollar signs for percent signs, where none was given.
  std::string DataFileName() const;
  std::string DataFilePath() const { return Directory() + DataFileName(); }

  const std::string& Name() const { return m_description.name; }
  const std::string& Config() const { return m_description.config; }
  const std::string& DataSource() const { return m_description.dataSource; }
  bool IsBinary() const { return m_description.binary; }

  std::uint64_t Number() const { return m_number; }
  void SetNumber(std::uint64_t number) { m_number = number; }
  std::uint64_t HeaderRecordCount() const { return m_headerRecordCount; }
  void SetHeaderRecordCount(std::uint64_t count) { m_headerRecordCount = count; }
  /// The type to write or to hold the data in, 0 for that of the group.
  std::uint32_t TargetType() const { return m_targetType; }
  void SetTargetType(std::uint32_t type) { m_targetType = type; }
  /// The type in the file that the group was read from.
  std::uint32_t SerialisedType() const { return m_serialisedType; }
  void SetSerialisedType(std::uint32_t type) { m_serialisedType = type; }
  /// The lines of NVARS, as they stand.
  const std::vector<std::string>& NamedParameters() const { return m_namedParameters; }
  void AddNamedParameters(const std::vector<std::string>& lines);
  /// The path under which the registry holds the group.
  const std::string& RegistryPath() const { return m_registryPath; }
  void SetRegistryPath(const std::string& path) { m_registryPath = path; }

  /// The group in the words of a failure.
  std::string Context() const;

 private:
  GroupDescription m_description;
  std::uint64_t m_number = kNoGroupNumber;
  std::uint64_t m_headerRecordCount = 0;
  std::uint32_t m_targetType = 0;
  std::uint32_t m_serialisedType = 0;
  std::vector<std::string> m_namedParameters;
  std::string m_registryPath;
};

}  // namespace Sumara
