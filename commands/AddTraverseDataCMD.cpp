#include "commands/Command.h"
#include "commands/ListIndex.h"
#include "core/Project.h"
#include "core/System.h"

namespace kvn {
namespace {

/// Inserts a known station row: {"data": {"index", "Name", "N", "E", "Z"}}. Network and map follow at the next rebuild.
class AddTraverseDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Json::Value const& data = in["data"];
    int const index = data["index"].asInt();
    TraverseDataInfo row;
    row.isKnown = true;
    row.pointType = TraversePointType::StationPoint;
    row.name = data["Name"].asString();
    if (!data["N"].isNull()) row.N = data["N"].asDouble();
    if (!data["E"].isNull()) row.E = data["E"].asDouble();
    if (!data["Z"].isNull()) row.Z = data["Z"].asDouble();

    auto& rows = getProject()->getTraverseDataList();
    checkInsertIndex(index, rows.size());
    QString const name = QString::fromStdString(row.name);
    insertAt(rows, index, std::move(row));
    getSystem()->sendMessage(System::tr("Know Point [%1] insert successfully").arg(name), Info);
    getProject()->setModify(true);
    return true;
  }

  char const* className() const override { return "AddTraverseDataCMD"; }
};

CommandRegistration<AddTraverseDataCMD> const registerAddTraverseData("AddTraverseDataCMD");

}  // namespace
}  // namespace kvn
