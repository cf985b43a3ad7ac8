// LQFTraverseDataCollection: the instrument job file, which a total station writes while it measures.
#pragma once

#include "formats/ITraverseDataCollcetion.h"

#include <utils/Export.h>
#include <utils/Formater.h>

#include <iosfwd>
#include <string>
#include <string_view>

namespace kvn {

/// Reads and writes an instrument job file, one record a line: a label, blanks, and one text without blanks.
///
///     JOB     NAME
///     INST    NAME[,VERSION]
///     STA     NAME,HEIGHT[,CODE]                  the instrument stands here
///     BS      NAME,HEIGHT[,CODE]                  a back sight
///     SC      NAME,HEIGHT[,CODE]                  a fore sight
///     HVD     HORIZONTAL,VERTICAL[,DISTANCE]      the readings of the sight before it
///     NEZ     N,E,Z                               the coordinates of the point before it; also in any other order
///     XYZ     E,N,Z                               the same; other orders of the letters mean the same fields
///
/// Angles are decimal seconds of arc, 324000.0 being 90 degrees; heights, distances and coordinates are metres. Names
/// stay the bytes of the file.
class KELVANE_EXPORT LQFTraverseDataCollection : public ITraverseDataCollcetion {
 public:
  /// Labels of the records.
  enum LQFLabType {
    NoLabel,  ///< any other text
    JOB,
    INST,
    STA,
    BS,
    XYZ,
    YXZ,
    YZX,
    XZY,
    ZXY,
    ZYX,
    HVD,
    SC,
    NEZ,
    NZE,
    ENZ,
    EZN,
    ZNE,
    ZEN,
  };

  LQFTraverseDataCollection();

  using ITraverseDataCollcetion::read;
  using ITraverseDataCollcetion::write;

  /// Appends the rows; lines without a known label or without a text are passed over.
  ///
  /// A back sight that is sighted again as the fore sight that follows it gives one row, of the fore sight. The same
  /// holds when the back sight has the fore sight's name with an underscore and one digit behind it. There the fore
  /// sight's name is a regular expression, ECMAScript's: "P.1" also stands for the back sight "PA1_2". Names of more
  /// than 1,000 bytes are compared as they stand.
  ///
  /// @throws DataException "The file is empty" when the stream has no character.
  /// @throws std::invalid_argument "invalid stod argument", std::out_of_range "stod argument out of range" for a value
  ///         that does not begin with a number; std::regex_error for a fore sight whose name is a malformed expression
  ///         ("P(1"), right behind a back sight. The list holds the rows before the failure.
  void read(std::istream& stream) override;
  /// Writes job and instrument name, without the version, and the records of the station and target rows: coordinates
  /// as "XYZ" at a station, as "NEZ" at a target, whether the row came with them or not.
  void write(std::ostream& stream) override;

  LQFLabType getLQFLabType(std::string_view label) const;  ///< the case counts

  // Text of a record into the row. Missing trailing values are told by the row's flags; a number that is none throws as
  // in `read`.
  /// @param type  `BS` or `SC`
  void readView(std::string_view text, LQFLabType type, TraverseDataInfo* row);
  void readHVD(std::string_view text, TraverseDataInfo* row);
  void readNEZ(std::string_view label, std::string_view text, TraverseDataInfo* row);
  /// X is the first field, Y the second and Z the third whatever the order of the letters in the label.
  void readXYZ(std::string_view label, std::string_view text, TraverseDataInfo* row);
  void readSta(std::string_view text, TraverseDataInfo* row);
  void readInstrument(std::string_view text);
  void readJob(std::string_view text);

  void writeJob(std::ostream& stream);
  void writeInst(std::ostream& stream);
  void writeSta(std::ostream& stream, TraverseDataInfo const& row);
  void writeView(std::ostream& stream, TraverseDataInfo const& row);
  void writeHVD(std::ostream& stream, TraverseDataInfo const& row);
  /// @param type  `XYZ` or `NEZ`; nothing is written for any other
  void writeNEZXYZ(std::ostream& stream, LQFLabType type, TraverseDataInfo const& row);
  void writeLabType(std::ostream& stream, std::string const& label);  ///< left-aligned in 8 columns

 private:
  class Rows;

  void readRecord(std::string_view label, std::string_view text, Rows& rows);
  void readPoint(std::string_view text, LQFLabType type, Rows& rows);
  std::string number(double value, int decimals) const;
  std::string seconds(double radians) const;
  void writeNameHeightCode(std::ostream& stream, TraverseDataInfo const& row) const;

  utils::Formater formater;
};

}  // namespace kvn
