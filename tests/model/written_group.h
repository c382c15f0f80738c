#pragma once

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/group1d.h"
#include "model/group2d.h"
#include "model/group_writer.h"
#include "tests/support/temp_directory.h"

// Groups to be written, and the bytes that they should come to, composed without the writer.

namespace testing_support {

inline std::shared_ptr<Sumara::CAxisBase> TimeAxis(double minimum = 0.0, double step = 0.5) {
  return std::make_shared<Sumara::CIntervalAxis>("Time", "T", minimum, step);
}

inline std::shared_ptr<Sumara::CAxisBase> ValueAxis(std::vector<double> labels) {
  return std::make_shared<Sumara::CLabelledValueAxis>("Radius", "L", std::move(labels),
                                                      Sumara::kPrimary);
}

inline std::shared_ptr<Sumara::CAxisBase> StringAxis(std::vector<std::string> labels) {
  return std::make_shared<Sumara::CLabelledStringAxis>("Blade", "N", std::move(labels),
                                                       Sumara::kPrimary);
}

inline Sumara::GroupDescription Described(const std::string& path, bool binary) {
  return {path, binary, "Rotor", "TRANSIENT", "UserDefined", ""};
}

template <class T>
std::shared_ptr<Sumara::CGroup1D<T>> Group1D(
    const std::string& path, bool binary = true,
    const std::shared_ptr<Sumara::CAxisBase>& axis = TimeAxis()) {
  return std::make_shared<Sumara::CGroup1D<T>>(Described(path, binary), axis);
}

template <class T>
std::shared_ptr<Sumara::CGroup2D<T>> Group2D(const std::string& path, bool binary,
                                             const std::shared_ptr<Sumara::CAxisBase>& primary,
                                             const std::shared_ptr<Sumara::CAxisBase>& secondary) {
  return std::make_shared<Sumara::CGroup2D<T>>(Described(path, binary), primary, secondary);
}

template <class T>
std::shared_ptr<Sumara::CSeries1D<T>> AddSeries(Sumara::CGroup1D<T>& group, const std::string& name,
                                                const std::vector<T>& points = {},
                                                const std::string& quantity = "L") {
  auto series = std::make_shared<Sumara::CSeries1D<T>>(name, quantity);
  group.AddSeries(series, /*renameOnClash=*/false);
  if (!points.empty()) series->AddSeriesPoints(points, /*check=*/true);
  return series;
}

/// `vectors[s][i]`: secondary index outermost.
template <class T>
std::shared_ptr<Sumara::CSeries2D<T>> AddSeries(Sumara::CGroup2D<T>& group, const std::string& name,
                                                const std::vector<std::vector<T>>& vectors = {},
                                                const std::string& quantity = "L") {
  auto series = std::make_shared<Sumara::CSeries2D<T>>(name, quantity);
  group.AddSeries(series, /*renameOnClash=*/false);
  if (!vectors.empty()) series->AddSeriesPoints(vectors, /*check=*/true);
  return series;
}

/// The name of the variable number `i`.
inline std::string NameOf(std::size_t i) { return std::string("v").append(std::to_string(i)); }

/// What a write leaves in a new file in `directory`.
inline std::string HeaderOf(const TempDirectory& directory,
                            const std::shared_ptr<Sumara::IGroup>& group, bool withoutStatistics) {
  std::filesystem::remove(directory.Path("header"));
  Sumara::OutputFile file(directory.Path("header"));
  Sumara::WriteHeader({group}, file, withoutStatistics);
  file.Close();
  return directory.Read("header");
}

template <class T>
std::string DataOf(const TempDirectory& directory, const std::shared_ptr<Sumara::IGroup>& group,
                   bool check = true) {
  std::filesystem::remove(directory.Path("data"));
  Sumara::OutputFile file(directory.Path("data"));
  Sumara::Write<T>({group}, file, check);
  file.Close();
  return directory.Read("data");
}

/// The words one after the other.
template <class T>
std::string Bytes(const std::vector<T>& words) {
  std::string bytes(words.size() * sizeof(T), '\0');
  if (!words.empty()) std::memcpy(bytes.data(), words.data(), bytes.size());
  return bytes;
}

/// A value of a text file as the C library prints it.
inline std::string TextValue(double value, int precision) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*e", precision, value);
  return (text[0] == '-' ? " " : "  ") + std::string(text);
}

}  // namespace testing_support
