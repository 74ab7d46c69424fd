#include "structure/VXSVGMarker.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "structure/VXSVGScopes.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPropertyParsers.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGMarker)

namespace {

const TSVGClassRegistration MarkerRegistration(etMarker, TSVGMarker::ClassInfo());

// No real picture nests markers this deep (a marker on a shape inside a marker ...); deeper ones are
// skipped like a marker that comes back to itself.
constexpr std::size_t MaxMarkerNesting = 64;

// The markers being drawn or hit-tested on this thread, innermost last.
thread_local std::vector<const TSVGElement *> ActiveMarkers;

// Initializes a length while its change event is set aside: defaults are no change.
void QuietInitialize(TSVGLength &Length, float Value)
{
  TNotifyEvent Saved = std::move(Length.OnChange);
  Length.OnChange = nullptr;
  Length.Initialize(Value, false, suNone);
  Length.OnChange = std::move(Saved);
}

constexpr float DefaultMarkerSize = 3.0f;

} // namespace

TSVGMarker::TSVGMarker(TSVGDocument *Owner)
  : TSVGCustomViewBox(Owner, saNone), FRefX(CreateLength(true)), FRefY(CreateLength(false)),
    FMarkerHeight(CreateLength(false)), FMarkerWidth(CreateLength(true))
{
  QuietInitialize(*FMarkerHeight, DefaultMarkerSize);
  QuietInitialize(*FMarkerWidth, DefaultMarkerSize);
}

TSVGMarker::~TSVGMarker() = default;

void TSVGMarker::SetUnits(TSVGMarkerUnit Value)
{
  if (Value == FUnits)
    return;
  FUnits = Value;
  Change(this);
}

void TSVGMarker::SetOrientation(float Value)
{
  if (Value == FOrientation)
    return;
  FOrientation = Value;
  Change(this);
}

void TSVGMarker::SetAutomaticOrientation(bool Value)
{
  if (Value == FAutomaticOrientation)
    return;
  FAutomaticOrientation = Value;
  Change(this);
}

// --- placing ---------------------------------------------------------------------------------------

TMatrix TSVGMarker::CreateAngleTransformation(const TPointF &Point, float Angle)
{
  TMatrix Result = CreateTranslateVXMatrix(-Point.X, -Point.Y);
  Result = VXMatrixMultiply(CreateRotationVXMatrix(Angle), Result);
  return VXMatrixMultiply(CreateTranslateVXMatrix(Point.X, Point.Y), Result);
}

bool TSVGMarker::PlacesContentsAsBrowsersDo() const
{
  return FollowsStandardSVG();
}

double TSVGMarker::UnitScale(TVXGPCanvas &Canvas) const
{
  return FUnits == muStrokeWidth ? Canvas.Pen().GetThickness() : 1.0;
}

TMatrix TSVGMarker::DocumentedPlacement(const TPointF &Point, float Angle, TVXGPCanvas &Canvas) const
{
  // The view box fills the marker rectangle that stands at the vertex; the contents then move
  // back by the reference point and turn about the negated reference point. Without a view box
  // nothing scales: a unit of the contents is a unit of the shape.
  const double Scale = UnitScale(Canvas);
  const TRectF Box = VXRect(Point.X, Point.Y, float(Point.X + FMarkerWidth->GetValue() * Scale),
                            float(Point.Y + FMarkerHeight->GetValue() * Scale));
  const TPointF Ref{-FRefX->GetValue(), -FRefY->GetValue()};
  TMatrix Result = GetViewMatrix(Box);
  Result = VXMatrixMultiply(CreateTranslateVXMatrix(Ref.X, Ref.Y), Result);
  return VXMatrixMultiply(CreateAngleTransformation(Ref, Angle), Result);
}

TMatrix TSVGMarker::StandardPlacement(const TPointF &Point, float Angle, TVXGPCanvas &Canvas) const
{
  const double Stroke = UnitScale(Canvas);
  const double Width = FMarkerWidth->GetValue() * Stroke;
  const double Height = FMarkerHeight->GetValue() * Stroke;
  // Without a view box a unit of the contents is a marker unit. Only the scale of a view matrix is
  // taken: the reference point, not the view box's corner or its alignment, is what lands on the
  // vertex, and the turn comes after the scale, so that a stretched marker turns as a whole.
  float ScaleX = float(Stroke);
  float ScaleY = float(Stroke);
  if (IsViewBoxSpecified()) {
    const TMatrix View = GetViewMatrix(VXRect(Point.X, Point.Y, float(Point.X + Width), float(Point.Y + Height)));
    ScaleX = View.m11;
    ScaleY = View.m22;
  }
  TMatrix Result = CreateTranslateVXMatrix(-FRefX->GetValue(), -FRefY->GetValue());
  Result = VXMatrixMultiply(Result, CreateScaleVXMatrix(ScaleX, ScaleY));
  Result = VXMatrixMultiply(Result, CreateRotationVXMatrix(Angle));
  return VXMatrixMultiply(Result, CreateTranslateVXMatrix(Point.X, Point.Y));
}

void TSVGMarker::ConvertToMarkerCoords(const TPointF &Point, float Angle, TMatrix &Matrix, TVXGPCanvas &Canvas,
                                       TRectF &)
{
  const TMatrix Placement = PlacesContentsAsBrowsersDo() ? StandardPlacement(Point, Angle, Canvas)
                                                         : DocumentedPlacement(Point, Angle, Canvas);
  Matrix = VXMatrixMultiply(Placement, Matrix);
}

void TSVGMarker::OverflowClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &)
{
  if (IsOverflow() || !GetOptions().Contains(soApplyClipping))
    return;
  const TRectF Clip = IsViewBoxSpecified() ? FViewBox.GetRect()
                                           : TRectF{0, 0, FMarkerWidth->GetValue(), FMarkerHeight->GetValue()};
  if (Clip.IsEmpty())
    return;
  const TMatrix Saved = Canvas.GetMatrix();
  try {
    Canvas.SetMatrix(VXMatrixMultiply(Matrix, Saved));
    Canvas.IntersectClip(Clip);
  } catch (...) {
    Canvas.SetMatrix(Saved);
    throw;
  }
  Canvas.SetMatrix(Saved);
}

namespace {

// The direction of P1 -> P2 in radians, or false when it has none.
bool SegmentAngle(const TPointF &P1, const TPointF &P2, float &Angle)
{
  const float DX = P2.X - P1.X;
  const float DY = P2.Y - P1.Y;
  if (DX == 0 && DY == 0)
    return false;
  Angle = float(std::atan2(double(DY), double(DX)));
  return true;
}

// The bisector of the directions into and out of P2, or false when a neighbour equals P2.
bool VertexAngle(const TPointF &P1, const TPointF &P2, const TPointF &P3, float &Angle)
{
  const double UX = double(P2.X) - P1.X, UY = double(P2.Y) - P1.Y;
  const double VX = double(P3.X) - P2.X, VY = double(P3.Y) - P2.Y;
  const double U = UX * UX + UY * UY;
  const double V = VX * VX + VY * VY;
  if (!(U > 0) || !(V > 0))
    return false;
  const double SU = std::sqrt(U), SV = std::sqrt(V);
  Angle = float(std::atan2(UY / SU + VY / SV, UX / SU + VX / SV));
  return true;
}

} // namespace

bool TSVGMarker::DrawsFixedAngles() const
{
  return FollowsStandardSVG();
}

float TSVGMarker::FixedAngle() const
{
  return DrawsFixedAngles() ? FOrientation : 0.0f;
}

bool TSVGMarker::StartAngle(const TPointF &P1, const TPointF &P2, float &Angle) const
{
  Angle = FixedAngle();
  if (!FAutomaticOrientation)
    return true;
  if (!SegmentAngle(P1, P2, Angle))
    return false;
  if (FReversedAtStart)
    Angle += float(std::numbers::pi);
  return true;
}

bool TSVGMarker::MidAngle(const TPointF &P1, const TPointF &P2, const TPointF &P3, float &Angle) const
{
  Angle = FixedAngle();
  return !FAutomaticOrientation || VertexAngle(P1, P2, P3, Angle);
}

bool TSVGMarker::EndAngle(const TPointF &P1, const TPointF &P2, float &Angle) const
{
  Angle = FixedAngle();
  return !FAutomaticOrientation || SegmentAngle(P1, P2, Angle);
}

float TSVGMarker::TurnAt(float PathAngle, bool AtStart) const
{
  if (!FAutomaticOrientation)
    return FixedAngle();
  return AtStart && FReversedAtStart ? PathAngle + float(std::numbers::pi) : PathAngle;
}

void TSVGMarker::DrawStartMarker(TSVGGraphicElement &Element, const TPointF &P1, const TPointF &P2,
                                 const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  float Angle = 0;
  if (StartAngle(P1, P2, Angle))
    Draw(Element, P1, Angle, Matrix, Canvas, Rect);
}

void TSVGMarker::DrawMidMarker(TSVGGraphicElement &Element, const TPointF &P1, const TPointF &P2, const TPointF &P3,
                               const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  float Angle = 0;
  if (MidAngle(P1, P2, P3, Angle))
    Draw(Element, P2, Angle, Matrix, Canvas, Rect);
}

void TSVGMarker::DrawEndMarker(TSVGGraphicElement &Element, const TPointF &P1, const TPointF &P2,
                               const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  float Angle = 0;
  if (EndAngle(P1, P2, Angle))
    Draw(Element, P2, Angle, Matrix, Canvas, Rect);
}

void TSVGMarker::Draw(TSVGGraphicElement &Element, const TPointF &Point, float Angle, const TMatrix &Matrix,
                      TVXGPCanvas &Canvas, const TRectF &Rect)
{
  TStackScope Scope(ActiveMarkers, *this, MaxMarkerNesting);
  if (!Scope.Entered() || IsCollapsed())
    return;
  TMatrix M = Matrix;
  TRectF R = Rect;
  ConvertToMarkerCoords(Point, Angle, M, Canvas, R);
  TEnabledScope Enabled(*this, Element.IsEnabled());
  TVXGPCanvasStateGuard Guard(Canvas);
  // The contents resolve their context paints again for each shape they mark; the shape is known
  // for the span of the draw only.
  FContext = &Element;
  Reset();
  struct TForgetContext {
    TSVGGraphicElement *&Context;
    ~TForgetContext() { Context = nullptr; }
  } Forget{FContext};
  OverflowClipping(M, Canvas, R);
  InternalDraw(M, Canvas, R);
}

void TSVGMarker::GenerateMarker(TSVGGraphicElement &Element, int Position, const TPointF &P1, const TPointF &P2,
                                const TPointF &P3, IVXHostControl *Control, const TMatrix &Matrix,
                                TVXGPCanvas &Canvas, const TRectF &Rect, const TSVGControlElementEvent &Callback)
{
  // Position: 0 start, 1 mid, 2 end, as the marker walk of the shapes numbers them.
  float Angle = 0;
  const bool Placed = Position == 0 ? StartAngle(P1, P2, Angle)
                                    : Position == 1 ? MidAngle(P1, P2, P3, Angle) : EndAngle(P1, P2, Angle);
  if (Placed)
    GenerateMarkerAt(Element, Position == 0 ? P1 : P2, Angle, Control, Matrix, Canvas, Rect, Callback);
}

void TSVGMarker::GenerateMarkerAt(TSVGGraphicElement &Element, const TPointF &Point, float Angle,
                                  IVXHostControl *Control, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                  const TRectF &Rect, const TSVGControlElementEvent &Callback)
{
  TStackScope Scope(ActiveMarkers, *this, MaxMarkerNesting);
  if (!Scope.Entered() || IsCollapsed())
    return;
  TMatrix M = Matrix;
  TRectF R = Rect;
  ConvertToMarkerCoords(Point, Angle, M, Canvas, R);
  FContext = &Element;
  Reset();
  struct TForgetContext {
    TSVGGraphicElement *&Context;
    ~TForgetContext() { Context = nullptr; }
  } Forget{FContext};
  GenerateChildControls(Control, VXMatrixMultiply(FMatrix, M), R, Callback);
}

bool TSVGMarker::IsCollapsed() const
{
  return !(FMarkerWidth->GetValue() > 0) || !(FMarkerHeight->GetValue() > 0);
}

// --- hit testing -----------------------------------------------------------------------------------

TSVGGraphicElement *TSVGMarker::MarkerAtPos(const TPointF &Point, float Angle, const TMatrix &Matrix,
                                            TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                            TSVGFindOptions Options)
{
  TStackScope Scope(ActiveMarkers, *this, MaxMarkerNesting);
  if (!Scope.Entered() || IsCollapsed())
    return nullptr;
  TMatrix M = Matrix;
  TRectF R = Rect;
  ConvertToMarkerCoords(Point, Angle, M, Canvas, R);
  return InternalElementAtPos(M, Canvas, TestPoint, R, Options);
}

TSVGGraphicElement *TSVGMarker::StartMarkerAtPos(const TPointF &P1, const TPointF &P2, const TMatrix &Matrix,
                                                 TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                                 TSVGFindOptions Options)
{
  float Angle = 0;
  if (!StartAngle(P1, P2, Angle))
    return nullptr;
  return MarkerAtPos(P1, Angle, Matrix, Canvas, TestPoint, Rect, Options);
}

TSVGGraphicElement *TSVGMarker::MidMarkerAtPos(const TPointF &P1, const TPointF &P2, const TPointF &P3,
                                               const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &TestPoint,
                                               const TRectF &Rect, TSVGFindOptions Options)
{
  float Angle = 0;
  if (!MidAngle(P1, P2, P3, Angle))
    return nullptr;
  return MarkerAtPos(P2, Angle, Matrix, Canvas, TestPoint, Rect, Options);
}

TSVGGraphicElement *TSVGMarker::EndMarkerAtPos(const TPointF &P1, const TPointF &P2, const TMatrix &Matrix,
                                               TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                               TSVGFindOptions Options)
{
  float Angle = 0;
  if (!EndAngle(P1, P2, Angle))
    return nullptr;
  return MarkerAtPos(P2, Angle, Matrix, Canvas, TestPoint, Rect, Options);
}

// --- copying and XML -------------------------------------------------------------------------------

void TSVGMarker::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Marker = dynamic_cast<const TSVGMarker *>(Source)) {
    FRefX->Assign(Marker->FRefX.get());
    FRefY->Assign(Marker->FRefY.get());
    FMarkerHeight->Assign(Marker->FMarkerHeight.get());
    FMarkerWidth->Assign(Marker->FMarkerWidth.get());
    FUnits = Marker->FUnits;
    FOrientation = Marker->FOrientation;
    FAutomaticOrientation = Marker->FAutomaticOrientation;
    FReversedAtStart = Marker->FReversedAtStart;
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGMarker::Clear()
{
  TSVGUpdateGuard Guard(*this);
  FUnits = muStrokeWidth;
  FMarkerHeight->Initialize(DefaultMarkerSize, false, suNone);
  FMarkerWidth->Initialize(DefaultMarkerSize, false, suNone);
  FRefX->Clear();
  FRefY->Clear();
  TSVGCustomViewBox::Clear();
}

void TSVGMarker::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoLoadFromXML(Node);
  ParsePercent(Node, QStringLiteral("refX"), FRefX.get(), 0.0f, 1.0f);
  ParsePercent(Node, QStringLiteral("refY"), FRefY.get(), 0.0f, 1.0f);
  ParsePercent(Node, QStringLiteral("markerHeight"), FMarkerHeight.get(), 0.0f, 1.0f);
  ParsePercent(Node, QStringLiteral("markerWidth"), FMarkerWidth.get(), 0.0f, 1.0f);
  FUnits = ParseMarkerUnit(ParseAttrString(Node, QStringLiteral("markerUnits")), FUnits);
  ReadOrientation(ParseAttrString(Node, QStringLiteral("orient")));
  // The rectangle follows the view box, in place (a symbol swaps width and height here).
  FX->SetPixels(FViewBox.X()->GetValue());
  FY->SetPixels(FViewBox.Y()->GetValue());
  FHeight->SetPixels(FViewBox.Height()->GetValue());
  FWidth->SetPixels(FViewBox.Width()->GetValue());
}

bool TSVGMarker::ReadsCSSAngles() const
{
  return FollowsStandardSVG();
}

void TSVGMarker::ReadOrientation(const QString &Text)
{
  if (!ReadsCSSAngles()) {
    FOrientation = ParseAngle(Text, FOrientation, FAutomaticOrientation);
    return;
  }
  const QString T = Trim(Text);
  FReversedAtStart = T == QLatin1String("auto-start-reverse");
  if (T == QLatin1String("auto") || FReversedAtStart) {
    FAutomaticOrientation = true;
    return;
  }
  // An angle with its unit glued on ("30", "30deg", "40grad", "1.5rad", "0.25turn"); anything
  // else is invalid and leaves the marker unturned.
  FAutomaticOrientation = false;
  FOrientation = 0;
  struct TAngleUnit { const char *Name; double Radians; };
  constexpr double Pi = std::numbers::pi;
  for (const TAngleUnit &U : {TAngleUnit{"deg", Pi / 180}, TAngleUnit{"grad", Pi / 200}, TAngleUnit{"rad", 1.0},
                              TAngleUnit{"turn", 2 * Pi}, TAngleUnit{"", Pi / 180}}) {
    const QLatin1String Unit(U.Name);
    float Number = 0;
    if (T.endsWith(Unit) && TryStrToFloat(T.left(T.size() - Unit.size()), Number)) {
      FOrientation = float(Number * U.Radians);
      return;
    }
  }
}

void TSVGMarker::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoSaveToXML(Node);
  const QString Format = GetFormatStr();
  const bool Compact = IsCompactXML();
  // Compact output leaves out every length of 0; a size of 0 thus reads back as the default 3.
  auto SaveLength = [&](const QString &Name, const TSVGLength &Length) {
    SaveAttrString(Node, Name, SVGLengthToString(Length, Format, 0.0f, 1.0f), Compact && Length.Raw() == 0, true);
  };
  SaveLength(QStringLiteral("refX"), *FRefX);
  SaveLength(QStringLiteral("refY"), *FRefY);
  SaveLength(QStringLiteral("markerWidth"), *FMarkerWidth);
  SaveLength(QStringLiteral("markerHeight"), *FMarkerHeight);
  if (FUnits != muNone)
    SaveAttrString(Node, QStringLiteral("markerUnits"), SVGMarkerUnitNames[FUnits], false, true);
  if (FAutomaticOrientation)
    SaveAttrString(Node, QStringLiteral("orient"),
                   FReversedAtStart ? QStringLiteral("auto-start-reverse") : QStringLiteral("auto"), false, true);
  else if (FOrientation != 0 && !Compact)
    SaveAttrString(Node, QStringLiteral("orient"), SVGNumberToString(FOrientation, suNone, Format), false, true);
}

} // namespace vx
