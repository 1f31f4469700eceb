// String helpers: number parsing and printing, tokenising, case and blanks.
#pragma once

#include <sstream>
#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

namespace Corvane {

// Parses the whole of `text` as a number of the target type and returns
// whether that succeeded; on failure `value` is left untouched.
//
// Accepted: surrounding blanks (space, tab, carriage return, newline), one
// leading '+' or (for signed and floating types) '-', decimal digits in the
// given base for integers, and for floating types fixed or scientific
// notation as well as "inf", "infinity" and "nan" in any case; a floating
// value too small to represent reads as zero. Refused: an empty text,
// trailing characters, hexadecimal floating notation, a '-' on an unsigned
// type, and any value too large for the type (no saturation).
bool ZqStringToNumber(const std::string& text, double& value);
bool ZqStringToNumber(const std::string& text, float& value);
bool ZqStringToNumber(const std::string& text, int& value, int base = 10);
bool ZqStringToNumber(const std::string& text, unsigned int& value, int base = 10);
bool ZqStringToNumber(const std::string& text, long& value, int base = 10);
bool ZqStringToNumber(const std::string& text, unsigned long& value, int base = 10);

// Writes `value` as printf would with "%.<precision><format>", for the
// format letters 'f', 'F', 'e', 'E', 'g', 'G'. Returns false, leaving `text`
// untouched, for any other letter or a negative precision.
bool ZqNumberToString(std::string& text, double value, char format = 'g', int precision = 6);
// Decimal text of an integer.
std::string ZqNumberToString(long long value);
std::string ZqNumberToString(unsigned long long value);

// Splits `line` at any of the characters of `delimiters` into `tokens`,
// which is cleared first.
//
// With `mergeDelimiters` a run of delimiters separates like one, and
// delimiters at either end produce no token ("  a  b " gives "a", "b"; a
// blank line gives none). Without it every delimiter separates, so n
// delimiters give n + 1 tokens, empty ones included ("a,,b," gives "a", "",
// "b", ""), as a CSV reader does; only an empty line gives no token.
void ZqStringTokenize(std::vector<std::string>& tokens, const std::string& line,
                      const std::string& delimiters, bool mergeDelimiters = true);

// As ZqStringTokenize, but a token that begins with one of the characters of
// `quotes` runs to the matching closing quote, delimiters included. The quote
// characters themselves are removed; a doubled quote inside a quoted token
// stands for one quote character, and text after the closing quote up to the
// next delimiter is appended to the token. A quote that is never closed takes
// the rest of the line. A quote character inside an unquoted token is kept
// as an ordinary character. An empty quoted token ("") is a token even when
// delimiters merge.
void ZqStringTokenizeQuoted(std::vector<std::string>& tokens, const std::string& line,
                            const std::string& delimiters, const std::string& quotes,
                            bool mergeDelimiters = true);

// Upper-case copy (ASCII letters only; other bytes unchanged).
std::string ZqStringUpper(const std::string& text);

// Copy without leading and trailing white space (space, \t, \n, \v, \f, \r).
std::string ZqStringStripWhiteSpace(const std::string& text);

// printf into a string, however long; nothing for a format the C library
// cannot apply (an encoding error).
std::optional<std::string> ZqFormatStringV(const char* format, va_list args);
// The same from the arguments themselves; an empty string on failure.
std::string ZqFormatString(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Concatenates the stream output of all arguments:
// ZqMakeString("n = ", 3, ", x = ", 0.5) gives "n = 3, x = 0.5".
template <class... Args>
std::string ZqMakeString(const Args&... args) {
  std::ostringstream stream;
  (stream << ... << args);
  return stream.str();
}

}  // namespace Corvane
