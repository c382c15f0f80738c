#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "api/cache_settings.h"
#include "api/group.h"
#include "api/independent_variable.h"
#include "api/run.h"
#include "api/tabulon_api.h"
#include "api/variable1d.h"
#include "api/variable2d.h"
#include "tests/fuzz/fuzzing.h"

// A walk over everything that a run tells, through the public interface.

namespace Fuzzing {

inline constexpr std::size_t kMostValues = 64;  ///< of an axis that are looked at
inline constexpr std::size_t kMostIndices = 2;  ///< of variables and of secondary values
inline constexpr std::size_t kThorough = 64;    ///< one input of so many goes all ways

/// What the calls of a walk gave, in words: two walks over the same files are compared by it.
class Journal {
 public:
  void Note(std::string_view text) { m_text.append(text).append("|"); }
  void Note(const char* text) { Note(std::string_view(text)); }
  template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
  void Note(Number value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(value));
    Note(std::to_string(bits));
  }
  template <class T>
  void Note(const std::vector<T>& values) {
    Note(values.size());
    for (const auto& value : values) Note(value);
  }

  /// Notes what `call` gives, or the library's refusal. \return the refusal.
  template <class Call>
  std::string Try(Call&& call) {
    std::string refusal = RefusalOf([&] {
      if constexpr (std::is_void_v<decltype(call())>) {
        call();
      } else {
        Note(call());
      }
    });
    m_text.append(refusal).append("\n");
    return refusal;
  }

  const std::string& Text() const { return m_text; }

 private:
  std::string m_text;
};

/// How a run is read.
struct Reading {
  bool buffered = true;
  SumaraApi::DataTypeSpecifier type = SumaraApi::DataTypeSpecifier::ReadAsSerialisedType;
};

/// Words that have no place where data was asked for as what it is.
inline constexpr std::string_view kWrongType = "Group type does not correspond to data type";

/// Most refusals of a walk are those of figures, and to throw them would take most of its time: of
/// calls that are much alike an input makes one, now this and now that, and few inputs make all.
class RunWalk {
 public:
  /// Called with each vector of data: its group, the places of the variable and of the secondary
  /// value, and the values.
  template <class T>
  using Visit = std::function<void(const SumaraApi::Group&, std::size_t variable,
                                   std::size_t secondary, const std::vector<T>&)>;

  /// Walks of one run by the same ways make the same calls.
  RunWalk(SumaraApi::RunPtr run, const Ways& ways)
      : m_run(std::move(run)), m_ways(ways), m_isThorough(m_ways.IsTurn(kThorough)) {}

  Visit<float> visitFloats;
  Visit<double> visitDoubles;
  Visit<int> visitInts;

  std::string Walk() {
    m_journal.Try([&] { return m_run->GetName(); });
    m_journal.Try([&] { return static_cast<int>(m_run->GetCompletionState()); });
    m_journal.Try([&] { return static_cast<int>(m_run->GetCalculationType()); });
    m_journal.Try([&] {
      for (const auto& group : m_run->GetAllGroups()) WalkGroup(*group);
    });
    return m_journal.Text();
  }

 private:
  void WalkGroup(const SumaraApi::Group& group) {
    m_journal.Try([&] { return group.GetName(); });
    m_journal.Try([&] { return group.GetNumber(); });
    m_journal.Try([&] { return group.GetVariableNames(); });
    m_journal.Try([&] { return group.GetCalculationShortName(); });
    m_journal.Try([&] { return group.GetCalculationDescriptiveName(); });
    TryOneOf([&] { return group.GetTimeDomainSimulationLength(); },
             [&] { return group.GetDataPointCount(); });
    m_journal.Try([&] { return static_cast<int>(group.GetVariableDataFormat()); });
    for (const auto& axis : group.GetIndependentVariables()) WalkAxis(*axis);
    m_journal.Try([&] {
      switch (group.GetVariableDataType()) {
        case SumaraApi::VariableDataType::Float32:
          return WalkVariables<float>(group, visitFloats);
        case SumaraApi::VariableDataType::Float64:
          return WalkVariables<double>(group, visitDoubles);
        case SumaraApi::VariableDataType::Int32:
          return WalkVariables<int>(group, visitInts);
      }
      Fail("a data type that is none");
    });
  }

  void WalkAxis(SumaraApi::IndependentVariable& axis) {
    m_journal.Try([&] { return axis.GetName(); });
    m_journal.Try([&] { return axis.GetSIUnit(); });
    m_journal.Try([&] { return axis.GetNumberOfValues(); });
    // An interval axis tells of as many values as its header claims, and makes them all.
    if (axis.GetAxisType() == SumaraApi::AxisTypeId::IntervalAxis &&
        axis.GetNumberOfValues() > kMostValues) {
      return;
    }
    TryOneOf([&] { return axis.GetValuesAsString(); }, [&] { return axis.GetValuesAsNumber(); });
  }

  template <class T>
  void WalkVariables(const SumaraApi::Group& group, const Visit<T>& visit) {
    // A group whose name stands twice gives the variables of the first, which the run knows.
    const std::vector<std::string> names = group.GetVariableNames();
    const std::size_t count = std::min(names.size(), kMostIndices);
    const bool walksAll = count < 2 || IsTurn(4);
    const std::size_t chosen = m_ways.Pick(kMostIndices);
    for (std::size_t i = 0; i < count; ++i) {
      if (walksAll || i == chosen) WalkVariable<T>(group, names[i], i, visit);
    }
    if (count < 2 || !walksAll) return;
    // One is dropped and read again, beside another that is loaded.
    m_journal.Try([&] { group.GetVariable(names[1])->Unload(); });
    WalkVariable<T>(group, names[1], 1, visit);
  }

  template <class T>
  void WalkVariable(const SumaraApi::Group& group, const std::string& name, std::size_t place,
                    const Visit<T>& visit) {
    m_journal.Try([&] {
      const auto variable = group.GetVariable(name);
      m_journal.Try([&] { return variable->GetSIUnit(); });
      m_journal.Try([&] { return variable->GetQuantityCode(); });
      if (group.GetIndependentVariables().size() == 2) {
        WalkVariable2D<T>(group, name, place, visit);
      } else {
        WalkVariable1D<T>(group, name, place, visit);
      }
    });
  }

  template <class T>
  void WalkVariable1D(const SumaraApi::Group& group, const std::string& name, std::size_t place,
                      const Visit<T>& visit) {
    const auto variable = group.GetVariable1D<T>(name);
    const std::string other = group.GetVariableNames().front();
    const auto walkFigures = [&] {
      TryOneOf([&] { return variable->GetMean(); }, [&] { return variable->GetMaximum(); },
               [&] { return variable->GetMinimum(); },
               [&] { return variable->GetMaximumContemporaneous(other); },
               [&] { return variable->GetMinimumContemporaneous(other); });
    };
    const auto walkData = [&] {
      m_journal.Try([&] {
        const std::vector<T>& values = variable->GetData();
        if (visit) visit(group, place, 0, values);
        return values;
      });
    };
    if (IsTurn(4)) walkFigures();  // before there is any data
    walkData();
    walkFigures();
    walkData();
  }

  template <class T>
  void WalkVariable2D(const SumaraApi::Group& group, const std::string& name, std::size_t place,
                      const Visit<T>& visit) {
    const auto variable = group.GetVariable2D<T>(name);
    const std::string other = group.GetVariableNames().back();
    const auto axis = variable->GetIndependentVariable(
        SumaraApi::IndependentVariableId::SecondaryIndependentVariable);
    const std::size_t count = std::min(axis->GetNumberOfValues(), kMostIndices);
    for (std::size_t s = 0; s < count; ++s) {
      if (IsTurn(4)) WalkFiguresAt(*variable, other, s);
      const std::string refusal = m_journal.Try([&] {
        const std::vector<T>& values = variable->GetDataAtIndex(s);
        if (visit) visit(group, place, s, values);
        return values;
      });
      Require(refusal.find(kWrongType) == std::string::npos,
              "data was not loaded, and nothing said so");
      if (IsTurn(4)) WalkFiguresAt(*variable, other, s);
    }
    if (IsTurn(4)) {
      TryOneOf([&] { WalkFiguresAt(*variable, other, count); },
               [&] { return variable->GetDataAtIndex(count); });
    }
    if (axis->GetNumberOfValues() > kMostValues) return;
    if (IsTurn(2)) WalkByValue(*variable, *axis);
    m_journal.Try([&] { return variable->GetDataForAllIndependentVariableValues(); });
    if (count > 0) WalkFiguresAt(*variable, other, m_ways.Pick(count));
  }

  template <class T>
  void WalkFiguresAt(SumaraApi::Variable2D<T>& variable, const std::string& other, std::size_t s) {
    TryOneOf([&] { return variable.GetMeanAtIndex(s); },
             [&] { return variable.GetMaximumAtIndex(s); },
             [&] { return variable.GetMinimumAtIndex(s); },
             [&] { return variable.GetMaximumContemporaneousAtIndex(other, s); },
             [&] { return variable.GetMinimumContemporaneousAtIndex(other, s); });
  }

  template <class T>
  void WalkByValue(SumaraApi::Variable2D<T>& variable, SumaraApi::IndependentVariable& axis) {
    TryOneOf(
        [&] {
          const std::vector<std::string> values = axis.GetValuesAsString();
          if (values.empty()) return;
          const std::string& last = values.back();
          TryOneOf([&] { return variable.GetDataAtValue(last); },
                   [&] { return variable.GetMeanAtValue(last); });
        },
        [&] {
          const std::vector<double>& values = axis.GetValuesAsNumber();
          if (values.empty()) return;
          const double last = values.back();
          TryOneOf([&] { return variable.GetDataAtValue(last); },
                   [&] { return variable.GetMaximumAtValue(last); });
        });
  }

  bool IsTurn(std::size_t count) { return m_ways.IsTurn(count) || m_isThorough; }

  /// Notes what one of the calls gives, or each of them where the walk is thorough.
  template <class... Calls>
  void TryOneOf(Calls&&... calls) {
    const std::size_t chosen = m_ways.Pick(sizeof...(calls));
    std::size_t place = 0;
    const auto visit = [&](auto& call) {
      if (m_isThorough || place == chosen) m_journal.Try(call);
      ++place;
    };
    (visit(calls), ...);
  }

  SumaraApi::RunPtr m_run;
  Ways m_ways;
  bool m_isThorough;
  Journal m_journal;
};

/// The run as a process would find it that has read nothing so far.
inline SumaraApi::RunPtr OpenRun(const std::string& directory, const std::string& name,
                                 const Reading& reading) {
  using SumaraApi::TabulonApi_CacheSettings;
  SumaraApi::TabulonApi::ClearRuns();
  TabulonApi_CacheSettings::SetBufferedReadEnabled(reading.buffered);
  TabulonApi_CacheSettings::SetDataTypeForReading(reading.type);
  return SumaraApi::TabulonApi::GetRun(directory, name);
}

}  // namespace Fuzzing
