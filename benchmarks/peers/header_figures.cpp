// The least that a program can do to tell figures of ten variables from headers: read each file
// whole, find the rows by their labels, convert the wanted numbers. Prints their sum.
//
//   header_figures VARIABLES WANTED FILE...
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

double Value(const char* row, const char* end, int column) {
  double value = 0;
  for (int i = 0; i <= column; ++i) {
    while (row < end && (*row == ' ' || *row == '\n')) ++row;
    const char* stop = row;
    while (stop<end&& * stop> ' ') ++stop;
    if (i == column) std::from_chars(row, stop, value);
    row = stop;
  }
  return value;
}

std::string Read(const char* path) {
  const int handle = open(path, O_RDONLY);
  struct stat told;
  if (handle < 0 || fstat(handle, &told) != 0) std::exit(1);
  std::string text(static_cast<std::size_t>(told.st_size), '\0');
  if (read(handle, text.data(), text.size()) != told.st_size) std::exit(1);
  close(handle);
  return text;
}

double SumOf(const std::string& text, int variables, int wanted) {
  const char* const end = text.data() + text.size();
  std::vector<const char*> rows{text.data() + text.find("ULOADS") + 6};
  while (static_cast<int>(rows.size()) < 2 * variables) {
    const void* next = std::memchr(rows.back(), '\n', static_cast<std::size_t>(end - rows.back()));
    rows.push_back(static_cast<const char*>(next) + 1);
  }
  const char* const mean = text.data() + text.find("MEAN") + 4;
  double sum = 0;
  for (int v = 0; v < wanted; ++v) {
    sum += Value(rows[2 * v], end, v) + Value(rows[2 * v + 1], end, v) + Value(mean, end, v);
  }
  return sum;
}

}  // namespace

int main(int count, char** arguments) {
  const int variables = std::atoi(arguments[1]);
  const int wanted = std::atoi(arguments[2]);
  double sum = 0;
  for (int i = 3; i < count; ++i) sum += SumOf(Read(arguments[i]), variables, wanted);
  std::printf("%.9g\n", sum);
}
