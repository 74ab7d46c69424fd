#pragma once
// Corrections of the geometry a stroke is given to Qt's stroker, where it differs from what SVG
// strokes look like: a cubic that is a straight line in disguise, and caps of zero-length figures.
#include "platform/rtl/VXExport.h"

#include <QPainterPath>
#include <QPen>

#include <vector>

#include "platform/geometry/VXGeometry.h"

namespace vx {

// Path with every cubic whose control points lie on its chord, between its ends, replaced by that
// chord. Such a curve is a straight line, but its tangents at the ends follow the control points,
// and a control point a hair away from its end turns the cap across the line.
VX_EXPORT QPainterPath VXStraightenLinearCubics(const QPainterPath &Path);

// The caps of figures that have no length, standing at Points: a disc for round caps, a square
// for square caps, Pen's width across. Qt draws nothing there; SVG draws the cap. Empty for flat
// caps.
VX_EXPORT QPainterPath VXZeroLengthCaps(const std::vector<TPointF> &Points, const QPen &Pen);

} // namespace vx
