#include "records/NewId.h"

#include <QUuid>

namespace kvn {

std::string newId() { return QUuid::createUuid().toString().toStdString(); }

}  // namespace kvn
