#include "core/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/exceptions.h"

namespace Sumara {
namespace {

constexpr bool IsQuoteMark(char c) { return c == '\'' || c == '"'; }

std::size_t FindSpace(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && !IsSpace(text[at])) ++at;
  return at;
}

constexpr std::uint64_t kOnes = 0x0101010101010101u;
constexpr std::uint64_t kTopBits = kOnes << 7;
constexpr std::uint64_t kBlanks = kOnes * ' ';
constexpr std::size_t kWordSize = sizeof(std::uint64_t);

std::uint64_t LoadWord(const char* at) {
  std::uint64_t word;
  std::memcpy(&word, at, kWordSize);
  return word;
}

/// Eight characters in lower case.
constexpr std::uint64_t WordToLower(std::uint64_t word) {
  const std::uint64_t low = word & ~kTopBits;
  const std::uint64_t fromA = low + kOnes * (0x80 - 'A');
  const std::uint64_t beyondZ = low + kOnes * (0x7F - 'Z');
  const std::uint64_t capitals = fromA & ~beyondZ & ~word & kTopBits;
  return word | capitals >> 2;
}

/// The top bit of each byte below `limit`. A byte behind such a one may be marked in error.
constexpr std::uint64_t MarkBelow(std::uint64_t word, std::uint64_t limit) {
  return (word - kOnes * limit) & ~word & kTopBits;
}

/// True where white space begins that is more than one blank.
bool IsRun(std::string_view text, std::size_t at) {
  if (!IsSpace(text[at])) return false;
  return text[at] != ' ' || (at + 1 < text.size() && IsSpace(text[at + 1]));
}

/// The size of the piece at the front of `text` in which white space is single blanks only.
std::size_t FindPlainSize(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    for (; at + kWordSize < text.size(); at += kWordSize) {
      const std::uint64_t word = LoadWord(text.data() + at);
      const std::uint64_t next = LoadWord(text.data() + at + 1);
      const std::uint64_t pairs = MarkBelow(word ^ kBlanks, 1) & MarkBelow(next, ' ' + 1);
      if ((MarkBelow(word, ' ') | pairs) != 0) break;
    }
    for (const std::size_t stop = std::min(text.size(), at + kWordSize); at < stop; ++at) {
      if (IsRun(text, at)) return at;
    }
  }
  return at;
}

/// The size of a quoted token at the front of `text`: up to the first quote mark, other than that
/// at its start, that ends a word.
std::size_t FindQuotedSize(std::string_view text, char quote) {
  for (std::size_t at = 1; (at = text.find(quote, at)) != std::string_view::npos; ++at) {
    if (at + 1 == text.size() || IsSpace(text[at + 1])) return at + 1;
  }
  return std::string_view::npos;
}

}  // namespace

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;  // as nearly always, and told many characters at a time
  return std::equal(a.begin(), a.end(), b.begin(),
                    [](char x, char y) { return ToLower(x) == ToLower(y); });
}

std::size_t HashNoCase::operator()(std::string_view text) const {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;  // odd, its bits at random
  constexpr int kHighBits = 29;
  std::uint64_t hash = text.size();
  const auto add = [&](std::uint64_t word) {
    hash = (hash ^ WordToLower(word)) * kFactor;
    hash ^= hash >> kHighBits;  // those of the product depend on all of the word, the low ones not
  };
  for (; text.size() >= kWordSize; text.remove_prefix(kWordSize)) add(LoadWord(text.data()));
  std::uint64_t rest = 0;
  if (!text.empty()) std::memcpy(&rest, text.data(), text.size());
  add(rest);
  return static_cast<std::size_t>(hash);
}

bool ContainsWhitespace(std::string_view text) {
  return std::any_of(text.begin(), text.end(), IsSpace);
}

bool IsOnlyWhitespace(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsSpace);
}

bool ContainsLineBreak(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

bool IsValidName(std::string_view text) {
  return !IsOnlyWhitespace(text) && !ContainsLineBreak(text);
}

void StripQuotes(std::string& text) {
  if (!text.empty() && IsQuoteMark(text.front())) text.erase(0, 1);
  if (text.size() > 1 && IsQuoteMark(text.back())) text.pop_back();
  if (text.size() == 1 && IsQuoteMark(text.front())) text.clear();  // all that is left of '''
}

void TrimTrailing(std::string& text) {
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  text.resize(last == std::string::npos ? 0 : last + 1);
}

std::string_view TrimSpace(std::string_view text) {
  SkipSpace(text);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool TakeToken(std::string_view& text, std::string_view& token) {
  SkipSpace(text);
  token = text.substr(0, FindSpace(text));
  text.remove_prefix(token.size());
  return !token.empty();
}

bool TakeQuotedPiece(std::string_view& text, std::string_view& piece, char quote, bool keepQuotes) {
  SkipSpace(text);
  if (text.empty() || text.front() != quote) return TakeToken(text, piece);
  const std::size_t size = FindQuotedSize(text, quote);
  if (size == std::string_view::npos) {
    std::string token;
    AppendCollapsed(token, TrimSpace(text));
    throw CIOException(5021, "string = " + token + "; delimeter = " + quote);
  }
  piece = keepQuotes ? text.substr(0, size) : text.substr(1, size - 2);
  text.remove_prefix(size);
  return true;
}

bool TakeQuotedToken(std::string_view& text, std::string& token, char quote, bool keepQuotes) {
  token.clear();
  std::string_view piece;
  const bool isToken = TakeQuotedPiece(text, piece, quote, keepQuotes);
  if (isToken) AppendCollapsed(token, piece);
  return isToken;
}

void SplitTokens(std::string_view text, std::vector<std::string>& tokens, char quote,
                 bool keepQuotes) {
  if (quote == '\0') {
    std::string_view word;
    while (TakeToken(text, word)) tokens.emplace_back(word);
    return;
  }
  while (TakeQuotedToken(text, tokens.emplace_back(), quote, keepQuotes)) {
  }
  tokens.pop_back();
}

void AppendCollapsed(std::string& text, std::string_view addition) {
  for (;;) {
    const std::size_t plain = FindPlainSize(addition);
    text.append(addition.substr(0, plain));
    addition.remove_prefix(plain);
    if (addition.empty()) return;
    text += ' ';
    SkipSpace(addition);
  }
}

std::string_view StemOf(std::string_view fileName) {
  return fileName.substr(0, fileName.find_last_of('.'));
}

std::string_view ExtensionOf(std::string_view fileName) {
  const std::size_t dot = fileName.find_last_of('.');
  return dot == std::string_view::npos || dot == 0 ? std::string_view{} : fileName.substr(dot);
}

std::string_view FileNameOf(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);  // npos + 1 is 0
}

}  // namespace Sumara
