#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/exceptions.h"
#include "model/axes.h"

namespace Sumara {

/// Which of the labels of an axis that match is meant.
enum class LabelMatch {
  kFirst,   ///< a text so spelled, else in any case; of several the first
  kUnique,  ///< the only one, a text in any case
};

/// The axes of a group by position, and where a value or a label stands on them.
class GroupAxes {
 public:
  /// \param context tells of the group in failures.
  explicit GroupAxes(std::function<std::string()> context) : m_context(std::move(context)) {}

  /// Takes the axis of the next position.
  void Add(std::shared_ptr<CAxisBase> axis) { m_axes.push_back(std::move(axis)); }
  std::size_t Count() const { return m_axes.size(); }

  /// The axis, or null if there is none at that position or it is of another kind.
  template <class Axis = CAxisBase>
  std::shared_ptr<Axis> Find(std::uint32_t position) const {
    if (position >= m_axes.size()) return nullptr;
    return std::dynamic_pointer_cast<Axis>(m_axes[position]);
  }
  /// The axis. \throws CException 37 if there is none, 38 if it is of another kind.
  template <class Axis = CAxisBase>
  std::shared_ptr<Axis> Get(std::uint32_t position) const {
    auto axis = Find<Axis>(position);
    if (axis == nullptr) Refuse(position);
    return axis;
  }

  /// Whether there is no interval axis at that position.
  bool IsLabelled(std::uint32_t position) const;
  /// 0 where there are no labels.
  std::size_t LabelCount(std::uint32_t position) const;

  /// The index of a value on an axis of numeric labels; the first is sought on an interval axis
  /// too. \throws CException 42 for a value that is not there, 44 for one that is there several
  /// times
  ///         and has to be unique, 37 or 38 without such an axis.
  std::uint64_t IndexOf(std::uint32_t position, double value, LabelMatch match) const;
  /// The index of a label on an axis of texts; on any other that of the number that the label says.
  /// \throws CException as for a value; std::invalid_argument, std::out_of_range for no number.
  std::uint64_t IndexOf(std::uint32_t position, const std::string& label, LabelMatch match) const;

 private:
  [[noreturn]] void Refuse(std::uint32_t position) const;
  template <class Axis, class Value>
  std::uint64_t LabelIndex(const Axis& axis, const Value& value, LabelMatch match) const;

  std::function<std::string()> m_context;
  std::vector<std::shared_ptr<CAxisBase>> m_axes;
};

}  // namespace Sumara
