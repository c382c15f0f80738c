#pragma once

#include <memory>
#include <string>

#include "api/output_specification.h"
#include "api/types.h"

namespace Sumara {
class IGroup;
}

namespace SumaraApi {

/// An output group to be written: its place on disk and its description. Data goes into the derived
/// classes. It may be changed and written again after it was written.
class OutputGroup : public IOutputSpecification {
 public:
  ~OutputGroup() override;
  OutputGroup(const OutputGroup&) = delete;
  OutputGroup& operator=(const OutputGroup&) = delete;

  /// The path of the header file, as given.
  std::string GetPath() const override;
  FileFormat GetFileFormat() const override { return FileFormat::Tolvan; }

  std::string GetGroupName() const;    ///< GENLAB
  std::string GetDataSource() const;   ///< CONTENT
  std::string GetGroupConfig() const;  ///< CONFIG
  VariableDataFormat GetVariableDataFormat() const;
  std::string GetDataFilePath() const;

  /// Whether writing makes the termination file that lets the group be found as a run; default
  /// `Create`.
  void SetTEFileCreation(TEFileCreation teFileCreation) { m_teFileCreation = teFileCreation; }

  /// \cond internal
  TEFileCreation GetTEFileCreation() const { return m_teFileCreation; }
  std::shared_ptr<Sumara::IGroup> const& GetGroup() const { return m_group; }
  /// \endcond

 protected:
  explicit OutputGroup(std::shared_ptr<Sumara::IGroup> group);

 private:
  std::shared_ptr<Sumara::IGroup> m_group;
  TEFileCreation m_teFileCreation = TEFileCreation::Create;
};

}  // namespace SumaraApi
