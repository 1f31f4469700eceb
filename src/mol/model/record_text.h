// The text of the fields of output rows and records, shared by the
// prediction and selection writers.
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>

namespace Varimo::record_text {

// 17 significant digits: a double read back is the same double.
inline std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

inline std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

// An SD data field; a value over several lines keeps them, a blank line
// (which would end the field) is dropped, and an empty value has no line.
inline std::string SDField(const std::string& tag, const std::string& value) {
  std::string text = ">  <" + tag + ">\n";
  std::size_t at = 0;
  while (at < value.size()) {
    const std::size_t end = std::min(value.find('\n', at), value.size());
    if (end > at) text += value.substr(at, end - at) + '\n';
    at = end + 1;
  }
  return text + '\n';
}

}  // namespace Varimo::record_text
