// A plain loop over the directories below one: prints how many termination files there are.
#include <dirent.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

long Count(const std::string& path) {
  DIR* const directory = opendir(path.c_str());
  if (directory == nullptr) return 0;
  long found = 0;
  while (const dirent* entry = readdir(directory)) {
    const std::size_t length = std::strlen(entry->d_name);
    if (entry->d_type == DT_DIR) {
      if (entry->d_name[0] != '.') found += Count(path + "/" + entry->d_name);
    } else if (length > 4 && std::strcmp(entry->d_name + length - 4, ".$TE") == 0) {
      ++found;
    }
  }
  closedir(directory);
  return found;
}

}  // namespace

int main(int, char** arguments) { std::printf("%ld\n", Count(arguments[1])); }
