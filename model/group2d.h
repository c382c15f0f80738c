#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/group_base.h"
#include "model/series2d.h"

namespace Sumara {

/// A group over two axes.
template <class T>
class CGroup2D final : public CGroupBase<T> {
 public:
  CGroup2D(GroupDescription description, const std::shared_ptr<CAxisBase>& primaryAxis,
           const std::shared_ptr<CAxisBase>& secondaryAxis);

  /// \throws CException 17 if `series` is not a `CSeries2D<T>`, and as the base
  void AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) override;

 protected:
  std::shared_ptr<ISeries> MakeSeries(const std::string& name,
                                      const std::string& quantity) override;
};

}  // namespace Sumara
