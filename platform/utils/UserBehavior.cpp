#include <utils/UserBehavior.h>

namespace utils {

UserBehavior::UserBehavior(QString const& name, QObject* parent) : QObject(parent) { setObjectName(name); }
UserBehavior::~UserBehavior() = default;

}  // namespace utils
