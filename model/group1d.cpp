#include "model/group1d.h"

#include <algorithm>
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
  CGroupBase<T>::AddSeries(series, renameOnClash);
}

template <class T>
bool CGroup1D<T>::IsSymmetric() const {
  if (!this->HasData()) return true;
  const auto series = this->GetAllSeries(/*withObjectOnly=*/true);
  const std::uint64_t count = series.front()->GetNumberOfPointsOnAxis(kPrimary, /*widest=*/true);
  return std::all_of(series.begin(), series.end(), [&](const auto& other) {
    return other->GetNumberOfPointsOnAxis(kPrimary, /*widest=*/true) == count;
  });
}

template <class T>
std::shared_ptr<ISeries> CGroup1D<T>::MakeSeries(const std::string& name,
                                                 const std::string& quantity) {
  auto series = std::make_shared<CSeries1D<T>>(name, quantity);
  series->SetGroup(this);
  series->SetLoadState(LoadState::kWaiting);
  return series;
}

template <class T>
bool CGroup1D<T>::IsVectorLoaded(const ISeries& series, std::uint64_t) const {
  return series.IsLoaded() == 1;
}

template <class T>
std::vector<T>& CGroup1D<T>::VectorToFill(ISeries& series, std::uint64_t) {
  return static_cast<CSeries1D<T>&>(series).Data();
}

template <class T>
void CGroup1D<T>::MarkFilled(ISeries& series, std::uint64_t) {
  series.SetLoadState(LoadState::kLoaded);
}

#define TABULON_INSTANTIATE(T) template class CGroup1D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
