#include "model/group_base.h"

namespace Sumara {

template <class T>
void CGroupBase<T>::CheckPointCount(std::uint64_t count) const {
  if (IsDeserialised()) m_data.CheckPointCount(count);
}

template <class T>
void CGroupBase<T>::LoadSeries(const std::vector<std::size_t>& variables,
                               const std::vector<std::size_t>& secondary, bool keepBuffer) {
  m_data.Load(GetReader(), GetHeaderRecordCount(), {variables, secondary, keepBuffer},
              MutableSeries(), [this](const std::string& name, const std::string& quantity) {
                return MakeSeries(name, quantity);
              });
}

#define TABULON_INSTANTIATE(T) template class CGroupBase<T>;
TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_INSTANTIATE)
#undef TABULON_INSTANTIATE

}  // namespace Sumara
