// Any JSON array of commands, run one after the other on a small project. A path in it stands for one of the samples.
#include "Support.h"

#include <json/reader.h>
#include <json/writer.h>
#include <array>
#include <memory>

namespace {

constexpr Json::ArrayIndex kMostCommands = 12;
constexpr std::array<char const*, 6> kFiles = {"trav_connecting_fr_5legs.txt",
                                               "trig_height_reciprocal.txt",
                                               "fieldbook_full_circle_2rounds.lqf",
                                               "net_niemeier2008.in2",
                                               "README.md",
                                               "missing.txt"};

/// A System that keeps no configuration and tells nothing.
kvn::System& host() {
  static kvn::System system;
  static bool const quiet = [] {
    system.setConfigFile(QString());
    return true;
  }();
  static_cast<void>(quiet);
  return system;
}

std::shared_ptr<kvn::Project> project() {
  auto made = host().createProject();
  made->getOrCreateMapScene();
  kvn::TraverseDataInfo station;
  station.id = station.groupId = "r1";
  station.name = "A";
  station.pointType = kvn::TraversePointType::StationPoint;
  station.isKnown = true;
  kvn::TraverseDataInfo sight = station;
  sight.id = "r2";
  sight.name = "B";
  sight.pointType = kvn::TraversePointType::PrismPoint;
  made->setTraverseDataList({station, sight});
  kvn::NetworkDataInfo line;
  line.id = "l1";
  line.start_name = "A";
  line.end_name = "B";
  made->getNetwork().lines.push_back(line);
  made->getNetwork().knownPoints.emplace_back("A", 1.0, 2.0, 3.0);
  kvn::CoordinatePointInfo point;
  point.id = "c1";
  point.name = "C";
  made->setCoordinatePointList({point});
  return made;
}

void replacePath(Json::Value& object) {
  if (!object.isObject() || !object["file"].isString()) return;
  std::size_t const chosen = object["file"].asString().size() % kFiles.size();
  object["file"] = std::string(KELVANE_SOURCE_DIR "/samples/") + kFiles.at(chosen);
}

std::array<std::size_t, 3> sizes(kvn::Project const& of) {
  return {of.getTraverseDataList().size(), of.getNetwork().lines.size(), of.getCoordinatePointList().size()};
}

/// Which list a command adds to, as an index of `sizes`; 3 for none.
std::size_t addsTo(std::string const& name) {
  if (name == "AddTraverseDataCMD") return 0;
  if (name == "AddNetworkDataCMD") return 1;
  return name == "AddCoordinateDataCMD" ? 2 : 3;
}

void run(kvn::Project& on, std::string const& name, Json::Value in) {
  if (in.isObject()) {
    replacePath(in);
    if (in.isMember("data")) replacePath(in["data"]);
  }
  auto const before = sizes(on);
  Json::Value out;
  bool const ok = on.getCommandManager()->execute(name.c_str(), in, out, {});
  auto const after = sizes(on);
  fuzz::require(on.getCommandManager()->getUndoQueue().empty(), "no command can be undone");
  if (ok) {
    fuzz::require(out.isNull(), "a command that succeeds has no result");
  } else {
    fuzz::require(out.isObject() && out["message"].isString() && !out["message"].asString().empty(),
                  "a failure says why");
    fuzz::require(out.isMember("code") == (out["message"].asString() != "unknown error"), "a failure has its code");
  }
  std::size_t const list = addsTo(name);
  if (list < before.size()) {
    fuzz::require(after.at(list) == before.at(list) + (ok ? 1 : 0), "a record is added, or none");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  auto const* const text = reinterpret_cast<char const*>(bytes);
  Json::CharReaderBuilder builder;
  std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
  Json::Value commands;
  if (!fuzz::ends<Json::Exception>([&] { reader->parse(text, text + size, &commands, nullptr); })) return 0;
  if (!commands.isArray()) return 0;
  auto const made = project();
  for (Json::ArrayIndex i = 0; i < commands.size() && i < kMostCommands; ++i) {
    Json::Value const& command = commands[i];
    if (command.isObject() && command["name"].isString()) run(*made, command["name"].asString(), command["in"]);
  }
  return 0;
}
