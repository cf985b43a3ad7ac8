#include <utils/Number.h>

#include <QString>
#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <system_error>

namespace utils {
namespace {

constexpr int kExactDigits = 15;  // 10^15 is below 2^53
constexpr std::array<double, kExactDigits + 1> kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                            1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

double strtodInCLocale(char const* text, char** end) {
#if defined(_WIN32)
  static _locale_t const kCLocale = _create_locale(LC_ALL, "C");
  return _strtod_l(text, end, kCLocale);
#else
  static locale_t const kCLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text, end, kCLocale);
#endif
}

bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

/// Decimal numbers in the normal range, which is nearly all that files hold.
bool readPlain(std::string_view text, double& value) {
  if (text.empty() || !isDigit(text[0])) return false;
  if (text[0] == '0' && text.size() > 1 && (text[1] == 'x' || text[1] == 'X')) return false;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && (value == 0.0 || value >= std::numeric_limits<double>::min());
}

}  // namespace

std::optional<double> plainDecimal(std::string_view text) {
  char const* at = text.data();
  char const* const end = at + text.size();
  bool const isNegative = at != end && *at == '-';
  if (isNegative) ++at;
  if (at == end || !isDigit(*at)) return std::nullopt;
  while (at != end && *at == '0') ++at;
  std::uint64_t digits = 0;
  char const* const first = at;
  for (; at != end && isDigit(*at); ++at) digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
  std::ptrdiff_t count = at - first;
  std::ptrdiff_t decimals = 0;
  if (at != end && *at == '.') {
    char const* const point = at++;
    for (; at != end && isDigit(*at); ++at) digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    decimals = at - point - 1;
    count += decimals;
  }
  if (at != end || count > kExactDigits) return std::nullopt;
  double const size = double(digits) / kPowersOfTen[static_cast<std::size_t>(decimals)];
  return isNegative ? -size : size;
}

double leadingNumber(std::string_view text) {
  if (auto const plain = plainDecimal(text)) return *plain;
  double value = 0.0;
  if (readPlain(text, value)) return value;
  std::string const ended(text);
  char* end = nullptr;
  errno = 0;
  value = strtodInCLocale(ended.c_str(), &end);
  if (end == ended.c_str()) throw std::invalid_argument("invalid stod argument");
  if (errno == ERANGE) throw std::out_of_range("stod argument out of range");
  return value;
}

std::optional<double> fullNumber(std::string_view text) {
  if (auto const plain = plainDecimal(text)) return plain;
  char const* const end = text.data() + text.size();
  std::size_t const digits = text.find_first_not_of("+-");
  if (digits <= 1 && isDigit(text[digits])) {
    char const* const begin = text.data() + (text.front() == '+' ? 1 : 0);  // from_chars knows no plus
    double value = 0.0;
    auto const result = std::from_chars(begin, end, value);
    if (result.ec == std::errc() && result.ptr == end) return value;
  }
  bool good = false;
  double const value = QString::fromUtf8(text.data(), static_cast<int>(text.size())).toDouble(&good);
  return good ? std::optional(value) : std::nullopt;
}

std::string withoutSignOfZero(std::string text) {
  bool const isNegativeZero =
      !text.empty() && text.front() == '-' && text.size() > 1 && text.find_first_not_of("-0.") == std::string::npos;
  return isNegativeZero ? text.substr(1) : text;
}

bool isLikeNumber(std::string_view text) {
  auto const fits = [](char c) { return isDigit(c) || c == '.'; };
  return text.empty() || text.front() == '-' || std::all_of(text.begin(), text.end(), fits);
}

}  // namespace utils
