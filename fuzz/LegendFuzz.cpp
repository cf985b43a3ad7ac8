// Any bytes as a legend file; what is read, is written and read again as it was.
#include "Support.h"

namespace {

using Codes = QList<kvn::XmlMannager::LegendCodeAttribute>;
constexpr kvn::AttributeType kTypes[] = {kvn::Point, kvn::Line, kvn::Polygon};

/// Groups without a name are not written.
QStringList namedGroups(kvn::XmlMannager const& library, kvn::AttributeType type) {
  QStringList groups = library.getGroupList(type);
  groups.removeAll(QString());
  return groups;
}

void requireSame(kvn::XmlMannager& a, kvn::XmlMannager& b) {
  for (kvn::AttributeType const type : kTypes) {
    QStringList const groups = namedGroups(a, type);
    fuzz::require(groups == namedGroups(b, type), "groups survive");
    for (QString const& group : groups) {
      fuzz::require(a.getLegendCodeList(group, type) == b.getLegendCodeList(group, type), "codes survive");
    }
  }
}

/// Names are looked up in a table, but every answer is that of the lists.
void requireRightNames(kvn::XmlMannager& library) {
  kvn::XmlMannager::LegendCodeAttribute code;
  for (kvn::AttributeType const type : kTypes) {
    code.Type = type;
    for (QString const& group : library.getGroupList(type)) {
      code.Name = group;
      bool const isThere = library.isContainLegendCode(code);
      fuzz::require(library.addElement(&code) != isThere, "a name is added once");
      fuzz::require(library.isContainLegendCode(code) && !library.addElement(&code), "what was added is there");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static fuzz::File const file("legend.xml");
  file.write(std::string(reinterpret_cast<char const*>(bytes), size));
  kvn::XmlMannager first;
  if (!first.readPrjCode(file.path)) {
    for (kvn::AttributeType const type : kTypes) fuzz::require(first.getGroupList(type).isEmpty(), "nothing is left");
    return 0;
  }
  if (first.saveAsPrjCode(file.path)) {
    kvn::XmlMannager second;
    fuzz::require(second.readPrjCode(file.path), "what is written can be read");
    requireSame(first, second);
    requireRightNames(second);
  }
  return 0;
}
