// What the program prints, always UTF-8.
#pragma once

#include <json/value.h>
#include <QString>
#include <string>

namespace kvn::host {

QString versionLine();

/// To standard output. @throws std::runtime_error when it cannot be written, as on a full disk.
void printText(QString const& text);
/// The same for a JSON value: 17 significant digits, so that every double reads back as it was.
void printJson(Json::Value const& value);
/// To standard error, with a line end.
void printLine(QString const& text);

/// A number, or null for a value that does not exist: NaN, and infinity, which JSON cannot hold.
Json::Value number(double value);

/// Text of a record, which keeps the bytes of its source: UTF-8 where they are valid UTF-8, else the local encoding.
QString textOf(std::string const& bytes);
/// The same as a JSON string.
Json::Value jsonText(std::string const& bytes);

/// One line for people: control characters, which would move the cursor of a terminal or break the line, become blanks.
QString printable(QString text);

}  // namespace kvn::host
