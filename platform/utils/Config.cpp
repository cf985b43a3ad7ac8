#include <utils/Config.h>
#include <utils/FileText.h>
#include <utils/detail/SystemText.h>

#include <json/reader.h>
#include <json/writer.h>
#include <filesystem>
#include <memory>
#include <new>
#include <sstream>
#include <string_view>
#include <system_error>

namespace utils {
namespace {

namespace fs = std::filesystem;

Config::ReadResult parse(std::string const& bytes, Json::Value& tree) {
  Json::CharReaderBuilder builder;
  builder["failIfExtra"] = true;  // what follows the tree would be lost when the file is written
  std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
  std::string errors;
  try {
    bool const good = reader->parse(bytes.data(), bytes.data() + bytes.size(), &tree, &errors);
    return good ? Config::ReadResult::Good : Config::ReadResult::Invalid;
  } catch (Json::Exception const& failure) {
    // Nesting beyond the reader's limit is a fault of the file, want of memory for a text is not.
    if (std::string_view(failure.what()).find("allocate") != std::string_view::npos) throw std::bad_alloc();
    return Config::ReadResult::Invalid;
  }
}

Config::ReadResult parse(FileBytes const& file, Json::Value& tree) {
  if (file.state == FileBytes::State::Missing) return Config::ReadResult::Missing;
  return file.isWhole() ? parse(file.bytes, tree) : Config::ReadResult::Unreadable;
}

/// Moves a file aside; the number that its name was given, 0 when that failed.
int moveAside(fs::path const& path) {
  std::error_code error;
  for (int i = 1; i < 1000; ++i) {
    fs::path const name = path.string() + ".invalid-" + std::to_string(i);
    if (fs::exists(name, error)) continue;
    fs::rename(path, name, error);
    return error ? 0 : i;
  }
  return 0;
}

/// A stream takes a failed allocation for an error of its own, and what it holds is short then; so it is passed on.
std::string printed(Json::Value const& tree) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  std::ostringstream text;
  text.exceptions(std::ios::badbit);
  std::unique_ptr<Json::StreamWriter> const writer(builder.newStreamWriter());
  writer->write(tree.isNull() ? Json::Value(Json::objectValue) : tree, &text);
  return text.str();
}

}  // namespace

Config::ReadResult Config::read(std::string const& path) {
  Json::Value fresh;
  unread = path;  // and stays so where there is no memory to read it
  FileBytes const file = readLocalFile(path);
  ReadResult const result = parse(file, fresh);
  unreadable = result == ReadResult::Unreadable ? file.reason : QString();
  if (result != ReadResult::Unreadable) unread.clear();
  if (result != ReadResult::Good) return result;
  tree.swap(fresh);
  readFrom = path;
  return result;
}

QString const& Config::unreadableReason() const { return unreadable; }

Config::WriteResult Config::write(std::string const& localPath) const {
  WriteResult result;
  QString const path = pathOfLocal(localPath);
  if (path.isEmpty()) return result;
  Json::Value old;
  FileBytes const file = readLocalFile(localPath);
  ReadResult const state = parse(file, old);
  if (state == ReadResult::Good && readFrom != localPath && tree.empty()) return result;
  if (state == ReadResult::Unreadable) {
    result.error = QStringLiteral("%1: %2").arg(readablePath(path), file.reason);
    return result;
  }
  if (state == ReadResult::Good && unread == localPath) {
    QString const reason = detail::translated(
        QT_TRANSLATE_NOOP("kvn::System", "it could not be read before, and what it holds would be lost"));
    result.error = QStringLiteral("%1: %2").arg(readablePath(path), reason);
    return result;
  }
  if (state == ReadResult::Invalid) {
    int const number = moveAside(nativePath(localPath));
    if (number == 0) {
      result.error = QStringLiteral("%1: not valid JSON, and it cannot be renamed").arg(path);
      return result;
    }
    result.keptAs = QStringLiteral("%1.invalid-%2").arg(path).arg(number);
  }
  createFolderOf(path);
  QString const reason = replaceLocalFile(localPath, printed(tree));
  if (!reason.isEmpty()) result.error = QStringLiteral("%1: %2").arg(readablePath(path), reason);
  return result;
}

Json::Value Config::value(std::string const& dottedPath, Json::Value const& defaultValue) const {
  return Json::Path(dottedPath).resolve(tree, defaultValue);
}

Json::Value& Config::root() { return tree; }
Json::Value const& Config::root() const { return tree; }

}  // namespace utils
