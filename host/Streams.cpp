#include "Streams.h"

#include "Output.h"

#include <Kelvane.h>
#include <unistd.h>
#include <utils/FileText.h>
#include <cerrno>
#include <ostream>
#include <stdexcept>
#include <system_error>

namespace kvn::host {

namespace {

/// Appends what is there, waiting for it. @return false at the end.
bool readMore(std::string& bytes) {
  char piece[65536];
  for (;;) {
    ssize_t const count = ::read(STDIN_FILENO, piece, sizeof piece);
    if (count > 0) bytes.append(piece, static_cast<std::size_t>(count));
    if (count >= 0) return count > 0;
    if (errno == EINTR) continue;
    throw JobException({}, System::tr("standard input could not be read to its end: %1")
                               .arg(QString::fromStdString(std::generic_category().message(errno))));
  }
}

}  // namespace

std::string standardInput() {
  std::string bytes;
  while (readMore(bytes)) {
  }
  return bytes;
}

std::optional<std::string> StandardLines::next() {
  std::size_t end = kept.find('\n');
  while (end == std::string::npos && !isAtEnd) {
    isAtEnd = !readMore(kept);
    end = kept.find('\n');
  }
  if (end == std::string::npos && kept.empty()) return std::nullopt;
  std::string line = kept.substr(0, end);
  kept.erase(0, end == std::string::npos ? end : end + 1);
  return line;
}

QString Streams::inFolder(QString const& name) {
  if (folder == nullptr) folder = std::make_unique<utils::ScratchFolder>();
  return folder->filePath(name);
}

QString Streams::inputOf(QString const& path, QString const& kind) {
  if (path != kStream) return path;
  input = inFolder("standard input." + kind);
  std::string const bytes = standardInput();
  QString const error = utils::replaceFile(input, bytes);
  if (!error.isEmpty()) throw JobException(shown(input), error);
  return input;
}

QString Streams::outputOf(QString const& path, QString const& kind) {
  if (path != kStream) return path;
  output = inFolder("standard output." + kind);
  return output;
}

void Streams::pass(QString const& written) const {
  if (output.isEmpty() || written != output) return;
  utils::FileBytes const file = utils::readFile(output);
  if (!file.isWhole()) throw std::runtime_error(file.reason.toStdString());
  printBytes(file.bytes);
  finishPrinting();
}

QString Streams::shown(QString const& path) const {
  if (path.isEmpty()) return path;
  if (path == input) return System::tr("standard input");
  return path == output ? System::tr("standard output") : path;
}

}  // namespace kvn::host
