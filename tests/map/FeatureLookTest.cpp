// Colours, icons and names of what the map shows.
#include <gtest/gtest.h>

#include "support/Support.h"

namespace {

using namespace kvn;

constexpr FeatureDataTypeTable::Value kTypes[] = {FeatureDataType::Default, FeatureDataType::TraverseData,
                                                  FeatureDataType::CoordData, FeatureDataType::NetworkData,
                                                  FeatureDataType::ViewPointData};

TEST(FeatureLook, OnlyLinesHaveAColourAndOnlyPointsAnIcon) {
  QStringList looks;
  for (FeatureDataType const type : kTypes) {
    looks << GetColor(type) + GetSelectedColor(type) + "|" + GetIcon(type, TraversePointType::StationPoint) + "|" +
                 GetIcon(type, TraversePointType::PrismPoint) + "|" + GetIcon(type, TraversePointType::CoordinatePoint);
  }
  QString const coordinate = "config\\earth\\img\\kvn_coordpoint.png";
  EXPECT_EQ(looks, (QStringList{"|||", "|||", QString("|%1|%1|%1").arg(coordinate), "#9893D8FF|||",
                                "|config\\earth\\img\\kvn_stationpoint.png|config\\earth\\img\\kvn_prismpoint.png|"}));
}

TEST(FeatureLook, SelectedIconsHaveTheirOwnFilesAndAllFilesAreThere) {
  int files = 0;
  for (FeatureDataType const type : kTypes) {
    for (auto const point : {TraversePointType::StationPoint, TraversePointType::PrismPoint}) {
      QString const icon = GetIcon(type, point);
      EXPECT_EQ(GetSelectedIcon(type, point), QString(icon).replace(".png", "_2x.png"));
      if (icon.isEmpty()) continue;
      files += utils::resourceFile(icon).empty() ? 0 : 1;
      files += utils::resourceFile(GetSelectedIcon(type, point)).empty() ? 0 : 1;
    }
  }
  EXPECT_EQ(files, 8);
}

TEST(FeatureLook, OnlyThreeTypesHaveANameToShow) {
  QStringList names;
  for (FeatureDataType const type : kTypes) names << Translation(type);
  EXPECT_EQ(names, (QStringList{"", "Traverse Point", "Coordinate Point", "Network", ""}));
}

}  // namespace
