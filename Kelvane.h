// Every public header of the library.
#pragma once

#include "KelvaneCore.h"
#include "map/CoordinateDataTool.h"
#include "map/GeometryDataTool.h"
#include "map/ILayer.h"
#include "map/KVNLayer.h"
#include "map/LineDataTool.h"
#include "map/MapScene.h"
#include "map/PointDataTool.h"
#include "map/SketchDataTool.h"

#include <mvz/CommonAnnotationLayer.h>
#include <mvz/GeometryDataTool.h>
#include <mvz/GraphicsState.h>
#include <mvz/ILayer.h>
#include <mvz/ISelectable.h>
#include <mvz/OffscreenView.h>
#include <mvz/ProjectMapScene.h>
#include <mvz/SelectableFeatureNode.h>
#include <mvz/SelectablePlaceNode.h>
#include <mvz/View.h>
#include <mvz/ViewerManager.h>
