#include "commands/Command.h"
#include "commands/ListIndex.h"
#include "core/Project.h"
#include "core/System.h"

namespace kvn {
namespace {

/// Inserts a line into the network and empties the observation rows, which it no longer follows from:
/// {"data": {"index", "StartName", "EndName", "HorizontalAngle", "horizontalDistance"}}, radians and metres.
class AddNetworkDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Json::Value const& data = in["data"];
    int const index = data["index"].asInt();
    NetworkDataInfo line;
    if (!data["StartName"].isNull()) line.start_name = data["StartName"].asString();
    if (!data["EndName"].isNull()) line.end_name = data["EndName"].asString();
    if (!data["HorizontalAngle"].isNull()) line.horizontal_angle = data["HorizontalAngle"].asDouble();
    if (!data["horizontalDistance"].isNull()) line.horizontal_distance = data["horizontalDistance"].asDouble();

    auto& lines = getProject()->getNetwork().lines;
    checkInsertIndex(index, lines.size());
    QString const name = QString::fromStdString(line.start_name);
    insertAt(lines, index, std::move(line));
    getProject()->setTraverseDataList({});
    getSystem()->sendMessage(System::tr("Know Point [%1] insert successfully").arg(name), Info);
    getProject()->setModify(true);
    return true;
  }

  char const* className() const override { return "AddNetworkDataCMD"; }
};

CommandRegistration<AddNetworkDataCMD> const registerAddNetworkData("AddNetworkDataCMD");

}  // namespace
}  // namespace kvn
