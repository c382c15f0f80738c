#include "model/group1d.h"

#include <utility>

#include "model/model_context.h"

namespace Sumara {

template <class T>
CGroup1D<T>::CGroup1D(GroupDescription description, const std::shared_ptr<CAxisBase>& primaryAxis)
    : CGroupBase<T>(std::move(description)) {
  this->AddAxis(primaryAxis, kPrimary);
}

template <class T>
void CGroup1D<T>::AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) {
  if (std::dynamic_pointer_cast<CSeries1D<T>>(series) == nullptr)
    throw CException(17, GroupContext(this));
  IGroup::AddSeries(series, renameOnClash);
}

template <class T>
std::shared_ptr<ISeries> CGroup1D<T>::MakeSeries(const std::string& name,
                                                 const std::string& quantity) {
  auto series = std::make_shared<CSeries1D<T>>(name, quantity);
  series->SetGroup(this);
  series->SetLoadState(LoadState::kWaiting);
  return series;
}

#define TABULON_INSTANTIATE(T) template class CGroup1D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
