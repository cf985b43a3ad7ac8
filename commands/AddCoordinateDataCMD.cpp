#include "commands/Command.h"
#include "commands/ListIndex.h"
#include "core/Project.h"
#include "core/System.h"

namespace kvn {
namespace {

/// Inserts a point into the coordinate list: {"data": {"Index", "Name", "Mark", "N", "E", "Z"}}; name and mark are
/// required texts. A name may repeat.
class AddCoordinateDataCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    Json::Value const& data = in["data"];
    int const index = data["Index"].asInt();
    CoordinatePointInfo point;
    point.name = data["Name"].asCString();
    point.signal = data["Mark"].asCString();
    point.N = data["N"].asDouble();
    point.E = data["E"].asDouble();
    point.Z = data["Z"].asDouble();

    auto& points = getProject()->getCoordinatePointList();
    checkInsertIndex(index, points.size());
    QString const name = QString::fromStdString(point.name);
    insertAt(points, index, std::move(point));
    getSystem()->sendMessage(System::tr("Coordinate Point [%1] insert successfully").arg(name), Info);
    getProject()->setModify(true);
    return true;
  }

  char const* className() const override { return "AddCoordinateDataCMD"; }
};

CommandRegistration<AddCoordinateDataCMD> const registerAddCoordinateData("AddCoordinateDataCMD");

}  // namespace
}  // namespace kvn
