// utils::UserBehavior: the usage log of the host product.
#pragma once

#include <utils/Export.h>

#include <QObject>
#include <QString>

namespace utils {

/// Named object that the host's usage log hangs on; the library only makes it and passes it on.
class KELVANE_EXPORT UserBehavior : public QObject {
 public:
  UserBehavior(QString const& name, QObject* parent);
  ~UserBehavior() override;
};

}  // namespace utils
