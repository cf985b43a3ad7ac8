// utils::Config: the JSON configuration tree of the host product.
#pragma once

#include <utils/Export.h>

#include <json/value.h>
#include <QString>
#include <string>

namespace utils {

/// A JSON tree that is read from and written to a file, with values found by dotted paths.
class KELVANE_EXPORT Config {
 public:
  enum class ReadResult {
    Missing,
    Good,
    Invalid,     ///< no JSON, or more than JSON
    Unreadable,  ///< no regular file, or no right to read it
  };

  /// Reads the file; only a good one changes the tree.
  /// @param path  local 8-bit encoding; an empty one counts as missing.
  ReadResult read(std::string const& path);
  /// Why the last `read` was `Unreadable`, for the user, without the file's name; empty when it was not.
  QString const& unreadableReason() const;

  struct WriteResult {
    QString error;   ///< why nothing was written; empty when all is well
    QString keptAs;  ///< new name of a file that stood there and was not valid JSON; empty when there was none
  };

  /// Writes the tree, creating the directory; the old file is replaced when the new one is complete.
  ///
  /// A file that is not valid JSON is kept beside the new one under another name. One that cannot be read stays, and so
  /// does one that could not when `read` was called last: the tree lacks what it holds. An empty tree never replaces a
  /// file that was not read before: settings of a user whose host did not ask for them are not thrown away.
  /// @param path  local 8-bit encoding; nothing happens for an empty one.
  WriteResult write(std::string const& path) const;

  /// Value at a dotted path such as "Globle.Path.OutPath"; `defaultValue` when there is none.
  Json::Value value(std::string const& dottedPath, Json::Value const& defaultValue = Json::Value()) const;

  Json::Value& root();
  Json::Value const& root() const;

 private:
  Json::Value tree;
  std::string readFrom;  ///< the file of the tree; empty while none was read
  std::string unread;    ///< the file that `read` failed to read; empty when it did not
  QString unreadable;
};

}  // namespace utils
