#include "model/load_request.h"

#include <algorithm>
#include <numeric>

#include "core/error_context.h"
#include "core/exceptions.h"
#include "model/model_context.h"

namespace Sumara {
namespace {

using Places = std::vector<std::size_t>;

Places AllOf(std::uint64_t count) {
  Places places(static_cast<std::size_t>(count));
  std::iota(places.begin(), places.end(), std::size_t{0});
  return places;
}

Places AsSet(Places places) {
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  return places;
}

void CheckRequestedCount(std::int32_t code, std::size_t requested, std::uint64_t present) {
  if (requested <= present) return;
  throw CException(code, "Requested: " + std::to_string(requested) +
                             " item(s); Present: " + std::to_string(present) + " item(s)");
}

[[noreturn]] void FailAtItem(std::int32_t code, const std::string& item) {
  throw CException(code, "Requested item: '" + item + "'");
}

std::string Shown(double value) { return NumberText(value); }
const std::string& Shown(const std::string& label) { return label; }

/// The series of a request.
class SeriesPlaces {
 public:
  explicit SeriesPlaces(const IGroup& group) : m_group(group) {}

  Places operator()(std::span<const std::string> names) const {
    CheckRequestedCount(19, names.size(), m_group.GetNumberOfSeries());
    Places places;
    for (const std::string& name : names) {
      const auto place = m_group.Series().PlaceOfExact(name);
      if (!place) FailAtItem(55, name);
      places.push_back(*place);
    }
    return places;
  }

  Places operator()(std::span<const std::size_t> numbers) const {
    const std::size_t present = m_group.GetNumberOfSeries();
    if (numbers.empty()) return AllOf(present);
    CheckRequestedCount(19, numbers.size(), present);
    for (const std::size_t number : numbers) {
      if (number >= present) FailAtItem(55, std::to_string(number));
    }
    return {numbers.begin(), numbers.end()};
  }

 private:
  const IGroup& m_group;
};

/// The indices of the secondary axis of a request.
class SecondaryPlaces {
 public:
  explicit SecondaryPlaces(const IGroup& group) : m_group(group) {}

  Places operator()(AllSecondary) const {
    m_group.CheckPointCount(Count());
    return AllOf(Count());
  }

  Places operator()(std::span<const double> values) const {
    const auto interval = m_group.Axes().Find<CIntervalAxis>(kSecondary);
    return Among(interval != nullptr ? interval->GetValues() : m_group.GetNumericLabels(kSecondary),
                 values);
  }

  Places operator()(std::span<const std::string> labels) const {
    return Among(m_group.GetStringLabels(kSecondary), labels);
  }

  Places operator()(std::span<const std::size_t> numbers) const {
    if (numbers.empty()) return (*this)(AllSecondary{});
    CheckRequestedCount(20, numbers.size(), Count());
    for (const std::size_t number : numbers) {
      if (number < Count()) continue;
      throw CException(40,
                       AxisContext(m_group.Axes().Get(kSecondary)->GetName(), number, &m_group));
    }
    return {numbers.begin(), numbers.end()};
  }

 private:
  std::uint64_t Count() const {
    return m_group.GetNumberOfAxes() < 2 ? 1 : m_group.GetNumberOfPoints(kSecondary);
  }

  template <class Value>
  Places Among(const std::vector<Value>& present, std::span<const Value> wanted) const {
    CheckRequestedCount(20, wanted.size(), present.size());
    Places places;
    for (const Value& value : wanted) places.push_back(PlaceOf(value, present));
    return places;
  }

  /// A label has to be spelled exactly here.
  template <class Value>
  std::size_t PlaceOf(const Value& value, const std::vector<Value>& present) const {
    try {
      const std::uint64_t index = m_group.Axes().IndexOf(kSecondary, value, LabelMatch::kFirst);
      if (present[index] == value) return static_cast<std::size_t>(index);
    } catch (const CException&) {  // told below in the words of a request
    }
    FailAtItem(43, Shown(value));
  }

  const IGroup& m_group;
};

}  // namespace

void CheckNotEmpty(const LoadRequest& request, const std::string& path) {
  const auto refuseIf = [&path](bool refused, std::int32_t code) {
    if (refused) throw CException(code, FileContext(path));
  };
  const auto* const names = std::get_if<std::span<const std::string>>(&request.series);
  const auto* const values = std::get_if<std::span<const double>>(&request.secondary);
  const auto* const labels = std::get_if<std::span<const std::string>>(&request.secondary);
  refuseIf(names != nullptr && names->empty(), 21);
  refuseIf((values != nullptr && values->empty()) || (labels != nullptr && labels->empty()), 22);
}

LoadPlaces PlacesOf(const LoadRequest& request, const IGroup& group) {
  LoadPlaces places;
  places.variables = AsSet(std::visit(SeriesPlaces(group), request.series));
  places.secondary = AsSet(std::visit(SecondaryPlaces(group), request.secondary));
  return places;
}

}  // namespace Sumara
