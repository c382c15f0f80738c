#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// Rules for names, labels and values as text. Names are bytes: nothing here knows an encoding.

namespace Sumara {

/// White space of the classic locale: blank, tab, line feed, vertical tab, form feed, carriage
/// return.
constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Equality without regard to case, byte by byte up to the longer of the two lengths.
bool EqualsNoCase(std::string_view a, std::string_view b);

/// Hash and equality for containers keyed without regard to case. Any bits of the hash will do.
struct HashNoCase {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const;
};
struct EqualNoCase {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return EqualsNoCase(a, b); }
};
/// Hash for containers keyed by exact text that are asked with a `string_view`.
struct HashText {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const {
    return std::hash<std::string_view>{}(text);
  }
};

bool ContainsWhitespace(std::string_view text);
bool IsOnlyWhitespace(std::string_view text);   ///< true for an empty text too
bool ContainsLineBreak(std::string_view text);  ///< a carriage return or a line feed

/// A name or quantity code is valid if it is not empty, not only white space and on one line.
bool IsValidName(std::string_view text);

/// Cuts one leading quote mark, ' or ", and one trailing; they need not match.
void StripQuotes(std::string& text);

/// Cuts trailing blanks, tabs, carriage returns and line feeds.
void TrimTrailing(std::string& text);

/// Cuts leading white space from the view.
inline void SkipSpace(std::string_view& text) {
  std::size_t at = 0;
  while (at < text.size() && IsSpace(text[at])) ++at;
  text.remove_prefix(at);
}

/// The text without leading and trailing white space.
std::string_view TrimSpace(std::string_view text);

/// Appends `addition`, each run of white space in it as one blank.
void AppendCollapsed(std::string& text, std::string_view addition);

/// Takes the next white-space-separated token from the front of `text`; false at the end.
bool TakeToken(std::string_view& text, std::string_view& token);

/// Takes the next token from the front of `text` as `SplitTokens` does with a quote character, but
/// as it stands there, with all its white space.
/// \throws CIOException 5021 if a quote is not closed.
bool TakeQuotedPiece(std::string_view& text, std::string_view& piece, char quote,
                     bool keepQuotes = false);

/// Takes the next token from the front of `text` as `SplitTokens` does with a quote character.
/// \throws CIOException 5021 if a quote is not closed.
bool TakeQuotedToken(std::string_view& text, std::string& token, char quote,
                     bool keepQuotes = false);

/// Appends the white-space-separated tokens of `text` to `tokens`.
///
/// With a quote character, tokens from one that begins with it up to the first that ends with it
/// are one token, joined by a blank; the marks go unless `keepQuotes`.
/// \throws CIOException 5021 if a quote is not closed.
void SplitTokens(std::string_view text, std::vector<std::string>& tokens, char quote = '\0',
                 bool keepQuotes = false);

/// The text before the last dot of a file name; the whole of it if there is none.
std::string_view StemOf(std::string_view fileName);

/// The text from the last dot of a file name; empty if there is none or if it is the first
/// character.
std::string_view ExtensionOf(std::string_view fileName);

/// The text behind the last `/` or `\`.
std::string_view FileNameOf(std::string_view path);

}  // namespace Sumara
