#pragma once
// A path model kept as a list of typed points, with the SVG path-data parser and printer.
// Curves of every kind (quadratic, arcs) are stored as cubic Bezier points.
#include "platform/rtl/VXExport.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/geometry/VXGeometry.h"

namespace vx {

class TObject;

enum TVXPathPointKind : std::uint8_t { ppMove, ppLine, ppCubic, ppClose };

struct VX_EXPORT TVXPathPoint
{
  TVXPathPointKind Kind = ppMove;
  TPointF Point;
};

using TVXPolygons = std::vector<TVXPoints>;

class VX_EXPORT TVXPathData
{
public:
  // Per polygon of ToPolygons, the cumulative distance at each of its points; running on across polygons.
  using TDistances = std::vector<std::vector<float>>;

  TVXPathData() = default;
  TVXPathData(const TVXPathData &Source);
  TVXPathData &operator=(const TVXPathData &Source);

  std::function<void(TVXPathData *)> OnChange;

  void Assign(const TVXPathData &Source);
  void Clear();
  void BeginUpdate();
  void EndUpdate();

  // Parses SVG path data; malformed data keeps the figures read up to the error.
  void SetPathString(const QString &Text);
  QString GetPathString() const;
  void SetFormatStr(const QString &Format) { FFormatStr = Format; }
  const QString &GetFormatStr() const { return FFormatStr; }

  int GetCount() const { return int(FPoints.size()); }
  const TVXPathPoint &GetPoint(int Index) const { return FPoints[std::size_t(Index)]; }
  const std::vector<TVXPathPoint> &Points() const { return FPoints; }
  void SetFillMode(int Mode) { FFillMode = Mode; }
  int GetFillMode() const { return FFillMode; }

  void MoveTo(const TPointF &P);
  void LineTo(const TPointF &P);
  void CurveTo(const TPointF &C1, const TPointF &C2, const TPointF &P);
  void ClosePath();
  // Corners from the top-left one, clockwise.
  void AddRectangle(const TRectF &R);
  // Rounded when Rx and Ry are positive; Corners and CornerType are accepted for all four rounded corners.
  void AddRectangle(const TRectF &R, float Rx, float Ry, int Corners = 15, int CornerType = 0);
  void AddEllipse(const TRectF &R);

  void ApplyMatrix(const TMatrix &M);
  TRectF GetBounds() const;
  double GetLength() const;
  // Replaces curves by line segments that stay within Tolerance of them.
  void Flatten(float Tolerance);
  TVXPolygons ToPolygons() const;
  TDistances GetDistances() const;

private:
  std::vector<TVXPathPoint> FPoints;
  QString FFormatStr = QStringLiteral("0.###");
  int FFillMode = 1;
  int FUpdateCount = 0;
  bool FChanged = false;

  void Add(TVXPathPointKind Kind, const TPointF &P) { FPoints.push_back({Kind, P}); }
  void Changed();
};

} // namespace vx
