#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/element_types.h"
#include "model/group_data.h"
#include "model/group_statistics.h"
#include "model/igroup.h"

namespace Sumara {

/// A group whose data has the type T in memory, which may differ from the type in the file.
template <class T>
class CGroupBase : public IGroup {
 public:
  std::uint32_t GetDataType() const override { return kDataTypeCode<T>; }
  std::size_t GetDataSize() const { return sizeof(T); }

  void CreateReader(bool binary, bool skipOpen, const std::string& dataFilePath,
                    const std::vector<std::uint64_t>& dimensions, std::uint32_t fileType) override {
    m_data.Create(binary, skipOpen, dataFilePath, dimensions, fileType);
  }
  void CloseReader() override { m_data.Close(); }
  void ResetReader() override { m_data.Reset(); }
  CIOBase& GetReader() const override { return m_data.Reader(); }
  std::uint64_t GetReaderPointCount() const override { return m_data.PointCount(); }
  void CheckDataFileHasData() const override { m_data.CheckNotEmpty(); }
  void CheckPointCount(std::uint64_t count) const override;
  void LoadSeries(const std::vector<std::size_t>& variables,
                  const std::vector<std::size_t>& secondary, bool keepBuffer) override;

  void CheckStatisticsAvailable(std::uint64_t secondary) const override {
    m_statistics.CheckAvailable(secondary);
  }
  void ComputeLiveUloads() override { m_statistics.ComputeLiveUloads(CountOfSecondary()); }
  void ReadStoredStatistics(CHeaderReader& header, std::uint64_t variableCount) override {
    m_statistics.SetStored(header.ReadFigures(variableCount, CountOfSecondary()));
  }
  bool HasReadStoredStatistics() const override { return m_statistics.HasReadStored(); }

  /// The figures of the group's series. \throws CException as `GroupStatistics`.
  GroupStatistics<T>& Statistics() { return m_statistics; }

 protected:
  using IGroup::IGroup;

  /// A series that waits for its data.
  virtual std::shared_ptr<ISeries> MakeSeries(const std::string& name,
                                              const std::string& quantity) = 0;

 private:
  GroupData<T> m_data{[this] { return Identity().Context(); }};
  GroupStatistics<T> m_statistics{*this};
};

// Compiled once, in group_base.cpp.
#define TABULON_DECLARE(T) extern template class CGroupBase<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_DECLARE)
#undef TABULON_DECLARE

}  // namespace Sumara
