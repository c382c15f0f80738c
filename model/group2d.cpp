#include "model/group2d.h"

#include <algorithm>
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
  CGroupBase<T>::AddSeries(series, renameOnClash);
  typed->SetNumberOfVectors(this->GetNumberOfPoints(kSecondary));
}

template <class T>
bool CGroup2D<T>::IsSymmetric() const {
  if (!this->HasData()) return true;
  const auto series = this->GetAllSeries(/*withObjectOnly=*/true);
  const std::uint64_t primary = series.front()->GetNumberOfPointsOnAxis(kPrimary, /*widest=*/false);
  const std::uint64_t secondary =
      series.front()->GetNumberOfPointsOnAxis(kSecondary, /*widest=*/false);
  return std::all_of(series.begin(), series.end(), [&](const auto& other) {
    return other->GetNumberOfPointsOnAxis(kPrimary, /*widest=*/false) == primary &&
           other->GetNumberOfPointsOnAxis(kSecondary, /*widest=*/false) == secondary;
  });
}

template <class T>
std::uint64_t CGroup2D<T>::CountOfSecondary() const {
  const auto axis = this->GetAxis(kSecondary, /*mustExist=*/true);
  const std::uint64_t count = axis->GetNumberOfPoints();
  return count != 0 ? count : this->GetNumberOfPoints(kSecondary);
}

template <class T>
std::shared_ptr<ISeries> CGroup2D<T>::MakeSeries(const std::string& name,
                                                 const std::string& quantity) {
  const std::uint64_t count = CountOfSecondary();
  this->CheckPointCount(count);
  this->CheckPointCount(count * this->GetNumberOfSeries());
  auto series = std::make_shared<CSeries2D<T>>(name, quantity);
  series->SetGroup(this);
  series->SetNumberOfVectors(count);
  series->SetLoadState(LoadState::kWaiting);
  return series;
}

template <class T>
bool CGroup2D<T>::IsVectorLoaded(const ISeries& series, std::uint64_t secondary) const {
  return static_cast<const CSeries2D<T>&>(series).IsLoaded(secondary);
}

template <class T>
std::vector<T>& CGroup2D<T>::VectorToFill(ISeries& series, std::uint64_t secondary) {
  return static_cast<CSeries2D<T>&>(series).Vector(secondary);
}

template <class T>
void CGroup2D<T>::MarkFilled(ISeries& series, std::uint64_t secondary) {
  static_cast<CSeries2D<T>&>(series).SetLoadState(secondary, LoadState::kLoaded);
}

#define TABULON_INSTANTIATE(T) template class CGroup2D<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
