// Numbers as text: the library's conversion, and its passing over a number, against a stream.

#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

#include "core/element_types.h"
#include "core/numbers.h"
#include "groupfiles/text_numbers.h"
#include "tests/fuzz/fuzzing.h"

namespace {

using Fuzzing::Require;

constexpr int kMostNumbers = 8;  // of one input

template <class T>
struct Extraction {
  T value;
  std::string_view rest;
  bool isNumber;
};

template <class T>
constexpr T kBefore = 77;  // what stands in the variable, which may have to stay

template <class T>
Extraction<T> ExtractByStream(std::string_view text) {
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  T value = kBefore<T>;
  const bool isNumber = static_cast<bool>(stream >> value);
  stream.clear();
  return {value, text.substr(static_cast<std::size_t>(std::streamoff{stream.tellg()})), isNumber};
}

template <class T>
Extraction<T> Extract(std::string_view text) {
  T value = kBefore<T>;
  const bool isNumber = Sumara::ExtractNumber(text, value);
  return {value, text, isNumber};
}

/// \return the text behind the number.
template <class T>
std::string_view CheckNumber(std::string_view text) {
  using Standard = std::conditional_t<std::is_same_v<T, Sumara::Long>, std::int32_t, T>;
  const auto expected = ExtractByStream<Standard>(text);
  const auto found = Extract<T>(text);
  Require(Fuzzing::AreSameBits(found.value, expected.value), "another value");
  Require(found.rest == expected.rest, "another rest");
  Require(found.isNumber == expected.isNumber, "a number is told from other text otherwise");
  std::string_view skipped = text;
  Require(Sumara::SkipNumber<T>(skipped) == expected.isNumber, "a number is not passed over");
  Require(skipped == expected.rest, "another rest behind a number that was passed over");
  return found.rest;
}

template <class T>
void CheckNumbers(std::string_view text) {
  for (int i = 0; i < kMostNumbers && !text.empty(); ++i) {
    const std::string_view rest = CheckNumber<T>(text);
    const bool isStuck = rest.size() == text.size();
    text = isStuck ? rest.substr(1) : rest;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = Fuzzing::TextOf(data, size);
#define TABULON_CHECK(T) CheckNumbers<T>(text);
  TABULON_FOR_EACH_ELEMENT_TYPE(TABULON_CHECK)
#undef TABULON_CHECK
  return 0;
}
