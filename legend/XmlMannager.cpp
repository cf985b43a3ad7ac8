#include "legend/detail/XmlMannagerData.h"

#include <QLocale>
#include <algorithm>

namespace kvn {
namespace {

bool isType(AttributeType type) { return type == Point || type == Line || type == Polygon; }

QList<XmlMannager::LegendCodeAttribute> regrouped(QList<XmlMannager::LegendCodeAttribute> codes, QString const& group) {
  for (XmlMannager::LegendCodeAttribute& code : codes) code.Group = group;
  return codes;
}

XmlMannager::LegendCodeAttribute const* lastOf(QList<XmlMannager::LegendCodeAttribute> const& codes,
                                               QString const& name) {
  auto const found = std::find_if(codes.crbegin(), codes.crend(), [&](auto const& code) { return code.Name == name; });
  return found == codes.crend() ? nullptr : &*found;
}

/// A name that is there already keeps its own place. Groups that are not listed stay so.
void renameInList(QStringList& names, QString const& newName, QString const& oldName) {
  int const place = names.indexOf(oldName);
  if (place < 0 || newName == oldName) return;
  if (names.contains(newName)) {
    names.removeAt(place);
  } else {
    names[place] = newName;
  }
}

}  // namespace

XmlMannager::XmlMannager(QObject* parent) : QObject(parent), own(std::make_unique<Data>()) {
  // For calls of the slots that wait in a queue.
  qRegisterMetaType<AttributeType>("kvn::AttributeType");
}
XmlMannager::~XmlMannager() = default;

QString XmlMannager::getDefaultGroupName() {
  return Data::isChinese() ? LegendCodeAttribute().Group : QStringLiteral("None Group");
}

bool XmlMannager::Data::isChinese() { return QLocale().language() == QLocale::Chinese; }

void XmlMannager::Data::clear() {
  groups.fill({});
  codes.fill({});
  names.fill({});
}

QStringList XmlMannager::getGroupList(AttributeType type) const {
  return isType(type) ? own->groups[type] : QStringList();
}

QList<XmlMannager::LegendCodeAttribute>& XmlMannager::getLegendCodeList(QString group, AttributeType type) {
  if (isType(type)) {
    if (!own->names[type].handedOut.contains(group)) own->forgetNames(type);  // its codes are in the table
    own->names[type].handedOut.insert(group);
    return own->codes[type][group];
  }
  own->none.clear();  // what an earlier caller put there
  return own->none;
}

XmlMannager::LegendCodeAttribute const* XmlMannager::Data::find(QString const& name, AttributeType type) const {
  if (!isType(type)) return nullptr;
  for (Codes const& group : codes[type]) {
    if (auto const* const found = lastOf(group, name)) return found;
  }
  return nullptr;
}

bool XmlMannager::Data::contains(QString const& name, AttributeType type) {
  if (!isType(type)) return false;
  CodeMap const& map = codes[type];
  Names& table = names[type];
  if (!table.isMade) {
    table.known.clear();
    for (auto group = map.cbegin(); group != map.cend(); ++group) {
      if (table.handedOut.contains(group.key())) continue;
      for (LegendCodeAttribute const& code : *group) table.known.insert(code.Name);
    }
    table.isMade = true;
  }
  return table.known.contains(name) ||
         std::any_of(table.handedOut.cbegin(), table.handedOut.cend(), [&](QString const& group) {
           auto const list = map.constFind(group);
           return list != map.cend() && lastOf(*list, name) != nullptr;
         });
}

XmlMannager::LegendCodeAttribute* XmlMannager::getLegendCodeData(QString name, AttributeType type) const {
  if (LegendCodeAttribute const* const found = own->find(name, type)) return new LegendCodeAttribute(*found);
  auto* const unknown = new LegendCodeAttribute;
  unknown->Name = name;
  unknown->Group = getDefaultGroupName();
  unknown->Type = type;
  return unknown;
}

bool XmlMannager::isContainLegendCode(LegendCodeAttribute code) const { return own->contains(code.Name, code.Type); }

bool XmlMannager::deleteGroup(QString group, AttributeType Type) {
  // The codes of the default group have nowhere to go.
  QString const defaultGroup = getDefaultGroupName();
  if (group.isEmpty() || group == defaultGroup || !isType(Type)) return false;
  Data::CodeMap& map = own->codes[Type];
  if (!map.contains(group)) return Type != Point;
  own->forgetNames(Type);
  Data::Codes const moved = regrouped(map.take(group), defaultGroup);
  own->groups[Type].removeOne(group);
  if (!moved.isEmpty()) map[defaultGroup] += moved;
  return true;
}

bool XmlMannager::addGroup(QString group, AttributeType Type) {
  if (group.isEmpty() || !isType(Type)) return false;
  if (own->codes[Type].contains(group)) return true;
  own->codes[Type].insert(group, {});
  own->groups[Type].append(group);
  return true;
}

bool XmlMannager::updateGroup(QString newName, QString oldName, AttributeType Type) {
  if (newName.isEmpty() || oldName.isEmpty() || !isType(Type)) return false;
  Data::CodeMap& map = own->codes[Type];
  own->forgetNames(Type);
  if (map.contains(oldName)) renameInList(own->groups[Type], newName, oldName);
  Data::Codes const moved = regrouped(map.take(oldName), newName);
  map[newName] += moved;  // also when empty: an unknown old name leaves the new one behind, not listed
  return true;
}

bool XmlMannager::updateElement(LegendCodeAttribute* beforeP, LegendCodeAttribute* p) {
  if (beforeP == nullptr || p == nullptr || beforeP->Type != p->Type || beforeP->Name != p->Name) return false;
  // Copies, since the caller may point at entries of the list that changes here.
  LegendCodeAttribute const before = *beforeP;
  LegendCodeAttribute const after = *p;
  bool const staysInGroup = before.Group == after.Group;
  bool const isKnown = isType(before.Type) && own->codes[before.Type].contains(before.Group);
  int const place = isKnown ? own->codes[before.Type][before.Group].lastIndexOf(before) : -1;
  if (place < 0) return staysInGroup || own->add(after);
  Data::Codes& list = own->codes[before.Type][before.Group];
  if (staysInGroup) {
    list[place] = after;
    return true;
  }
  list.removeAt(place);
  own->forgetNames(before.Type);
  bool const isMoved = own->add(after);
  // A file may hold a second code of that name, which keeps this one from its new group.
  if (!isMoved) own->codes[before.Type][before.Group].insert(place, before);
  own->forgetNames(before.Type);
  return isMoved;
}

bool XmlMannager::addElement(LegendCodeAttribute* p) { return p != nullptr && own->add(*p); }

bool XmlMannager::Data::add(LegendCodeAttribute const& code) {
  if (!isType(code.Type) || contains(code.Name, code.Type)) return false;
  codes[code.Type][code.Group].append(code);
  if (!names[code.Type].handedOut.contains(code.Group)) names[code.Type].known.insert(code.Name);
  return true;
}

bool XmlMannager::deleteElement(LegendCodeAttribute* p) {
  if (p == nullptr) return false;
  LegendCodeAttribute const code = *p;  // it may be an entry of the list that changes here
  if (!isType(code.Type) || !own->codes[code.Type].contains(code.Group)) return true;
  own->codes[code.Type][code.Group].removeAll(code);
  own->forgetNames(code.Type);
  return true;
}

}  // namespace kvn
