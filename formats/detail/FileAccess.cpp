#include "formats/detail/FileAccess.h"

#include "core/DataException.h"
#include "records/detail/Messages.h"

#include <utils/ByteStream.h>
#include <utils/FileText.h>

#include <limits>
#include <sstream>
#include <utility>

namespace kvn::detail {
namespace {

/// A stream takes a failed allocation for an error of its own, and what it holds is short then; so it is passed on.
std::string printed(std::function<void(std::ostream&)> const& print) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);
  print(text);
  return text.str();
}

void readStream(std::optional<std::string> const& bytes, std::function<void(std::istream&)> const& read) {
  utils::ByteStream stream(bytes ? std::string_view(*bytes) : std::string_view());
  if (!bytes) stream.setstate(std::ios::failbit);
  read(stream);
}

}  // namespace

std::optional<std::string> wholeFile(utils::FileBytes read) {
  if (read.state == utils::FileBytes::State::Broken) throw DataException(read.reason.toStdString());
  return read.isWhole() ? std::optional(std::move(read.bytes)) : std::nullopt;
}

void readFile(QString const& path, std::function<void(std::istream&)> const& read) {
  readStream(wholeFile(utils::readFile(path)), read);
}

void readFile(std::string const& localPath, std::function<void(std::istream&)> const& read) {
  readStream(wholeFile(utils::readLocalFile(localPath)), read);
}

QByteArray qtBytes(std::string const& bytes) {
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw DataException(Messages::tr("the file is larger than 2 GB").toStdString());
  }
  return QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
}

void requireNoReadError(std::istream const& stream) {
  if (stream.bad()) throw DataException(Messages::tr("the file could not be read to its end").toStdString());
}

void tellNotWritten(QString const& path, QString const& reason) {
  if (reason.isEmpty()) return;
  Messages::send(Messages::tr("The file was not written: %1").arg(utils::readablePath(path) + ": " + reason), Error);
}

void replaceFile(QString const& path, std::function<void(std::ostream&)> const& print) {
  tellNotWritten(path, utils::replaceFile(path, printed(print)));
}

void replaceFile(std::string const& localPath, std::function<void(std::ostream&)> const& print) {
  tellNotWritten(utils::pathOfLocal(localPath), utils::replaceLocalFile(localPath, printed(print)));
}

}  // namespace kvn::detail
