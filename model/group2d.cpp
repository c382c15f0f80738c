#include "model/group2d.h"

#include <utility>

#include "model/model_context.h"

namespace Sumara {

template <class T>
CGroup2D<T>::CGroup2D(GroupDescription description, const std::shared_ptr<CAxisBase>& primaryAxis,
                      const std::shared_ptr<CAxisBase>& secondaryAxis)
    : CGroupBase<T>(std::move(description)) {
  this->AddAxis(primaryAxis, kPrimary);
  this->AddAxis(secondaryAxis, kSecondary);
}

template <class T>
void CGroup2D<T>::AddSeries(const std::shared_ptr<ISeries>& series, bool renameOnClash) {
  const auto typed = std::dynamic_pointer_cast<CSeries2D<T>>(series);
  if (typed == nullptr) throw CException(17, GroupContext(this));
  IGroup::AddSeries(series, renameOnClash);
  try {
    typed->SetNumberOfVectors(this->GetNumberOfPoints(kSecondary));
  } catch (...) {
    this->RemoveLastSeries();
    throw;
  }
}

template <class T>
std::shared_ptr<ISeries> CGroup2D<T>::MakeSeries(const std::string& name,
                                                 const std::string& quantity) {
  const std::uint64_t count = this->CountOfSecondary();
  this->CheckPointCount(count);
  this->CheckPointCount(count * this->GetNumberOfSeries());
  auto series = std::make_shared<CSeries2D<T>>(name, quantity);
  series->SetGroup(this);
  series->SetNumberOfVectors(count);
  series->SetLoadState(LoadState::kWaiting);
  return series;
}

#define TABULON_INSTANTIATE(T) template class CGroup2D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
