#include "varimo/platform/corvane/strings.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <system_error>

namespace Corvane {

namespace {

bool IsWhiteSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view StripView(std::string_view text) {
  std::size_t first = 0, last = text.size();
  while (first < last && IsWhiteSpace(text[first])) ++first;
  while (last > first && IsWhiteSpace(text[last - 1])) --last;
  return text.substr(first, last - first);
}

// from_chars accepts neither blanks nor a leading '+'; strip both here so
// that all number types share one policy.
bool PrepareNumberText(std::string_view& text, bool allowMinus) {
  text = StripView(text);
  if (text.empty()) return false;
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (text.empty() || text.front() == '-' || text.front() == '+') return false;
  } else if (text.front() == '-' && !allowMinus) {
    return false;
  }
  return true;
}

template <class Integer>
bool ParseInteger(const std::string& source, Integer& value, int base) {
  if (base < 2 || base > 36) return false;
  std::string_view text = source;
  if (!PrepareNumberText(text, std::numeric_limits<Integer>::is_signed)) return false;
  Integer parsed{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed, base);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  value = parsed;
  return true;
}

// fast_float is several times faster than std::from_chars on the long
// numeric columns of table files, and reads the same texts, "inf",
// "infinity" and "nan" in any case included. It rounds a value too large to
// infinity and one too small to zero without saying so. Zero is what we
// want for underflow, as strtod and other readers give it; an infinity the
// text did not spell out is an overflow, and is refused.
template <class Real>
bool ParseReal(const std::string& source, Real& value) {
  std::string_view text = source;
  if (!PrepareNumberText(text, true)) return false;
  Real parsed{};
  const auto [end, error] = fast_float::from_chars(text.data(), text.data() + text.size(), parsed);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  if (std::isinf(parsed)) {
    const std::string_view digits = text.front() == '-' ? text.substr(1) : text;
    if (digits.empty() || (digits.front() != 'i' && digits.front() != 'I')) return false;
  }
  value = parsed;
  return true;
}

}  // namespace

bool ZqStringToNumber(const std::string& text, double& value) { return ParseReal(text, value); }
bool ZqStringToNumber(const std::string& text, float& value) { return ParseReal(text, value); }
bool ZqStringToNumber(const std::string& text, int& value, int base) { return ParseInteger(text, value, base); }
bool ZqStringToNumber(const std::string& text, unsigned int& value, int base) {
  return ParseInteger(text, value, base);
}
bool ZqStringToNumber(const std::string& text, long& value, int base) { return ParseInteger(text, value, base); }
bool ZqStringToNumber(const std::string& text, unsigned long& value, int base) {
  return ParseInteger(text, value, base);
}

bool ZqNumberToString(std::string& text, double value, char format, int precision) {
  if (precision < 0) return false;
  if (std::string_view("fFeEgG").find(format) == std::string_view::npos) return false;
  const char printfFormat[] = {'%', '.', '*', format, '\0'};
  const int length = std::snprintf(nullptr, 0, printfFormat, precision, value);
  if (length < 0) return false;
  std::string formatted(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(formatted.data(), formatted.size(), printfFormat, precision, value);
  formatted.resize(static_cast<std::size_t>(length));
  text = std::move(formatted);
  return true;
}

std::optional<std::string> ZqFormatStringV(const char* format, va_list args) {
  // Two passes, so that no text is ever cut short.
  va_list sizing;
  va_copy(sizing, args);
  const int length = std::vsnprintf(nullptr, 0, format, sizing);
  va_end(sizing);
  if (length < 0) return std::nullopt;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, args);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::string ZqFormatString(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::optional<std::string> text = ZqFormatStringV(format, args);
  va_end(args);
  return text.value_or(std::string());
}

std::string ZqNumberToString(long long value) { return std::to_string(value); }
std::string ZqNumberToString(unsigned long long value) { return std::to_string(value); }

void ZqStringTokenize(std::vector<std::string>& tokens, const std::string& line,
                      const std::string& delimiters, bool mergeDelimiters) {
  ZqStringTokenizeQuoted(tokens, line, delimiters, std::string(), mergeDelimiters);
}

void ZqStringTokenizeQuoted(std::vector<std::string>& tokens, const std::string& line,
                            const std::string& delimiters, const std::string& quotes,
                            bool mergeDelimiters) {
  // Table readers call this once per line of large files. Bytes are
  // classified by table lookup, runs of ordinary bytes are copied at once,
  // and tokens are written over the strings already in `tokens`, whose
  // buffers are then reused from line to line.
  enum : unsigned char { kOrdinary = 0, kDelimiter = 1, kQuote = 2 };
  std::array<unsigned char, 256> kind{};
  for (char c : quotes) kind[static_cast<unsigned char>(c)] = kQuote;
  for (char c : delimiters) kind[static_cast<unsigned char>(c)] = kDelimiter;
  const auto kindOf = [&kind](char c) { return kind[static_cast<unsigned char>(c)]; };
  // With one delimiter (a line holds no newline, so "\n" does not count),
  // runs end where memchr finds it, many bytes at a time.
  std::string lineDelimiters;
  for (char c : delimiters) {
    if (c != '\n' && line.find(c) != std::string::npos) lineDelimiters.push_back(c);
  }
  const bool oneDelimiter = lineDelimiters.size() <= 1;
  const char delimiter = lineDelimiters.empty() ? '\n' : lineDelimiters[0];

  std::size_t count = 0;  // tokens finished
  const auto current = [&]() -> std::string& {
    if (count == tokens.size()) tokens.emplace_back();
    return tokens[count];
  };
  if (line.empty()) {
    tokens.clear();
    return;
  }
  current().clear();
  bool quoted = false;  // the current token began with a quote
  // Ends the current token: kept unless it is empty and runs of delimiters
  // merge (an empty quoted token is always kept).
  const auto finishToken = [&] {
    if (!(mergeDelimiters && !quoted && tokens[count].empty())) ++count;
    current().clear();
    quoted = false;
  };
  const char* p = line.data();
  const char* const end = p + line.size();
  while (p < end) {
    const unsigned char k = kindOf(*p);
    if (k == kDelimiter) {
      finishToken();
      ++p;
      continue;
    }
    std::string& token = tokens[count];
    if (k == kQuote && token.empty() && !quoted) {
      quoted = true;
      const char quote = *p++;
      while (p < end) {
        const char* close = static_cast<const char*>(std::memchr(p, quote, static_cast<std::size_t>(end - p)));
        if (close == nullptr) {  // never closed: the rest of the line
          token.append(p, end);
          p = end;
          break;
        }
        token.append(p, close);
        p = close + 1;
        if (p < end && *p == quote) {  // a doubled quote stands for one
          token.push_back(quote);
          ++p;
          continue;
        }
        break;
      }
      continue;
    }
    const char* run = p + 1;
    if (oneDelimiter) {
      const void* found = std::memchr(run, delimiter, static_cast<std::size_t>(end - run));
      run = found != nullptr ? static_cast<const char*>(found) : end;
    } else {
      while (run < end && kindOf(*run) != kDelimiter) ++run;
    }
    token.append(p, run);
    p = run;
  }
  // A trailing token: without merging, a final delimiter leaves an empty one.
  if (!tokens[count].empty() || quoted || (!mergeDelimiters && kindOf(line.back()) == kDelimiter)) finishToken();
  tokens.resize(count);
}

std::string ZqStringUpper(const std::string& text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : static_cast<char>(c);
  });
  return upper;
}

std::string ZqStringStripWhiteSpace(const std::string& text) { return std::string(StripView(text)); }

}  // namespace Corvane
