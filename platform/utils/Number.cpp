#include <utils/Number.h>

#include <QString>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace utils {
namespace {

double strtodInCLocale(char const* text, char** end) {
#if defined(_WIN32)
  static _locale_t const kCLocale = _create_locale(LC_ALL, "C");
  return _strtod_l(text, end, kCLocale);
#else
  static locale_t const kCLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text, end, kCLocale);
#endif
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Plain decimal numbers in the normal range, which is nearly all that files hold.
bool readPlain(std::string const& text, double& value) {
  if (text.empty() || !isDigit(text[0])) return false;
  if (text[0] == '0' && text.size() > 1 && (text[1] == 'x' || text[1] == 'X')) return false;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && (value == 0.0 || value >= std::numeric_limits<double>::min());
}

}  // namespace

double leadingNumber(std::string const& text) {
  double value = 0.0;
  if (readPlain(text, value)) return value;
  char* end = nullptr;
  errno = 0;
  value = strtodInCLocale(text.c_str(), &end);
  if (end == text.c_str()) throw std::invalid_argument("invalid stod argument");
  if (errno == ERANGE) throw std::out_of_range("stod argument out of range");
  return value;
}

std::optional<double> fullNumber(std::string const& text) {
  char const* const end = text.data() + text.size();
  std::size_t const digits = text.find_first_not_of("+-");
  if (digits <= 1 && isDigit(text[digits])) {
    char const* const begin = text.data() + (text.front() == '+' ? 1 : 0);  // from_chars knows no plus
    double value = 0.0;
    auto const result = std::from_chars(begin, end, value);
    if (result.ec == std::errc() && result.ptr == end) return value;
  }
  bool good = false;
  double const value = QString::fromStdString(text).toDouble(&good);
  return good ? std::optional(value) : std::nullopt;
}

}  // namespace utils
