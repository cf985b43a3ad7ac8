// CarefulCosaCollection: a COSA file read and written with a surveyor's care.
#pragma once

#include "adjust/PlaneNetwork.h"
#include "formats/CosaCollection.h"
#include "records/FieldFinding.h"

#include <utils/Export.h>

#include <QString>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kvn {

/// Reads the same files as `CosaCollection` to the same lists, but for what that one takes in silence:
///
/// - A direction of 0 counts as observed, not as missing. Of an observation that is given more than once the first
///   counts, and a `Warning` tells when the others differ. A line with a distance leaves the direction as it is.
/// - Directions are brought into the circle from 0 to 2π: -45° is 315°.
/// - A `Warning` names every line that is passed over, every number with something behind it, every text that is no
///   angle, minutes or seconds of 60 and above, and an empty line 1, which takes the head's place.
/// - A line without an observation, its text being no angle or its distance 0, is no line.
/// - A line that is no UTF-8 is a failure: points in another encoding could become one. So is a negative distance.
/// - A failure names its line.
///
/// Written is no direction where none was observed, and nothing that could not be read back; after `setObservations`
/// every observation by itself.
class KELVANE_EXPORT CarefulCosaCollection : public CosaCollection {
 public:
  using CosaCollection::read;
  using CosaCollection::write;

  CarefulCosaCollection();
  CarefulCosaCollection(CarefulCosaCollection const& other);
  CarefulCosaCollection& operator=(CarefulCosaCollection const& other);
  ~CarefulCosaCollection() override;

  /// @throws DataException with the number of the line for all that `CosaCollection::read` throws.
  void read(std::istream& stream) override;
  /// Whether `read` fills `getObservations` too; off by default. Nothing is lost then, so that observations that are
  /// given more than once are not told.
  void setKeepObservations(bool keep);
  /// Whether `read` takes lines that name an observation without its value, for a network that is still to be measured;
  /// off by default, and such lines are passed over with a warning then:
  ///
  ///     TARGET,L     a direction
  ///     TARGET,S     a distance
  ///     TARGET,LS    both
  ///
  /// They stand in `getObservations` with the value NaN, and in none of the other lists.
  void setTakePlanned(bool take);
  /// Every observation of the file by itself, with the line that it stands on: each station line begins a set-up. The
  /// observations have no errors yet; the head is in `getConfigure`.
  PlaneNetwork const& getObservations() const;
  /// The same, moved out: none are left.
  PlaneNetwork takeObservations();
  /// What `write` writes in the place of the lines: each set-up under a station line of its own, its directions, then
  /// its distances, whatever is given more than once. One without a value is written as `setTakePlanned` reads it.
  void setObservations(PlaneNetwork observations);
  /// Whether `read` sends what it finds in single lines as a `Warning` each; on by default. A caller that groups what
  /// it tells takes it from `getFindings`.
  void setTellFindings(bool tell);
  /// What the last `read` has found in single lines, with these; not observations that are given more than once.
  std::vector<FieldFinding> const& getFindings() const;
  /// @throws DataException, before anything is written, for a name with a comma, a line end, or blanks at its ends or
  ///         none at all, for a number that is not finite, and for a negative distance.
  void write(std::ostream& stream) override;

 private:
  void readLines(std::istream& stream, detail::CosaReading& reading);
  void readLine(int number, std::string const& line, utils::Pieces const& fields, detail::CosaReading& reading);
  void readHeadWithCare(std::string const& line, utils::Pieces const& fields);
  void requireReadable() const;
  void requireReadableObservations() const;
  void writeObservations(std::ostream& stream);
  void tell(int number, QString const& message, QString const& text);
  void tellPassedOver(int number, std::string const& line);
  void checkNumbers(int number, std::string const& line, utils::Pieces const& fields, std::ptrdiff_t first);
  void checkAngle(int number, std::string_view text, detail::CosaReading& reading);
  void checkTaken(int number, std::string const& line, utils::Pieces const& fields, detail::CosaReading& reading);
  void takeObservations(detail::CosaReading const& reading);

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
