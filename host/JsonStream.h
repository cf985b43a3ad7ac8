// JsonStream: a JSON document written piece by piece, in the layout of `printJson`.
#pragma once

#include "Output.h"

#include <json/value.h>
#include <string>
#include <string_view>
#include <vector>

namespace kvn::host {

/// For results with millions of numbers, whose tree would take ten times the memory of its text.
///
///     JsonStream json(printBytes);
///     json.beginObject();
///     json.member("name").text("P1");
///     json.member("points").beginArray();
///     ...
///     json.endArray();
///     json.endObject();
///
/// Members stand as they are given: in the order of their names, byte by byte, they are those of `printJson`. An array
/// holds objects, or nothing.
class JsonStream {
 public:
  enum Digits {
    Shortest,   ///< the fewest digits that give the same double back, at most 17
    Seventeen,  ///< significant digits, as `printJson` writes numbers; zeros at the end fall away
  };

  explicit JsonStream(TextSink const& textSink, Digits digitsOfNumbers = Shortest);

  void beginObject() { begin('{'); }
  void endObject() { end('{', '}'); }
  void beginArray() { begin('['); }
  void endArray() { end('[', ']'); }

  JsonStream& member(std::string_view name);
  void number(double value);                         ///< null for what is not finite
  void number(int value);                            ///< a whole number
  void place(int number);                            ///< counted from 1, as a line of a file; null for 0
  void truth(bool value);                            ///< true or false
  void text(std::string const& bytes);               ///< of a record, as `jsonText`
  void texts(std::vector<std::string> const& list);  ///< an array of such
  void value(Json::Value const& smallValue);         ///< a tree, as `printJson` writes it

 private:
  struct Level {
    bool isEmpty = true;
    bool isMember = false;  ///< its opening bracket stands below the name, not behind it
  };

  void begin(char bracket);
  void end(char open, char close);
  void nextElement(char bracket);
  void newLine();
  std::string const& betweenMembers();
  void passOn(std::size_t least);

  TextSink const& sink;
  Digits digits;
  std::string pending;
  std::vector<Level> levels;
  std::vector<std::string> separators;  // by the number of levels
  bool isBehindName = false;
};

}  // namespace kvn::host
