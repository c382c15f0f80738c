#pragma once

#include <cctype>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/exceptions.h"

// The rules for tokens, told once more with streams and one character at a time.

namespace Fuzzing {

inline std::vector<std::string> WordsByModel(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

inline std::string JoinWords(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

/// \throws CIOException 5021
inline std::vector<std::string> TokensByModel(std::string_view text, char quote, bool keepQuotes) {
  if (quote == '\0') return WordsByModel(text);
  const std::vector<std::string> words = WordsByModel(text);
  std::vector<std::string> tokens;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::string token = words[i];
    if (token.front() == quote) {
      while (token.size() == 1 || token.back() != quote) {
        if (++i == words.size()) {
          throw CIOException(5021, "string = " + token + "; delimeter = " + quote);
        }
        token += " " + words[i];
      }
      if (!keepQuotes) {
        token.erase(0, 1);
        if (!token.empty() && token.back() == quote) token.pop_back();
      }
    }
    tokens.push_back(token);
  }
  return tokens;
}

inline std::string StripQuotesByModel(std::string_view text) {
  const auto isMark = [](char c) { return c == '\'' || c == '"'; };
  const bool cutsFirst = !text.empty() && isMark(text.front());
  const bool cutsLast = text.size() > 1 && isMark(text.back());
  if (cutsLast) text.remove_suffix(1);
  if (cutsFirst) text.remove_prefix(1);
  if (text.size() == 1 && isMark(text.front())) return {};
  return std::string(text);
}

/// Each run of white space as one blank.
inline std::string CollapseByModel(std::string_view text) {
  std::string collapsed;
  bool wasSpace = false;
  for (const char c : text) {
    const bool isSpace = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (!isSpace) collapsed += c;
    if (isSpace && !wasSpace) collapsed += ' ';
    wasSpace = isSpace;
  }
  return collapsed;
}

}  // namespace Fuzzing
