// What the program prints, always UTF-8.
#pragma once

#include <json/value.h>
#include <QString>
#include <functional>
#include <string>
#include <string_view>

namespace kvn::host {

QString versionLine();

/// What programs ask before they read the JSON of a subcommand: keys are only added to it.
constexpr int kJsonVersion = 2;

/// To standard output. @throws std::runtime_error when it cannot be written, as on a full disk.
void printText(QString const& text);
/// Takes the next piece of a long text, UTF-8.
using TextSink = std::function<void(std::string_view)>;
/// A piece to standard output, which may be kept back until `finishPrinting`. @throws as `printText`.
void printBytes(std::string_view utf8);
/// What `printBytes` kept back. @throws as `printText`.
void finishPrinting();

/// The text of a JSON value, without a line end at its end.
std::string jsonOf(Json::Value const& value);
/// The same on one line.
std::string jsonLineOf(Json::Value const& value);
/// A JSON value to standard output: 17 significant digits, so that every double reads back as it was.
void printJson(Json::Value const& value);
/// To standard error, with a line end.
void printLine(QString const& text);

/// A line of the error stream that the next one takes the place of; nothing where that is no terminal.
void showProgress(QString const& text);
void eraseProgress();

/// A number, or null for a value that does not exist: NaN, and infinity, which JSON cannot hold.
Json::Value number(double value);

/// `recordText`, under a short name: tables are full of it.
QString textOf(std::string const& bytes);
/// The same in UTF-8.
std::string utf8Of(std::string const& bytes);
/// The same as a JSON string.
Json::Value jsonText(std::string const& bytes);

/// One line for people: control characters, which would move the cursor of a terminal or break the line, become blanks.
QString printable(QString text);
/// Whether a text has nothing but the visible signs of ASCII and blanks: it is UTF-8 and printable as it stands.
bool isPlainAscii(std::string_view bytes);

}  // namespace kvn::host
