#include <utils/Config.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <json/reader.h>
#include <json/writer.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
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
  } catch (Json::Exception const&) {  // nesting beyond the reader's limit
    return Config::ReadResult::Invalid;
  }
}

/// @param path  as the operating system knows it: reading and writing must mean the same file.
Config::ReadResult readTree(fs::path const& path, Json::Value& tree) {
  std::error_code none;
  auto const status = fs::status(path, none);
  if (path.empty() || status.type() == fs::file_type::not_found) return Config::ReadResult::Missing;
  std::ifstream file(path, std::ios::binary);
  if (!fs::is_regular_file(status) || !file) return Config::ReadResult::Unreadable;
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return parse(bytes.str(), tree);
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

}  // namespace

Config::ReadResult Config::read(std::string const& path) {
  Json::Value fresh;
  ReadResult const result = readTree(nativePath(path), fresh);
  if (result != ReadResult::Good) return result;
  tree.swap(fresh);
  readFrom = path;
  return result;
}

Config::WriteResult Config::write(std::string const& localPath) const {
  WriteResult result;
  QString const path = HTextCodec::FromLocal8Bit(localPath);
  if (path.isEmpty()) return result;
  Json::Value old;
  fs::path const native = nativePath(localPath);
  ReadResult const state = readTree(native, old);
  if (state == ReadResult::Good && readFrom != localPath && tree.empty()) return result;
  if (state == ReadResult::Unreadable) {
    result.error = QStringLiteral("%1: it cannot be read").arg(path);
    return result;
  }
  if (state == ReadResult::Invalid) {
    int const number = moveAside(native);
    if (number == 0) {
      result.error = QStringLiteral("%1: not valid JSON, and it cannot be renamed").arg(path);
      return result;
    }
    result.keptAs = QStringLiteral("%1.invalid-%2").arg(path).arg(number);
  }
  createFolderOf(path);
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  result.error = replaceFile(path, Json::writeString(builder, tree.isNull() ? Json::Value(Json::objectValue) : tree));
  return result;
}

Json::Value Config::value(std::string const& dottedPath, Json::Value const& defaultValue) const {
  return Json::Path(dottedPath).resolve(tree, defaultValue);
}

Json::Value& Config::root() { return tree; }
Json::Value const& Config::root() const { return tree; }

}  // namespace utils
