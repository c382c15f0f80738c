#pragma once

#include <string>

namespace testing_support {

/// What a reader says that was to read on behind the end of the file.
inline std::string PastEndOfFile(const std::string& path) {
  return "IO error 5008: Data requested past end of file.\nFurther information: eofbit: unexpected "
         "end of file; failbit: last operation on stream invalid - check file or directory exists, "
         "path does not contain illegal characters, and file is not locked by another "
         "process\nFurther information: Success\nPath: " +
         path;
}

}  // namespace testing_support
