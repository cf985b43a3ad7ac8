// ITraverseDataCollcetion: base of the formats that hold field book rows.
#pragma once

#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// Holds the rows of a field job while its file is read or written.
class KELVANE_EXPORT ITraverseDataCollcetion {
 public:
  ITraverseDataCollcetion();
  ITraverseDataCollcetion(ITraverseDataCollcetion const&);
  ITraverseDataCollcetion(ITraverseDataCollcetion&&) noexcept;
  ITraverseDataCollcetion& operator=(ITraverseDataCollcetion const&);
  ITraverseDataCollcetion& operator=(ITraverseDataCollcetion&&) noexcept;

  /// Appends the rows of a stream to the list.
  virtual void read(std::istream& stream) = 0;
  /// Reads the file at a path in the local 8-bit encoding. A file that cannot be opened reads as an empty one; the
  /// caller tests the list.
  /// @return true when no exception passes.
  virtual bool read(std::string const& path);
  virtual void write(std::ostream& stream) = 0;
  /// Replaces the file at a path in the local 8-bit encoding when the new one is complete. When that fails the old file
  /// stays as it was, and an `Error` message says why.
  /// @return true when no exception passes.
  virtual bool write(std::string const& path);

  virtual std::vector<TraverseDataInfo>& getTraverseDataList();
  virtual std::vector<TraverseDataInfo> const& getTraverseDataList() const;
  virtual ~ITraverseDataCollcetion();

  void setTraverseDataList(std::vector<TraverseDataInfo> const& rows);

  /// The first row whose `id` equals the text; null when there is none.
  TraverseDataInfo* findData(std::string const& id);
  TraverseDataInfo const* findData(std::string const& id) const;
  bool isTraverseNameExist(std::string const& name) const;  ///< some row has this `name`

  // Of the instrument job format, in the bytes of its file; the other formats neither read nor write them.
  std::string const& getJobName() const;
  void setJobName(std::string value);
  std::string const& getInstrumentName() const;
  void setInstrumentName(std::string value);
  std::string const& getVersion() const;
  void setVersion(std::string value);

 protected:
  std::vector<TraverseDataInfo> traverseDataList;  ///< in file order
  // Of the instrument job format; empty in the others.
  std::string jobName;
  std::string instrumentName;
  std::string version;  ///< of the instrument, "V1.0" where nothing is said
};

}  // namespace kvn
