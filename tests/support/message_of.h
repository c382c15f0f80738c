#pragma once

#include <exception>
#include <string>

namespace testing_support {

/// The text of the exception that `action` ends with, or "no exception".
template <class Action>
std::string MessageOf(Action&& action) {
  try {
    action();
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "no exception";
}

}  // namespace testing_support
