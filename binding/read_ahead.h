#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <unordered_map>
#include <utility>

#include "binding/python_object.h"

namespace Binding {

/// What was read from iterables that give their items only once, to choose an overload by them. The
/// call that follows takes the items from here.
///
/// Items are kept with the argument in which their iterable was found, so that they go with it if
/// no overload fits. Those of a call that failed halfway are dropped by and by.
class ReadAhead {
 public:
  /// While an argument is checked.
  class Argument {
   public:
    explicit Argument(PyObject* argument) : m_outer(s_current) {
      if (!s_current) {
        s_current = argument;
      }
    }
    ~Argument() { s_current = m_outer; }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;

   private:
    PyObject* m_outer;
  };

  /// A list of what the iterable gives, read at the first request; none, with an exception set, if
  /// that fails. Called while an argument is checked.
  static PyRef Items(PyObject* iterable) {
    for (const Entry& entry : Entries()) {
      const auto known = entry.items.find(iterable);
      if (known != entry.items.end()) {
        return known->second.items;
      }
    }
    const PyRef argument = PyRef::Borrowed(s_current);
    PyRef items(PySequence_List(iterable));
    if (items) {
      EntryOf(argument).items.insert_or_assign(iterable, Read{PyRef::Borrowed(iterable), items});
    }
    return items;
  }

  /// Gives up the items of an iterable; none if it was not read ahead.
  static PyRef Take(PyObject* iterable) {
    for (auto entry = Entries().begin(); entry != Entries().end(); ++entry) {
      const auto found = entry->items.find(iterable);
      if (found != entry->items.end()) {
        const Read taken = std::move(found->second);
        entry->items.erase(found);
        if (entry->items.empty()) {
          Remove(entry);
        }
        return taken.items;
      }
    }
    return PyRef();
  }

  /// Drops what was read from arguments for which there is no overload.
  template <std::size_t N>
  static void Drop(PyObject* const (&arguments)[N]) {
    for (PyObject* argument : arguments) {
      const auto entry = Find(argument);
      if (entry != Entries().end()) {
        Remove(entry);
      }
    }
  }

 private:
  struct Read {
    PyRef iterable;
    PyRef items;
  };
  struct Entry {
    PyRef argument;
    std::unordered_map<PyObject*, Read> items;
  };

  /// Never destroyed: at the end of the process there is no interpreter left to release objects to.
  static std::deque<Entry>& Entries() {
    static auto* const entries = new std::deque<Entry>;
    return *entries;
  }

  static std::deque<Entry>::iterator Find(PyObject* argument) {
    return std::find_if(Entries().begin(), Entries().end(), [argument](const Entry& entry) {
      return entry.argument.Get() == argument;
    });
  }

  /// Releases the objects last: that may run code which comes back here.
  static void Remove(std::deque<Entry>::iterator entry) {
    const Entry removed = std::move(*entry);
    Entries().erase(entry);
  }

  static Entry& EntryOf(const PyRef& argument) {
    const auto known = Find(argument.Get());
    if (known != Entries().end()) {
      return *known;
    }
    constexpr std::size_t kMostArguments = 8;  // calls within calls are few
    if (Entries().size() == kMostArguments) {
      Remove(Entries().begin());
    }
    return Entries().emplace_back(Entry{argument, {}});
  }

  inline static PyObject* s_current = nullptr;
};

}  // namespace Binding
