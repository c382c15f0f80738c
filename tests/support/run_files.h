#pragma once

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// The text of a group header, line by line. Tests start from a header that is in order and change
/// single lines of it.
class HeaderText {
 public:
  /// Two variables, "Mx" and "My", against three points of time; binary, R*4.
  static HeaderText OneAxis() {
    return HeaderText({"FILE\trun.$01", "ACCESS\tD", "FORM\tF", "RECL\t4", "FORMAT\tR*4",
                       "CONTENT\t'POWPROD'", "CONFIG\t'TRANSIENT'", "NDIMENS\t2", "DIMENS\t2\t3",
                       "GENLAB\t'Tower loads'", "VARIAB\t'Mx' 'My'", "VARUNIT\tFL 'F L'",
                       "AXISLAB\t'Time'", "AXIUNIT\tT", "AXIMETH\t2", "MIN \t1.0000000E+00",
                       "STEP\t5.0000000E-01", "NVARS\t0"});
  }

  /// Two variables against three radii and four points of time; binary, R*4. The block of the
  /// secondary axis comes first.
  static HeaderText TwoAxes() {
    HeaderText text = OneAxis();
    text.With("NDIMENS", "3").With("DIMENS", "2\t3\t4").With("GENLAB", "'Blade loads'");
    return text.Before("AXISLAB",
                       {"AXISLAB\t'Radius'", "AXIUNIT\tL", "AXIMETH\t3", "AXIVAL\t1.5 2.5 3.5"});
  }

  /// Gives the line of `label` another value; of lines with the same label the one counted from 0.
  HeaderText& With(std::string_view label, std::string_view value, std::size_t occurrence = 0) {
    *Find(label, occurrence) = std::string(label).append("\t").append(value);
    return *this;
  }

  HeaderText& Without(std::string_view label, std::size_t occurrence = 0) {
    m_lines.erase(Find(label, occurrence));
    return *this;
  }

  HeaderText& Before(std::string_view label, std::initializer_list<std::string> lines) {
    m_lines.insert(Find(label, 0), lines);
    return *this;
  }

  HeaderText& After(std::string_view label, std::initializer_list<std::string> lines,
                    std::size_t occurrence = 0) {
    m_lines.insert(Find(label, occurrence) + 1, lines);
    return *this;
  }

  HeaderText& Append(std::initializer_list<std::string> lines) {
    m_lines.insert(m_lines.end(), lines);
    return *this;
  }

  std::string Text(std::string_view lineEnd = "\n") const {
    std::string text;
    for (const std::string& line : m_lines) text.append(line).append(lineEnd);
    return text;
  }

 private:
  explicit HeaderText(std::vector<std::string> lines) : m_lines(std::move(lines)) {}

  std::vector<std::string>::iterator Find(std::string_view label, std::size_t occurrence) {
    for (auto line = m_lines.begin(); line != m_lines.end(); ++line) {
      const bool hasLabel =
          line->rfind(label, 0) == 0 && line->find_first_of(" \t") == label.size();
      if (hasLabel && occurrence-- == 0) return line;
    }
    throw std::logic_error("no line " + std::string(label));
  }

  std::vector<std::string> m_lines;
};

/// Numbers in lines, separated by blanks.
inline std::string LinesOf(const std::vector<std::vector<double>>& rows,
                           std::string_view lineEnd = "\n") {
  std::string text;
  for (const auto& row : rows) {
    for (const double value : row) {
      std::string number = std::to_string(value);
      number.erase(number.find_last_not_of('0') + 1);
      if (number.back() == '.') number.pop_back();  // integers can be read as any type
      text.append("  ").append(number);
    }
    text.append(lineEnd);
  }
  return text;
}

/// Words of the type T.
template <class T>
std::vector<T> WordsOf(const std::vector<double>& values) {
  std::vector<T> words;
  for (const double value : values) words.push_back(static_cast<T>(value));
  return words;
}

/// 0, 1, 2 and so on.
inline std::vector<double> Count(std::size_t size) {
  std::vector<double> values;
  for (std::size_t i = 0; i < size; ++i) values.push_back(static_cast<double>(i));
  return values;
}

}  // namespace testing_support
