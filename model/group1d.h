#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/group_base.h"
#include "model/series1d.h"

namespace Sumara {

/// A group over one axis.
template <class T>
class CGroup1D final : public CGroupBase<T> {
 public:
  CGroup1D(GroupDescription description, const std::shared_ptr<CAxisBase>& primaryAxis);

  /// \throws CException 17 if `series` is not a `CSeries1D<T>`, and as the base
  void AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) override;

 protected:
  std::shared_ptr<ISeries> MakeSeries(const std::string& name,
                                      const std::string& quantity) override;
};

}  // namespace Sumara
