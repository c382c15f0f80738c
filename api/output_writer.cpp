#include "api/output_writer.h"

#include "api/output_group.h"
#include "api/run.h"
#include "core/element_types.h"
#include "core/error_context.h"
#include "core/exceptions.h"
#include "core/paths.h"
#include "model/file_writer.h"
#include "model/group_writer.h"
#include "model/model_context.h"

namespace SumaraApi {
namespace {

const OutputGroup& GroupOf(IOutputSpecification const& specification) {
  const auto* group = dynamic_cast<const OutputGroup*>(&specification);
  if (group != nullptr && group->GetFileFormat() == FileFormat::Tolvan) return *group;
  throw Sumara::CException(173, Sumara::FileContext(specification.GetPath()));
}

using DataWriter = void (*)(const Sumara::GroupHolder&, Sumara::OutputFile&, bool check);

/// The public classes hold three of the five element types.
DataWriter DataWriterOf(const Sumara::IGroup& group) {
  switch (group.GetDataType()) {
    case Sumara::kFloatCode:
      return Sumara::Write<float>;
    case Sumara::kDoubleCode:
      return Sumara::Write<double>;
    case Sumara::kIntCode:
      return Sumara::Write<int>;
    default:
      throw Sumara::CException(172, Sumara::GroupContext(&group));
  }
}

void WriteHeaderFile(const Sumara::GroupHolder& holder) {
  Sumara::OutputFile file(holder.group->GetPath());
  Sumara::WriteHeader(holder, file, /*withoutStatistics=*/true);
  file.Close();
}

void WriteDataFile(const Sumara::GroupHolder& holder, DataWriter write) {
  Sumara::OutputFile file(holder.group->GetDataFilePath());
  write(holder, file, /*check=*/true);
  file.Close();
}

/// The file that makes a run of the group. Groups of one run share it.
void WriteTerminationFile(const Sumara::IGroup& group, bool overwrite) {
  const std::string path =
      group.GetDirectory() + group.GetFileStem() + Run::TerminationFileExtension;
  if (!overwrite && Sumara::Exists(path)) return;
  CWriter writer(path);
  writer.Text() << "User-generated output group '" << group.GetFileName() << "'\n";
  writer.Write();
}

}  // namespace

bool WriteOutputFiles(IOutputSpecification const& specification,
                      OverwriteBehaviour const overwriteBehaviour) {
  const OutputGroup& output = GroupOf(specification);
  const Sumara::GroupHolder holder{output.GetGroup()};
  const Sumara::IGroup& group = *holder.group;
  if (group.GetNumberOfSeries() == 0) {
    throw Sumara::CException(174, Sumara::GroupContext(&group));
  }
  const bool overwrite = overwriteBehaviour != OverwriteBehaviour::DoNotOverwriteExistingOutput;
  if (!overwrite && Sumara::Exists(group.GetPath())) return false;
  Sumara::CreateDirectories(group.GetDirectory());
  const DataWriter writeData = DataWriterOf(group);
  WriteHeaderFile(holder);
  WriteDataFile(holder, writeData);
  if (output.GetTEFileCreation() != TEFileCreation::DoNotCreate) {
    WriteTerminationFile(group, overwrite);
  }
  return true;
}

}  // namespace SumaraApi
