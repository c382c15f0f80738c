#include "tables/module/text.h"

namespace Tabulon::Module {

nb::str Text(std::string_view text) {
  return nb::steal<nb::str>(
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}

nb::list Texts(const std::vector<std::string>& texts) {
  nb::list list;
  for (const std::string& text : texts) list.append(Text(text));
  return list;
}

nb::str PathText(std::string_view path) {
  return nb::steal<nb::str>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<Py_ssize_t>(path.size())));
}

}  // namespace Tabulon::Module
