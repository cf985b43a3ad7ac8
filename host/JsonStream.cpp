#include "JsonStream.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace kvn::host {
namespace {

constexpr std::size_t kPiece = 1 << 16;
// Beyond these, powers of ten are shorter and easier to read.
constexpr double kSmallest = 1e-5;
constexpr double kLargest = 1e16;

/// Nothing in it that a JSON string would escape.
bool isPlain(std::string const& bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\' && c != '/'; });
}

}  // namespace

JsonStream::JsonStream(TextSink const& textSink, Digits digitsOfNumbers) : sink(textSink), digits(digitsOfNumbers) {
  pending.reserve(2 * kPiece);
}

// An element of an array begins on a line of its own. A bracket behind a name is written with the first thing inside
// it: then it goes to the next line, and an empty pair stays on this one.
void JsonStream::begin(char bracket) {
  if (!isBehindName && !levels.empty()) nextElement('[');
  if (!isBehindName) pending += bracket;
  levels.push_back({true, isBehindName});
  isBehindName = false;
}

void JsonStream::nextElement(char bracket) {
  Level& level = levels.back();
  if (!level.isEmpty) {
    pending += ',';
  } else if (level.isMember) {
    level.isEmpty = false;
    levels.pop_back();
    newLine();
    levels.push_back({false, true});
    pending += bracket;
  }
  levels.back().isEmpty = false;
  newLine();
}

void JsonStream::end(char open, char close) {
  Level const level = levels.back();
  levels.pop_back();
  if (!level.isEmpty) {
    newLine();
  } else if (level.isMember) {
    pending += open;
  }
  pending += close;
  if (levels.empty()) pending += '\n';
  passOn(levels.empty() ? 0 : kPiece);
}

void JsonStream::newLine() {
  pending += '\n';
  pending.append(2 * levels.size(), ' ');
}

/// What stands between two members, in one piece: most of a large document are members.
std::string const& JsonStream::betweenMembers() {
  while (separators.size() <= levels.size())
    separators.push_back(",\n" + std::string(2 * separators.size(), ' ') + '"');
  return separators[levels.size()];
}

void JsonStream::passOn(std::size_t least) {
  if (pending.size() < least) return;
  sink(pending);
  pending.clear();
}

JsonStream& JsonStream::member(std::string_view name) {
  if (levels.back().isEmpty) {
    nextElement('{');
    pending += '"';
  } else {
    pending += betweenMembers();
  }
  pending += name;
  pending += "\": ";
  isBehindName = true;
  return *this;
}

void JsonStream::number(double value) {
  isBehindName = false;
  if (!std::isfinite(value)) {
    pending += "null";
    return;
  }
  std::array<char, 32> buffer{};
  char* const begin = buffer.data();
  char* const end = begin + buffer.size();
  double const size = std::abs(value);
  bool const isPlainNumber = size == 0.0 || (size >= kSmallest && size < kLargest);
  auto const form = isPlainNumber ? std::chars_format::fixed : std::chars_format::scientific;
  auto const last = digits == Shortest ? std::to_chars(begin, end, value + 0.0, form)
                                       : std::to_chars(begin, end, value + 0.0, std::chars_format::general, 17);
  std::string_view const text(begin, static_cast<std::size_t>(last.ptr - begin));
  pending += text;
  // So that a reader takes a whole value for a real number too.
  if (text.find_first_of(".e") == std::string_view::npos) pending += ".0";
}

void JsonStream::number(int value) {
  isBehindName = false;
  pending += std::to_string(value);
}

void JsonStream::place(int number) {
  if (number > 0) return this->number(number);
  isBehindName = false;
  pending += "null";
}

void JsonStream::truth(bool value) {
  isBehindName = false;
  pending += value ? "true" : "false";
}

void JsonStream::text(std::string const& bytes) {
  if (!isPlain(bytes)) return value(jsonText(bytes));
  isBehindName = false;
  pending += '"';
  pending += bytes;
  pending += '"';
}

void JsonStream::texts(std::vector<std::string> const& list) {
  if (list.empty()) return value(Json::Value(Json::arrayValue));
  newLine();
  pending += '[';
  levels.push_back({true, true});
  for (std::string const& bytes : list) {
    if (!std::exchange(levels.back().isEmpty, false)) pending += ',';
    newLine();
    text(bytes);
  }
  levels.pop_back();
  newLine();
  pending += ']';
}

void JsonStream::value(Json::Value const& smallValue) {
  bool const isTree = (smallValue.isArray() || smallValue.isObject()) && !smallValue.empty();
  if (isTree && isBehindName) newLine();
  isBehindName = false;
  for (char const c : jsonOf(smallValue)) {
    if (c == '\n') {
      newLine();  // a line end within a string is escaped
    } else {
      pending += c;
    }
  }
}

}  // namespace kvn::host
