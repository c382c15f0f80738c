#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "groupfiles/interval_value.h"

namespace Sumara {

class IGroup;

/// The kinds of axis, as `GetAxisType` numbers them; not AXIMETH of a header.
inline constexpr std::uint32_t kIntervalAxis = 0;
inline constexpr std::uint32_t kLabelledValueAxis = 1;
inline constexpr std::uint32_t kLabelledStringAxis = 2;

/// The positions of an axis in its group.
inline constexpr std::uint32_t kPrimary = 0;
inline constexpr std::uint32_t kSecondary = 1;

/// The independent variable of a group: the coordinate of each data point.
///
/// A group copies each axis that is attached to it, and from then on the copy is the one in use.
class CAxisBase {
 public:
  virtual ~CAxisBase() = default;

  /// The points of a primary axis as last told to it, or the labels of a secondary labelled axis.
  virtual std::uint64_t GetNumberOfPoints() const { return m_pointCount; }
  /// The value at `index` as text; numbers in scientific notation, to 15 digits for the data type
  /// double and else to 7. \throws CException 34, 40
  virtual std::string GetLabelAsString(std::uint64_t index, std::uint32_t dataType) = 0;
  /// All values as text; made on the first request, whatever the data type of later ones.
  virtual const std::vector<std::string>& GetLabelsAsStrings(std::uint32_t dataType) = 0;
  virtual std::uint32_t GetAxisType() const = 0;
  virtual void SetNumberOfPoints(std::uint64_t count) { m_pointCount = count; }
  virtual std::string GetName() const { return m_name; }
  virtual std::string GetQuantity() const { return m_quantity; }

  /// The value at `index` as a number; the index itself on an axis of labelled strings.
  virtual double GetNumberAtIndex(std::uint64_t index) = 0;
  /// A copy, of the values too.
  virtual std::shared_ptr<CAxisBase> Copy() const = 0;
  /// The copy that `group` keeps: it counts the points of that group, none until it has been told.
  std::shared_ptr<CAxisBase> CopyFor(IGroup* group);

  void SetPosition(std::uint32_t position) { m_position = position; }
  std::uint32_t GetPosition() const { return m_position; }

 protected:
  /// \throws CException 30, 31
  CAxisBase(std::string name, std::string quantity);
  CAxisBase(const CAxisBase&) = default;

  /// Tells the group that asks for a copy.
  virtual void BelongTo(IGroup* /*group*/) {}

  std::string m_name;
  std::string m_quantity;
  std::vector<std::string> m_labelStrings;
  std::uint32_t m_position = kPrimary;
  std::uint64_t m_pointCount = 0;
};

/// A regular grid, told by its first value and its step.
class CIntervalAxis final : public CAxisBase {
 public:
  /// \throws CException 30, 31, 33
  CIntervalAxis(std::string name, std::string quantity, double minimum, double step);
  CIntervalAxis(const CIntervalAxis& other);

  std::string GetLabelAsString(std::uint64_t index, std::uint32_t dataType) override;
  const std::vector<std::string>& GetLabelsAsStrings(std::uint32_t dataType) override;
  std::uint32_t GetAxisType() const override { return kIntervalAxis; }
  void SetNumberOfPoints(std::uint64_t count) override;
  double GetNumberAtIndex(std::uint64_t index) override { return DataAtIndex(index); }
  std::shared_ptr<CAxisBase> Copy() const override;

  /// The group whose points the axis counts. The axis does not keep it alive.
  virtual void SetGroup(IGroup* group) { m_group = group; }

  /// `index * step + minimum`, for an index below the group's number of points; good until the next
  /// call. \throws CException 40
  const double& DataAtIndex(std::uint64_t index);
  double GetMinimum() const { return m_minimum; }
  double GetStep() const { return m_step; }

  /// All values; made on the first request after the number of points was set.
  const std::vector<double>& GetValues() { return *ShareValues(); }
  /// The same vector, which stays as it is when the axis computes new values.
  std::shared_ptr<std::vector<double>> ShareValues();

 protected:
  void BelongTo(IGroup* group) override { SetGroup(group); }

 private:
  double ValueAt(std::uint64_t index) const { return IntervalValue(m_minimum, m_step, index); }
  std::uint64_t CountForCache() const;

  double m_minimum;
  double m_step;
  std::shared_ptr<std::vector<double>> m_values = std::make_shared<std::vector<double>>();
  double m_scratchValue = 0.0;
  IGroup* m_group = nullptr;
};

/// A list of labels: numbers (T is double) or texts (T is std::string), in file order, never empty.
template <class T>
class CLabelledAxis final : public CAxisBase {
 public:
  /// Labels of an axis for position 1 have to differ from each other; for position 0 they may
  /// repeat. \throws CException 30, 31, 32, 44
  CLabelledAxis(std::string name, std::string quantity, std::vector<T> labels,
                std::uint32_t uniquePosition);
  CLabelledAxis(const CLabelledAxis& other);

  std::uint64_t GetNumberOfPoints() const override;
  std::string GetLabelAsString(std::uint64_t index, std::uint32_t dataType) override;
  const std::vector<std::string>& GetLabelsAsStrings(std::uint32_t dataType) override;
  std::uint32_t GetAxisType() const override;
  double GetNumberAtIndex(std::uint64_t index) override;
  std::shared_ptr<CAxisBase> Copy() const override;

  /// The label at `index`; good until the next call. \throws CException 34, 40
  const T& DataAtIndex(std::uint64_t index);
  const std::vector<T>& GetLabels() const { return *m_labels; }
  std::shared_ptr<std::vector<T>> ShareLabels() const { return m_labels; }

  /// The indices of all labels that match, ascending: numbers exactly, texts whatever their case.
  /// \throws CException 42
  std::vector<std::uint64_t> FindIndices(const T& value) const;

 private:
  void CheckIndex(std::uint64_t index) const;

  std::shared_ptr<std::vector<T>> m_labels;
  T m_scratchValue{};
};

using CLabelledValueAxis = CLabelledAxis<double>;
using CLabelledStringAxis = CLabelledAxis<std::string>;

}  // namespace Sumara
