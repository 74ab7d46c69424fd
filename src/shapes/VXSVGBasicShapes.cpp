#include "shapes/VXSVGBasicShapes.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGTransforms.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <typeinfo>
#include <utility>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGCircle)
VX_SVG_ELEMENT_CLASS_INFO(TSVGEllipse)
VX_SVG_ELEMENT_CLASS_INFO(TSVGRectangle)
VX_SVG_ELEMENT_CLASS_INFO(TSVGLine)
VX_SVG_ELEMENT_CLASS_INFO(TSVGPolyline)
VX_SVG_ELEMENT_CLASS_INFO(TSVGPolygon)

namespace {

const TSVGClassRegistration CircleRegistration(etCircle, TSVGCircle::ClassInfo());
const TSVGClassRegistration EllipseRegistration(etEllipse, TSVGEllipse::ClassInfo());
const TSVGClassRegistration RectangleRegistration(etRectangle, TSVGRectangle::ClassInfo());
const TSVGClassRegistration LineRegistration(etLine, TSVGLine::ClassInfo());
const TSVGClassRegistration PolylineRegistration(etPolyline, TSVGPolyline::ClassInfo());
const TSVGClassRegistration PolygonRegistration(etPolygon, TSVGPolygon::ClassInfo());

// Reads the attribute Name into Length; the field keeps whatever object the parser hands back.
void ReadLength(const IXMLNode &Node, const QString &Name, std::unique_ptr<TSVGLength> &Length)
{
  TSVGLength *Read = ParsePercent(Node, Name, Length.get(), 0, 1);
  if (Read != Length.get())
    Length.reset(Read);
}

// Reads each named attribute into its length, after clearing it: what the base read for x, y,
// width and height must not survive under another meaning.
void ReadLengths(const IXMLNode &Node, std::initializer_list<std::pair<QString, std::unique_ptr<TSVGLength> *>> Items)
{
  for (const auto &[Name, Length] : Items) {
    (*Length)->Clear();
    ReadLength(Node, Name, *Length);
  }
}

// Centre plus and minus the radii, summed in double precision.
TRectF CenteredRect(double CX, double CY, double RX, double RY)
{
  return TRectF{float(CX - RX), float(CY - RY), float(CX + RX), float(CY + RY)};
}

void RebuildEllipse(TVXGPPath &Shape, const TRectF &Bounds)
{
  Shape.Clear();
  if (Bounds.Width() > 0 && Bounds.Height() > 0)
    Shape.AddEllipse(Bounds);
}

// The road for an ellipse whose cached path is empty, with the canvas paints as the frame set
// them. Only a zero radius stops it: negative radii, which the cached path refuses, draw here as
// the ellipse of their magnitude.
void DrawEllipseDirect(TSVGGraphicElement &Element, const TRectF &Bounds, const TMatrix &Matrix, TVXGPCanvas &Canvas)
{
  if (Bounds.Width() == 0 || Bounds.Height() == 0)
    return;
  TVXGPPath Path(&Canvas);
  Path.SetFillMode(VXFillModeWinding);
  Path.AddEllipse(Bounds);
  Path.ApplyMatrix(Matrix);
  const float Opacity = Element.GetAbsoluteOpacity();
  if (Canvas.Brush().GetKind() != bkNone)
    Canvas.FillPath(Path, Element.GetBrush().GetOpacity() * Opacity);
  if (Canvas.Pen().GetKind() != bkNone)
    Canvas.DrawPath(Path, Element.GetPen().GetOpacity() * Opacity);
}

// Documented, a circle or an ellipse with a negative radius draws as the one of its magnitude; in
// standard mode a negative radius is an error and the shape draws nothing.
bool DrawsNegativeRadii(const TSVGElement &Shape)
{
  return !Shape.FollowsStandardSVG();
}

// Standard mode reads a missing, "auto" or negative radius of an ellipse or a rect as the other
// one; the documented rules keep their own reading.
bool ResolvesAutoRadii(const TSVGElement &Shape)
{
  return Shape.FollowsStandardSVG();
}

// An auto radius takes the other one's used length: a percentage is resolved along the other
// one's axis before it is copied. Other units are copied as they are, since font sizes are not
// resolved yet while the element is read.
void MirrorUsedRadius(TSVGLength &Auto, const TSVGLength &Given)
{
  if (Given.IsPercent())
    Auto.Initialize(Given.GetValue(), false, suNone);
  else
    Auto.Assign(&Given);
}

// Whether Node gives Name a usable radius: present, not "auto" and not negative.
bool HasUsableRadius(const IXMLNode &Node, const QString &Name)
{
  if (!Node.HasAttribute(Name))
    return false;
  const QString Text = Trim(ParseAttrString(Node, Name));
  return Text != QLatin1String("auto") && !Text.startsWith(u'-');
}

// Standard mode marks every basic shape along the path SVG 2 gives it: a rect or an ellipse as
// well, and a polygon as a closed figure. Documented, only lines and point lists carry markers,
// a polygon's as an open list of points.
bool MarksShapesAlongTheirPaths(const TSVGElement &Shape)
{
  return Shape.FollowsStandardSVG();
}

// The path of an ellipse for its markers: from the right end of its horizontal axis clockwise, a
// vertex at each end of an axis.
TVXPathData EllipseMarkerPath(const TRectF &Bounds)
{
  TVXPathData Result;
  Result.AddEllipse(Bounds);
  return Result;
}

// Puts the canvas matrix back on the way out, also by an exception.
class TCanvasMatrixGuard
{
public:
  explicit TCanvasMatrixGuard(TVXGPCanvas &Canvas) : FCanvas(Canvas), FSaved(Canvas.GetMatrix()) {}
  ~TCanvasMatrixGuard() { FCanvas.SetMatrix(FSaved); }
  TCanvasMatrixGuard(const TCanvasMatrixGuard &) = delete;
  TCanvasMatrixGuard &operator=(const TCanvasMatrixGuard &) = delete;
  const TMatrix &Saved() const { return FSaved; }

private:
  TVXGPCanvas &FCanvas;
  TMatrix FSaved;
};

void ApplyFillRule(TVXGPPath &Path, TSVGFillRule Rule)
{
  if (Rule == frNonZero)
    Path.SetFillMode(VXFillModeWinding);
  else if (Rule == frEvenOdd)
    Path.SetFillMode(VXFillModeAlternate);
}

} // namespace

// --- circle ------------------------------------------------------------------------------------

TRectF TSVGCircle::GetBoundsRect() const
{
  return CenteredRect(GetX(), GetY(), GetWidth(), GetHeight());
}

void TSVGCircle::SetRadius(const TSVGLength &Value)
{
  FHeight->Assign(&Value);
  SetWidthU(Value);
}

void TSVGCircle::SetWidth(float Value)
{
  TSVGGraphicElement::SetWidth(Value);
  FHeight->SetPixels(Value);
}

void TSVGCircle::SetHeight(float Value)
{
  TSVGGraphicElement::SetHeight(Value);
  FWidth->SetPixels(Value);
}

TVXGPPath *TSVGCircle::GetShape()
{
  if (FShapeCacheChanged)
    RebuildEllipse(FShape, GetBoundsRect());
  return TSVGGraphicElement::GetShape();
}

void TSVGCircle::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  ReadLengths(Node, {{QStringLiteral("cx"), &FX}, {QStringLiteral("cy"), &FY}, {QStringLiteral("r"), &FWidth}});
  FHeight->Assign(FWidth.get());
}

bool TSVGCircle::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const bool Result = TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect);
  if (!Result && DrawsNegativeRadii(*this))
    DrawEllipseDirect(*this, GetBoundsRect(), Matrix, Canvas);
  if (Result && MarksShapesAlongTheirPaths(*this))
    DrawMarkers(EllipseMarkerPath(GetBoundsRect()), Matrix, Canvas, Rect);
  return Result;
}

// --- ellipse -----------------------------------------------------------------------------------

TRectF TSVGEllipse::GetBoundsRect() const
{
  return CenteredRect(GetX(), GetY(), GetWidth(), GetHeight());
}

TVXGPPath *TSVGEllipse::GetShape()
{
  if (FShapeCacheChanged)
    RebuildEllipse(FShape, GetBoundsRect());
  return TSVGGraphicElement::GetShape();
}

void TSVGEllipse::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  ReadLengths(Node, {{QStringLiteral("cx"), &FX},
                     {QStringLiteral("cy"), &FY},
                     {QStringLiteral("rx"), &FWidth},
                     {QStringLiteral("ry"), &FHeight}});
  if (!ResolvesAutoRadii(*this))
    return;
  const bool HasRX = HasUsableRadius(Node, QStringLiteral("rx"));
  const bool HasRY = HasUsableRadius(Node, QStringLiteral("ry"));
  if (HasRX && !HasRY)
    MirrorUsedRadius(*FHeight, *FWidth);
  else if (HasRY && !HasRX)
    MirrorUsedRadius(*FWidth, *FHeight);
}

bool TSVGEllipse::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const bool Result = TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect);
  if (!Result && DrawsNegativeRadii(*this))
    DrawEllipseDirect(*this, GetBoundsRect(), Matrix, Canvas);
  if (Result && MarksShapesAlongTheirPaths(*this))
    DrawMarkers(EllipseMarkerPath(GetBoundsRect()), Matrix, Canvas, Rect);
  return Result;
}

// --- rectangle ---------------------------------------------------------------------------------

TSVGRectangle::TSVGRectangle(TSVGDocument *Owner)
  : TSVGGraphicElement(Owner), FRX(CreateLength(true)), FRY(CreateLength(false))
{
}

TVXGPPath *TSVGRectangle::GetShape()
{
  if (FShapeCacheChanged) {
    FShape.Clear();
    FShape.AddRectangle(GetBoundsRect(), FRX->GetValue(), FRY->GetValue(), 15, 0);
  }
  return TSVGGraphicElement::GetShape();
}

void TSVGRectangle::ClampRX()
{
  if (FRX->GetPixels() < 0)
    FRX->SetPixels(0);
  else if (double(FRX->GetPixels()) > GetWidth() / 2.0)
    FRX->SetPixels(float(GetWidth() / 2.0));
}

void TSVGRectangle::ClampRY()
{
  if (FRY->GetPixels() < 0)
    FRY->SetPixels(0);
  else if (double(FRY->GetPixels()) > GetHeight() / 2.0)
    FRY->SetPixels(float(GetHeight() / 2.0));
}

void TSVGRectangle::SetRX(const TSVGLength &Value)
{
  FRX->Assign(&Value);
  ClampRX();
}

void TSVGRectangle::SetRY(const TSVGLength &Value)
{
  FRY->Assign(&Value);
  ClampRY();
}

void TSVGRectangle::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  // Presence decides, not the value: an absent radius mirrors the present one, after the present
  // one lost its sign and before each is cut to its own half side.
  const bool Auto = ResolvesAutoRadii(*this);
  const bool HasRX = Auto ? HasUsableRadius(Node, QStringLiteral("rx")) : Node.HasAttribute(QStringLiteral("rx"));
  const bool HasRY = Auto ? HasUsableRadius(Node, QStringLiteral("ry")) : Node.HasAttribute(QStringLiteral("ry"));
  if (!HasRX && !HasRY)
    return;
  if (HasRX)
    ReadLength(Node, QStringLiteral("rx"), FRX);
  if (HasRY)
    ReadLength(Node, QStringLiteral("ry"), FRY);
  if (FRX->GetPixels() < 0)
    FRX->SetPixels(0);
  if (FRY->GetPixels() < 0)
    FRY->SetPixels(0);
  if (HasRX && !HasRY)
    Auto ? MirrorUsedRadius(*FRY, *FRX) : FRY->Assign(FRX.get());
  else if (HasRY && !HasRX)
    Auto ? MirrorUsedRadius(*FRX, *FRY) : FRX->Assign(FRY.get());
  if (double(FRX->GetPixels()) > GetWidth() / 2.0)
    FRX->SetPixels(float(GetWidth() / 2.0));
  if (double(FRY->GetPixels()) > GetHeight() / 2.0)
    FRY->SetPixels(float(GetHeight() / 2.0));
}

bool TSVGRectangle::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const TRectF Bounds = GetBoundsRect();
  if (!(Bounds.Width() > 0 && Bounds.Height() > 0))
    return false;
  if (TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect)) {
    if (MarksShapesAlongTheirPaths(*this)) {
      TVXPathData Outline;
      Outline.AddRectangle(Bounds, FRX->GetValue(), FRY->GetValue());
      DrawMarkers(Outline, Matrix, Canvas, Rect);
    }
    return true;
  }
  // The cached path is empty: draw the rectangle through the canvas matrix instead.
  TCanvasMatrixGuard Guard(Canvas);
  const TMatrix Combined = VXMatrixMultiply(Matrix, Guard.Saved());
  // A scaling stroke takes its width from the matrix before it is in place; a non-scaling one
  // after, so that it keeps its width in device units.
  if (GetVectorEffect() == veNone)
    SetCanvasPen(Canvas, Combined, false);
  Canvas.SetMatrix(Combined);
  if (GetVectorEffect() == veNonScalingStroke)
    SetCanvasPen(Canvas, Combined, false);
  const float Opacity = GetAbsoluteOpacity();
  const float RX = FRX->GetValue();
  const float RY = FRY->GetValue();
  if (GetBrush().GetKind() != bkNone)
    Canvas.FillRect(Bounds, RX, RY, 15, GetBrush().GetOpacity() * Opacity, 0);
  if (GetPen().GetKind() != bkNone)
    Canvas.DrawRect(Bounds, RX, RY, 15, GetPen().GetOpacity() * Opacity, 0);
  return false;
}

void TSVGRectangle::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Rectangle = dynamic_cast<const TSVGRectangle *>(Source)) {
    FRX->Assign(Rectangle->FRX.get());
    FRY->Assign(Rectangle->FRY.get());
  }
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGRectangle::Clear()
{
  FRX->Clear();
  FRY->Clear();
  TSVGGraphicElement::Clear();
}

// --- line --------------------------------------------------------------------------------------

TRectF TSVGLine::GetBoundsRect() const
{
  TRectF Result{GetX(), GetY(), FWidth->GetValue(), FHeight->GetValue()};
  if (Result.Width() == 0)
    Result.Right = float(double(Result.Right) + 1.0);
  if (Result.Height() == 0)
    Result.Bottom = float(double(Result.Bottom) + 1.0);
  return Result;
}

float TSVGLine::GetWidth() const
{
  return float(std::abs(double(FWidth->GetValue()) - GetX()));
}

float TSVGLine::GetHeight() const
{
  return float(std::abs(double(FHeight->GetValue()) - GetY()));
}

void TSVGLine::SetWidth(float Value)
{
  TSVGGraphicElement::SetWidth(float(double(GetX()) + Value));
}

void TSVGLine::SetHeight(float Value)
{
  TSVGGraphicElement::SetHeight(float(double(GetY()) + Value));
}

TVXGPPath *TSVGLine::GetShape()
{
  if (FShapeCacheChanged) {
    FShape.Clear();
    const TPointF Start{GetX(), GetY()};
    const TPointF End{FWidth->GetValue(), FHeight->GetValue()};
    if (Start != End) {
      FShape.MoveTo(Start);
      FShape.LineTo(End);
    }
  }
  return TSVGGraphicElement::GetShape();
}

void TSVGLine::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  ReadLengths(Node, {{QStringLiteral("x1"), &FX},
                     {QStringLiteral("y1"), &FY},
                     {QStringLiteral("x2"), &FWidth},
                     {QStringLiteral("y2"), &FHeight}});
}

bool TSVGLine::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const bool Result = TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect);
  const float X1 = GetX(), Y1 = GetY(), X2 = FWidth->GetValue(), Y2 = FHeight->GetValue();
  if (X1 == X2 && Y1 == Y2)
    return Result;
  if (!Result) {
    // No fill on this road: a line has no area.
    const TVXVector P1 = VXMatrixTransform(VXVector(X1, Y1, 1.0f), Matrix);
    const TVXVector P2 = VXMatrixTransform(VXVector(X2, Y2, 1.0f), Matrix);
    Canvas.DrawLine(TPointF{P1.X, P1.Y}, TPointF{P2.X, P2.Y}, GetPen().GetOpacity() * GetAbsoluteOpacity());
  }
  DrawMarkers(TVXPoints{{X1, Y1}, {X2, Y2}}, Matrix, Canvas, Rect);
  return Result;
}

// --- polyline and polygon ----------------------------------------------------------------------

bool TSVGPolyline::IsClosed() const
{
  return typeid(*this) != typeid(TSVGPolyline);
}

TRectF TSVGPolyline::GetBoundsRect() const
{
  if (FPoints.empty())
    return TRectF{};
  TRectF Result{FPoints[0].X, FPoints[0].Y, FPoints[0].X, FPoints[0].Y};
  for (const TPointF &P : FPoints) {
    Result.Left = std::min(Result.Left, P.X);
    Result.Top = std::min(Result.Top, P.Y);
    Result.Right = std::max(Result.Right, P.X);
    Result.Bottom = std::max(Result.Bottom, P.Y);
  }
  return Result;
}

TVXGPPath *TSVGPolyline::GetShape()
{
  if (FShapeCacheChanged) {
    FShape.Clear();
    if (!FPoints.empty()) {
      if (IsClosed()) {
        FShape.AddPolygon(FPoints, int(FPoints.size()) - 1);
      } else {
        FShape.MoveTo(FPoints[0]);
        for (std::size_t I = 1; I < FPoints.size(); ++I)
          FShape.LineTo(FPoints[I]);
      }
    }
  }
  return TSVGGraphicElement::GetShape();
}

void TSVGPolyline::SetPoints(const TVXPoints &Value)
{
  FPoints = Value;
  Change(this);
}

QString TSVGPolyline::GetPolygon() const
{
  return SVGPointsToString(FPoints, int(FPoints.size()) - 1, suNone, GetFormatStr());
}

void TSVGPolyline::SetPolygon(const QString &Value)
{
  SetPoints(ParsePoints(Value));
}

std::unique_ptr<TVXPathData> TSVGPolyline::CreatePath(bool Closed) const
{
  auto Result = std::make_unique<TVXPathData>();
  if (FPoints.empty())
    return Result;
  Result->BeginUpdate();
  Result->MoveTo(FPoints[0]);
  for (std::size_t I = 1; I < FPoints.size(); ++I)
    Result->LineTo(FPoints[I]);
  if (Closed)
    Result->ClosePath();
  Result->EndUpdate();
  return Result;
}

std::unique_ptr<TVXGPPath> TSVGPolyline::CreatePath(TVXGPCanvas &Canvas, bool Closed) const
{
  auto Result = std::make_unique<TVXGPPath>(&Canvas);
  Result->SetFillMode(VXFillModeWinding);
  if (FPoints.empty())
    return Result;
  Result->MoveTo(FPoints[0]);
  for (std::size_t I = 1; I < FPoints.size(); ++I)
    Result->LineTo(FPoints[I]);
  if (Closed)
    Result->ClosePath();
  return Result;
}

void TSVGPolyline::DrawPoints(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &, bool Closed)
{
  if (FPoints.empty())
    return;
  const std::unique_ptr<TVXGPPath> Path = CreatePath(Canvas, Closed);
  ApplyFillRule(*Path, GetFillRule());
  Path->ApplyMatrix(Matrix);
  const float Opacity = GetAbsoluteOpacity();
  if (GetBrush().GetKind() != bkNone)
    Canvas.FillPath(*Path, GetBrush().GetOpacity() * Opacity);
  Canvas.DrawPath(*Path, GetPen().GetOpacity() * Opacity);
}

void TSVGPolyline::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  FPoints = ParsePoints(Node, QStringLiteral("points"));
}

bool TSVGPolyline::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const bool Result = TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect);
  if (!Result)
    DrawPoints(Matrix, Canvas, Rect, IsClosed());
  if (MarksShapesAlongTheirPaths(*this))
    DrawMarkers(*CreatePath(IsClosed()), Matrix, Canvas, Rect);
  else
    DrawMarkers(FPoints, Matrix, Canvas, Rect);
  return Result;
}

void TSVGPolyline::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Polyline = dynamic_cast<const TSVGPolyline *>(Source))
    FPoints = Polyline->FPoints;
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGPolyline::Clear()
{
  FPoints.clear();
  TSVGGraphicElement::Clear();
}

void TSVGPolygon::SetPoints(const TVXPoints &Value)
{
  TSVGPolyline::SetPoints(Value);
  FShape.Clear();
}

void TSVGPolygon::Clear()
{
  FShape.Clear();
  TSVGPolyline::Clear();
}

} // namespace vx

namespace vx {

void TSVGCircle::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  SaveLength(Node, QStringLiteral("cx"), *FX, 100, Compact);
  SaveLength(Node, QStringLiteral("cy"), *FY, 100, Compact);
  SaveLength(Node, QStringLiteral("r"), *FWidth, 100, Compact);
}

void TSVGEllipse::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  SaveLength(Node, QStringLiteral("cx"), *FX, 100, Compact);
  SaveLength(Node, QStringLiteral("cy"), *FY, 100, Compact);
  SaveLength(Node, QStringLiteral("rx"), *FWidth, 100, Compact);
  SaveLength(Node, QStringLiteral("ry"), *FHeight, 100, Compact);
}

void TSVGRectangle::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  SaveBoundsLengths(Node);
  const bool Compact = IsCompactXML();
  SaveLength(Node, QStringLiteral("rx"), *FRX, 100, Compact);
  SaveLength(Node, QStringLiteral("ry"), *FRY, 100, Compact);
}

// A line keeps its historic form: scale 1, and a zero coordinate is never written. Under the
// standard rules percentages are written at scale 100, so that "10%" reads back as 10%.
void TSVGLine::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  const float Scale = FollowsStandardSVG() ? 100 : 1;
  SaveLength(Node, QStringLiteral("x1"), *FX, Scale, true);
  SaveLength(Node, QStringLiteral("y1"), *FY, Scale, true);
  SaveLength(Node, QStringLiteral("x2"), *FWidth, Scale, true);
  SaveLength(Node, QStringLiteral("y2"), *FHeight, Scale, true);
}

void TSVGPolyline::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  const QString Points = GetPolygon();
  SaveAttrString(Node, QStringLiteral("points"), Points, Points.isEmpty(), true);
}

} // namespace vx

namespace vx {

TSVGGraphicElement *TSVGLine::DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                     const TRectF &Rect, TSVGFindOptions Options)
{
  const TVXGPPath *Shape = GetShape();
  if (!Shape || Shape->Count() == 0)
    return nullptr;
  return PathAtPos(Matrix, Canvas, Point, Rect, *Shape, Options);
}

} // namespace vx

namespace vx {

TSVGGraphicElement *TSVGPolyline::DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                         const TPointF &Point, const TRectF &Rect,
                                                         TSVGFindOptions Options)
{
  if (TSVGGraphicElement *Found = TSVGGraphicElement::DoInternalElementAtPos(Matrix, Canvas, Point, Rect, Options))
    return Found;
  const TVXGPPath *Shape = GetShape();
  if (!Shape || Shape->Count() == 0 || !MarkersAtPos(FPoints, Matrix, Canvas, Point, Rect, Options))
    return nullptr;
  return DoOnElementFound(this);
}

} // namespace vx
