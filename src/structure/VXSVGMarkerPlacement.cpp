// The marker routines of graphic elements: the walk over the vertices of a path or a point list
// that asks the markers named by marker-start, marker-mid and marker-end to appear there, for
// drawing and for hit testing. The placement itself is the marker's (structure/VXSVGMarker.cpp).
#include "platform/geometry/VXPathData.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "structure/VXSVGMarker.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"

#include <QImage>

#include <cmath>
#include <functional>
#include <initializer_list>
#include <numbers>
#include <optional>
#include <vector>

namespace vx {

namespace {

// The narrowest stroke that marker units are scaled by: a stroke width of 0 must not collapse them.
constexpr float MinimumStrokeWidth = 1e-12f;

// The vertices of a path (with their kinds) or of a point list (where every point is a plain vertex).
class TVertices
{
public:
  explicit TVertices(const TVXPathData &Path) : FPath(&Path) {}
  explicit TVertices(const TVXPoints &Points) : FPoints(&Points) {}

  int Count() const { return FPath ? FPath->GetCount() : int(FPoints->size()); }
  TPointF At(int I) const { return FPath ? FPath->GetPoint(I).Point : (*FPoints)[std::size_t(I)]; }
  bool Is(int I, TVXPathPointKind Kind) const { return FPath && FPath->GetPoint(I).Kind == Kind; }

private:
  const TVXPathData *FPath = nullptr;
  const TVXPoints *FPoints = nullptr;
};

// The points I and J moved apart until they differ: forward from J at the start, backward from I
// at the end, never across the edge of a figure. False when no different pair is found.
bool FirstDistinctPoints(const TVertices &V, int I, int J, TPointF &A, TPointF &B)
{
  A = V.At(I);
  B = V.At(J);
  while (A == B && J < V.Count() - 1) {
    if (V.Is(J, ppClose))
      break;
    B = V.At(++J);
  }
  while (A == B && I >= 1) {
    if (V.Is(I, ppMove))
      break;
    A = V.At(--I);
  }
  return !(A == B);
}

enum TMarkerPosition : std::uint8_t { mpStart, mpMid, mpEnd };

// Answers true to end the walk.
using TMarkerVisit = std::function<bool(TSVGMarker &Marker, TMarkerPosition Position, const TPointF &P1,
                                        const TPointF &P2, const TPointF &P3)>;

TSVGMarker *FindMarker(const TSVGGraphicElement &Element, const QString &URI)
{
  TSVGElement *Found = nullptr;
  if (URI.isEmpty() || !Element.GetOwner()->AllItems().TryGetValue(URI, Found))
    return nullptr;
  return dynamic_cast<TSVGMarker *>(Found);
}

// The element's stroke width as markers in strokeWidth units see it, percentages resolved against
// the nearest view box's normalised diagonal.
float MarkerStrokeWidth(TSVGGraphicElement &Element)
{
  const TSVGPen &Pen = Element.GetPen();
  double Width = Pen.GetThickness();
  if (Pen.GetThicknessIsPercent())
    if (const TSVGCustomViewBox *ViewBox = Element.GetNearestViewBox()) {
      const double W = ViewBox->ViewBox().Width()->GetValue();
      const double H = ViewBox->ViewBox().Height()->GetValue();
      Width = Width * std::sqrt(W * W + H * H) / std::sqrt(2.0);
    }
  return Width < MinimumStrokeWidth ? MinimumStrokeWidth : float(Width);
}

// Visits the start, each mid vertex and the end, as far as markers are named for them; nothing
// without an owner or a segment. Sets the canvas pen's thickness to the stroke width first.
void WalkMarkers(TSVGGraphicElement &Element, const TVertices &V, TVXGPCanvas &Canvas, const TMarkerVisit &Visit)
{
  const int Count = V.Count();
  if (!Element.GetOwner() || Count < 2)
    return;
  const QString StartURI = Element.GetMarkerStartURI();
  const QString MidURI = Element.GetMarkerMidURI();
  const QString EndURI = Element.GetMarkerEndURI();
  if (StartURI.isEmpty() && MidURI.isEmpty() && EndURI.isEmpty())
    return;
  Canvas.Pen().SetThickness(MarkerStrokeWidth(Element));
  TPointF A, B;
  if (TSVGMarker *Start = FindMarker(Element, StartURI))
    if (FirstDistinctPoints(V, 0, 1, A, B) && Visit(*Start, mpStart, A, B, B))
      return;
  if (TSVGMarker *Mid = Count > 2 ? FindMarker(Element, MidURI) : nullptr) {
    // A first curve is stepped over whole: its control points are no vertices.
    int I = V.Is(0, ppMove) && V.Is(1, ppCubic) ? 3 : 1;
    while (I < Count - 1) {
      if (Visit(*Mid, mpMid, V.At(I - 1), V.At(I), V.At(I + 1)))
        return;
      ++I;
      if (I < Count - 1 && V.Is(I, ppCubic))
        I += 2;
    }
  }
  if (TSVGMarker *End = FindMarker(Element, EndURI))
    if (FirstDistinctPoints(V, Count - 2, Count - 1, A, B))
      Visit(*End, mpEnd, A, B, B);
}

void DrawAll(TSVGGraphicElement &Element, const TVertices &V, const TMatrix &Matrix, TVXGPCanvas &Canvas,
             const TRectF &Rect)
{
  WalkMarkers(Element, V, Canvas,
              [&](TSVGMarker &Marker, TMarkerPosition Position, const TPointF &P1, const TPointF &P2,
                  const TPointF &P3) {
                switch (Position) {
                case mpStart:
                  Marker.DrawStartMarker(Element, P1, P2, Matrix, Canvas, Rect);
                  break;
                case mpMid:
                  Marker.DrawMidMarker(Element, P1, P2, P3, Matrix, Canvas, Rect);
                  break;
                case mpEnd:
                  Marker.DrawEndMarker(Element, P1, P2, Matrix, Canvas, Rect);
                  break;
                }
                return false;
              });
}

TSVGGraphicElement *FindAt(TSVGGraphicElement &Element, const TVertices &V, const TMatrix &Matrix,
                           TVXGPCanvas &Canvas, const TPointF &Point, const TRectF &Rect, TSVGFindOptions Options)
{
  TVXGPCanvasStateGuard Guard(Canvas);
  TSVGGraphicElement *Found = nullptr;
  WalkMarkers(Element, V, Canvas,
              [&](TSVGMarker &Marker, TMarkerPosition Position, const TPointF &P1, const TPointF &P2,
                  const TPointF &P3) {
                switch (Position) {
                case mpStart:
                  Found = Marker.StartMarkerAtPos(P1, P2, Matrix, Canvas, Point, Rect, Options);
                  break;
                case mpMid:
                  Found = Marker.MidMarkerAtPos(P1, P2, P3, Matrix, Canvas, Point, Rect, Options);
                  break;
                case mpEnd:
                  Found = Marker.EndMarkerAtPos(P1, P2, Matrix, Canvas, Point, Rect, Options);
                  break;
                }
                return Found != nullptr;
              });
  return Found;
}

// --- the standard vertex rules ----------------------------------------------------------------------
//
// Every end of a segment is a vertex, a move and a close included. A marker turns by the direction
// of the path where it stands: at the start along the first segment, at the end along the last
// one (a closing segment when the figure is closed), and in between along the bisector of the
// directions in and out. Where one side has no direction (a subpath begins or ends there, or the
// segment has no length) the other side's is taken, and 0 where neither has one: a path of no
// length still shows its markers.

struct TVertex
{
  TPointF Point;
  std::optional<float> In, Out;
};

std::optional<float> Direction(const TPointF &From, const TPointF &To)
{
  if (From == To)
    return std::nullopt;
  return float(std::atan2(double(To.Y) - From.Y, double(To.X) - From.X));
}

// The direction a segment leaves From with: towards the first of Towards that differs from From.
std::optional<float> FirstDirection(const TPointF &From, std::initializer_list<TPointF> Towards)
{
  for (const TPointF &To : Towards)
    if (std::optional<float> Angle = Direction(From, To))
      return Angle;
  return std::nullopt;
}

std::vector<TVertex> StandardVertices(const TVXPathData &Path)
{
  std::vector<TVertex> Result;
  const int Count = Path.GetCount();
  auto At = [&](int I) { return Path.GetPoint(std::min(I, Count - 1)).Point; };
  for (int I = 0; I < Count; ++I) {
    const TVXPathPoint &P = Path.GetPoint(I);
    if (P.Kind == ppMove || Result.empty()) {
      Result.push_back({P.Point, std::nullopt, std::nullopt});
      continue;
    }
    const TPointF From = Result.back().Point;
    std::optional<float> Out, In;
    if (P.Kind == ppCubic) {
      const TPointF C1 = P.Point, C2 = At(I + 1), To = At(I + 2);
      Out = FirstDirection(From, {C1, C2, To});
      if (std::optional<float> Back = FirstDirection(To, {C2, C1, From}))
        In = *Back + float(std::numbers::pi);
      I += 2;
      Result.back().Out = Out;
      Result.push_back({To, In, std::nullopt});
      continue;
    }
    Out = In = Direction(From, P.Point);
    Result.back().Out = Out;
    Result.push_back({P.Point, In, std::nullopt});
  }
  return Result;
}

// The bisector of In and Out; of the two, the one on the side the path turns to. A path that
// turns straight back faces a quarter turn clockwise from In; the tolerance keeps single-precision
// directions (a float pi is a little more than pi) on that side.
float Bisector(float In, float Out)
{
  constexpr double Turn = 2 * std::numbers::pi;
  constexpr double Tolerance = 1e-6;
  auto Normal = [&](double A) { return std::fmod(std::fmod(A, Turn) + Turn, Turn); };
  const double I = Normal(In);
  const double Half = (Normal(Out) - I) / 2;
  return float(std::abs(Half) > std::numbers::pi / 2 + Tolerance ? I + Half - std::numbers::pi : I + Half);
}

float VertexDirection(const TVertex &V)
{
  if (V.In && V.Out)
    return Bisector(*V.In, *V.Out);
  return V.In ? *V.In : V.Out.value_or(0.0f);
}

// Answers true to end the walk.
using TStandardVisit = std::function<bool(TSVGMarker &Marker, const TPointF &Point, float Angle)>;

void WalkStandardMarkers(TSVGGraphicElement &Element, const TVXPathData &Path, TVXGPCanvas &Canvas,
                         const TStandardVisit &Visit)
{
  if (!Element.GetOwner())
    return;
  const std::vector<TVertex> Vertices = StandardVertices(Path);
  if (Vertices.size() < 2)
    return;
  TSVGMarker *Start = FindMarker(Element, Element.GetMarkerStartURI());
  TSVGMarker *Mid = FindMarker(Element, Element.GetMarkerMidURI());
  TSVGMarker *End = FindMarker(Element, Element.GetMarkerEndURI());
  if (!Start && !Mid && !End)
    return;
  Canvas.Pen().SetThickness(MarkerStrokeWidth(Element));
  const std::size_t Last = Vertices.size() - 1;
  for (std::size_t I = 0; I <= Last; ++I) {
    const TVertex &V = Vertices[I];
    TSVGMarker *Marker = I == 0 ? Start : I == Last ? End : Mid;
    const float Angle = I == 0 ? V.Out.value_or(0.0f) : I == Last ? V.In.value_or(0.0f) : VertexDirection(V);
    if (Marker && Visit(*Marker, V.Point, Marker->TurnAt(Angle, I == 0)))
      return;
  }
}

TVXPathData OpenPath(const TVXPoints &Points)
{
  TVXPathData Result;
  for (std::size_t I = 0; I < Points.size(); ++I)
    if (I == 0)
      Result.MoveTo(Points[I]);
    else
      Result.LineTo(Points[I]);
  return Result;
}

void DrawStandard(TSVGGraphicElement &Element, const TVXPathData &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                  const TRectF &Rect)
{
  WalkStandardMarkers(Element, Path, Canvas, [&](TSVGMarker &Marker, const TPointF &Point, float Angle) {
    Marker.Draw(Element, Point, Angle, Matrix, Canvas, Rect);
    return false;
  });
}

TSVGGraphicElement *FindStandard(TSVGGraphicElement &Element, const TVXPathData &Path, const TMatrix &Matrix,
                                 TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                 TSVGFindOptions Options)
{
  TVXGPCanvasStateGuard Guard(Canvas);
  TSVGGraphicElement *Found = nullptr;
  WalkStandardMarkers(Element, Path, Canvas, [&](TSVGMarker &Marker, const TPointF &Point, float Angle) {
    Found = Marker.MarkerAtPos(Point, Angle, Matrix, Canvas, TestPoint, Rect, Options);
    return Found != nullptr;
  });
  return Found;
}

// Standard mode places markers by the vertex rules above; the documented walk pairs neighbouring
// points and skips a vertex whose direction is undefined.
bool FollowsStandardVertexRules(const TSVGGraphicElement &Element)
{
  return Element.FollowsStandardSVG();
}

void GenerateAll(TSVGGraphicElement &Element, const TVertices &V, const TVXPathData &Path, IVXHostControl *Control,
                 const TMatrix &Matrix, const TRectF &Rect, const TSVGControlElementEvent &Callback)
{
  // Nothing is painted: the canvas carries the stroke width that markers scale by.
  QImage Scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Scratch);
  if (FollowsStandardVertexRules(Element)) {
    WalkStandardMarkers(Element, Path, Canvas, [&](TSVGMarker &Marker, const TPointF &Point, float Angle) {
      Marker.GenerateMarkerAt(Element, Point, Angle, Control, Matrix, Canvas, Rect, Callback);
      return false;
    });
    return;
  }
  WalkMarkers(Element, V, Canvas,
              [&](TSVGMarker &Marker, TMarkerPosition Position, const TPointF &P1, const TPointF &P2,
                  const TPointF &P3) {
                Marker.GenerateMarker(Element, int(Position), P1, P2, P3, Control, Matrix, Canvas, Rect, Callback);
                return false;
              });
}

} // namespace

void TSVGGraphicElement::DrawMarkers(const TVXPathData &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                     const TRectF &Rect)
{
  if (FollowsStandardVertexRules(*this)) {
    DrawStandard(*this, Path, Matrix, Canvas, Rect);
    PaintDeferredParts(Canvas);
    return;
  }
  DrawAll(*this, TVertices(Path), Matrix, Canvas, Rect);
}

void TSVGGraphicElement::DrawMarkers(const TVXPoints &Points, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                     const TRectF &Rect)
{
  if (FollowsStandardVertexRules(*this)) {
    DrawStandard(*this, OpenPath(Points), Matrix, Canvas, Rect);
    PaintDeferredParts(Canvas);
    return;
  }
  DrawAll(*this, TVertices(Points), Matrix, Canvas, Rect);
}

void TSVGGraphicElement::GenerateMarkers(const TVXPathData &Path, IVXHostControl *Control, const TMatrix &Matrix,
                                         const TRectF &Rect, const TSVGControlElementEvent &Callback)
{
  GenerateAll(*this, TVertices(Path), Path, Control, Matrix, Rect, Callback);
}

void TSVGGraphicElement::GenerateMarkers(const TVXPoints &Points, IVXHostControl *Control, const TMatrix &Matrix,
                                         const TRectF &Rect, const TSVGControlElementEvent &Callback)
{
  GenerateAll(*this, TVertices(Points), OpenPath(Points), Control, Matrix, Rect, Callback);
}

TSVGGraphicElement *TSVGGraphicElement::MarkersAtPos(const TVXPathData &Path, const TMatrix &Matrix,
                                                     TVXGPCanvas &Canvas, const TPointF &Point, const TRectF &Rect,
                                                     TSVGFindOptions Options)
{
  if (FollowsStandardVertexRules(*this))
    return FindStandard(*this, Path, Matrix, Canvas, Point, Rect, Options);
  return FindAt(*this, TVertices(Path), Matrix, Canvas, Point, Rect, Options);
}

TSVGGraphicElement *TSVGGraphicElement::MarkersAtPos(const TVXPoints &Points, const TMatrix &Matrix,
                                                     TVXGPCanvas &Canvas, const TPointF &Point, const TRectF &Rect,
                                                     TSVGFindOptions Options)
{
  if (FollowsStandardVertexRules(*this))
    return FindStandard(*this, OpenPath(Points), Matrix, Canvas, Point, Rect, Options);
  return FindAt(*this, TVertices(Points), Matrix, Canvas, Point, Rect, Options);
}

} // namespace vx
