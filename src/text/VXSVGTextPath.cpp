// Text on a path: before chunking, textPath gives every character an absolute position and an angle
// along the flattened outline of a path element; the ordinary layout then draws them as characters
// with their own x, y and rotate.
#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "shapes/VXSVGPath.h"
#include "text/VXSVGText.h"
#include "text/VXSVGTextVariant.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLookups.h"

#include <cmath>
#include <numbers>

namespace vx {

namespace {

constexpr double DegreesPerRadian = 180.0 / std::numbers::pi;

float PointAngle(const TPointF &A, const TPointF &B)
{
  return float(std::atan2(double(B.Y) - A.Y, double(B.X) - A.X) * DegreesPerRadian);
}

TPointF Between(const TPointF &A, const TPointF &B, float T)
{
  return {A.X + (B.X - A.X) * T, A.Y + (B.Y - A.Y) * T};
}

// The point Distance away from P in the direction of Degrees.
TPointF Towards(const TPointF &P, float Degrees, float Distance)
{
  const double Radians = Degrees / DegreesPerRadian;
  return {float(P.X + Distance * std::cos(Radians)), float(P.Y + Distance * std::sin(Radians))};
}

TSVGCharChunk PlacedChar(const TPointF &At, float Rotate, bool Clipped, TSVGCustomText *Owner)
{
  return TSVGCharChunk{At.X, true, At.Y, true, 0, 0, Rotate, Clipped, Owner};
}

} // namespace

TSVGTextPath::TSVGTextPath(TSVGDocument *Owner) : TSVGCustomTextContentChild(Owner), FStartOffset(CreateLength(true))
{
  // A percentage of startOffset is one of the path's length.
  FStartOffset->OnRange = [this](TSVGLength *L, float &Min, float &Max, bool &Use) {
    LengthRangePathLength(L, Min, Max, Use);
  };
  FPath.OnChange = [this](TVXPathData *) { ObjectPropChange(nullptr); };
}

TSVGTextPath::~TSVGTextPath()
{
  BeforeDestruction();
  FListener.Stop(*this);
}

void TSVGTextPath::LengthRangePathLength(TSVGLength *, float &Min, float &Max, bool &Use) const
{
  Min = 0;
  Max = float(FLength);
  Use = true;
}

// --- the path ----------------------------------------------------------------------------------

TSVGPath *TSVGTextPath::GetPathElement() const
{
  TSVGElement *Found = nullptr;
  if (FReference.isEmpty() || !GetOwner() || !GetOwner()->AllItems().TryGetValue(FReference, Found))
    return nullptr;
  return dynamic_cast<TSVGPath *>(Found);
}

void TSVGTextPath::RetrievePath()
{
  FUpdatePath = false;
  TSVGPath *Target = GetPathElement();
  if (!Target)
    return;
  const auto Handler = std::move(FPath.OnChange);
  FPath.OnChange = nullptr;
  FPath.Assign(Target->Data());
  FPath.ApplyMatrix(Target->Matrix());
  FPath.OnChange = Handler;
  if (FListener.Listened() != Target)
    FListener.Listen(*this, Target);
}

const TVXPathData &TSVGTextPath::GetPath()
{
  if (FUpdatePath)
    RetrievePath();
  return FPath;
}

void TSVGTextPath::SetPath(const TVXPathData &Value)
{
  FPath.Assign(Value);
}

void TSVGTextPath::SetReference(const QString &Value)
{
  if (Value == FReference)
    return;
  FReference = Value;
  FListener.Listen(*this, GetPathElement());
  FUpdatePath = true;
  Change(this);
}

void TSVGTextPath::SetStartOffset(const TSVGLength &Value)
{
  FStartOffset->Assign(&Value);
}

void TSVGTextPath::SetMethod(TSVGTextPathMethod Value)
{
  if (Value == FMethod)
    return;
  FMethod = Value;
  Change(this);
}

void TSVGTextPath::SetSpacing(TSVGTextPathSpacing Value)
{
  if (Value == FSpacing)
    return;
  FSpacing = Value;
  Change(this);
}

void TSVGTextPath::NotifyListener(TSVGElement *Element)
{
  FUpdatePath = true;
  TSVGCustomTextContentChild::NotifyListener(Element);
}

// --- lookups: the lists are the placement's, with no fallback to the parent ---------------------

float TSVGTextPath::GetX(int Index) const
{
  return Index < FX->Count() ? FX->Items(Index)->GetPixels() : 0;
}

float TSVGTextPath::GetY(int Index) const
{
  return Index < FY->Count() ? FY->Items(Index)->GetPixels() : 0;
}

float TSVGTextPath::GetDX(int) const
{
  return 0;
}

float TSVGTextPath::GetDY(int) const
{
  return 0;
}

float TSVGTextPath::GetRotate(int Index) const
{
  return Index < int(FRotate.size()) ? FRotate[std::size_t(Index)] : 0;
}

bool TSVGTextPath::IsXSpecified(int Index) const
{
  return Index < FX->Count();
}

bool TSVGTextPath::IsYSpecified(int Index) const
{
  return Index < FY->Count();
}

bool TSVGTextPath::IsCharClipped(int Index) const
{
  if (Index >= int(FCharDistances.size()))
    return true;
  const float Distance = FCharDistances[std::size_t(Index)];
  return Distance < 0 || Distance > FLength;
}

void TSVGTextPath::SetX(float)
{
}

void TSVGTextPath::SetY(float)
{
}

void TSVGTextPath::SetX(const TSVGLengths &)
{
}

void TSVGTextPath::SetY(const TSVGLengths &)
{
}

TPointF TSVGTextPath::GetBaseline(TSVGCustomText &AText, TVXGPCanvas &Canvas, QChar Ch, const TVXGPPath *)
{
  TSVGFont &Font = AText.GetFont();
  const double Size = Font.GetSize();
  // The glyph's centre, not its left edge, sits on the path.
  TPointF Result{GetGlyphSpacing(Ch, Canvas, Font).cx / 2,
                 float(Size * Font.GetCellAscent() / Font.GetEmHeight() + 0.5)};
  const TSVGBaselineShiftLength &Shift = AText.BaselineShift();
  switch (Shift.GetShift()) {
  case bsSubscript:
    Result.Y = float(Result.Y - Size * 0.4);
    break;
  case bsSuperscript:
    Result.Y = float(Result.Y + Size * 0.4);
    break;
  case bsPercentage:
    Result.Y = float(Result.Y + Shift.GetPixels() * Size);
    break;
  case bsLength:
    Result.Y += Shift.GetPixels();
    break;
  default:
    break;
  }
  return Result;
}

// --- placement ---------------------------------------------------------------------------------

void TSVGTextPath::ChunkText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks)
{
  CalculateXYRotate(Canvas, Matrix);
  TSVGCustomTextContentChild::ChunkText(Canvas, Matrix, Chunks);
}

void TSVGTextPath::ChunkChildrenText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks)
{
  std::size_t I = 0, J = 0;
  if (!Chunks.empty()) {
    I = Chunks.size() - 1;
    J = Chunks.back().Chars.size();
  }
  TSVGCustomTextContentChild::ChunkChildrenText(Canvas, Matrix, Chunks);
  float Offset = 0;
  for (; I < Chunks.size(); ++I, J = 0, Offset = 0)
    for (; J < Chunks[I].Chars.size(); ++J)
      Offset = CalculateXYRotate(Canvas, Matrix, Chunks[I], int(J), Offset);
}

void TSVGTextPath::WalkToCharDistance()
{
  while (FPolygonIndex < int(FPolygons.size()) && FPointIndex < int(FPolygons[std::size_t(FPolygonIndex)].size()) &&
         FCharDistance > FDistances[std::size_t(FPolygonIndex)][std::size_t(FPointIndex)]) {
    ++FPointIndex;
    if (FPointIndex == int(FPolygons[std::size_t(FPolygonIndex)].size())) {
      ++FPolygonIndex;
      FPointIndex = 0;
    }
  }
}

std::pair<TPointF, TPointF> TSVGTextPath::SegmentAtCharDistance(const TPointF &Previous) const
{
  if (FPolygonIndex == 0 && FPointIndex == 0)
    return {Previous, FPolygons[0][0]};
  if (FPolygonIndex >= int(FPolygons.size()))
    return {{float(FLength), 0}, {float(FLength + 1.0), 0}};
  const auto P = std::size_t(FPolygonIndex), Q = std::size_t(FPointIndex);
  // The point before, across a break into the previous polygon.
  const bool FromPrevious = Q == 0;
  const TPointF A = FromPrevious ? FPolygons[P - 1].back() : FPolygons[P][Q - 1];
  const float D0 = FromPrevious ? FDistances[P - 1].back() : FDistances[P][Q - 1];
  const float D1 = FDistances[P][Q];
  if (FloatEquals(FCharDistance, D1, 0.0001f) || D1 == D0)
    return {A, FPolygons[P][Q]};
  return {A, Between(A, FPolygons[P][Q], (FCharDistance - D0) / (D1 - D0))};
}

void TSVGTextPath::CalculateXYRotate(TVXGPCanvas &Canvas, const TMatrix &)
{
  FX->Clear();
  FY->Clear();
  FRotate.clear();
  FCharDistances.clear();
  TVXPathData Flat;
  Flat.Assign(GetPath());
  Flat.Flatten(0.25f);
  FDistances = Flat.GetDistances();
  if (FDistances.empty())
    return;
  FPolygons = Flat.ToPolygons();
  FLength = Flat.GetLength();
  if (FPolygons.empty() || FPolygons[0].empty())
    return;
  const float Start = FStartOffset->GetValue();
  switch (TSVGGraphicElement::GetTextAlign()) {
  case staCenter:
    FCharDistance = Start - MeasureText(Canvas).cx / 2;
    break;
  case staTrailing:
    FCharDistance = Start - MeasureText(Canvas).cx;
    break;
  default:
    FCharDistance = Start;
    break;
  }
  TSVGFont &Font = GetFont();
  TSVGFont SmallCaps;
  SmallCaps.Assign(&Font);
  SmallCaps.SetSize(Font.GetSize() * 0.66f);
  FPolygonIndex = FPointIndex = 0;
  bool Capitalize = true;
  const QString Text = GetText();
  for (const QChar Ch : Text) {
    const TSVGFontVariant Variant = Font.GetFontVariant();
    const QChar C = VariantChar(Variant, Ch, Capitalize);
    const TSizeF G = GetGlyphSpacing(C, Canvas, IsSmallCap(Variant, Ch) ? SmallCaps : Font);
    FCharDistance += G.cx / 2;
    WalkToCharDistance();
    const auto [A, B] = SegmentAtCharDistance(FSegmentStart);
    FSegmentStart = A;
    FX->Add(new TSVGLength(B.X, false, suNone));
    FY->Add(new TSVGLength(B.Y, false, suNone));
    FCharDistances.push_back(FCharDistance);
    FRotate.push_back(PointAngle(A, B));
    // The distance always advances along x, whatever the writing mode.
    FCharDistance = FCharDistance - G.cx / 2 + NextCharPosition({0, 0}, G, Ch).X;
  }
}

float TSVGTextPath::CalculateXYRotate(TVXGPCanvas &Canvas, const TMatrix &, TSVGTextChunk &Chunk, int Index,
                                      float Offset)
{
  TSVGCharChunk &C = Chunk.Chars[std::size_t(Index)];
  const QChar Ch = Chunk.Text[Index];
  const float Shift = Offset + C.DY;
  // An x on a span inside the path is a distance along it.
  if (C.XSpecified || C.DX != 0) {
    FCharDistance = C.XSpecified ? C.X + C.DX : FCharDistance + C.DX;
    FPolygonIndex = FPointIndex = 0;
  }
  const TSizeF G = GetGlyphSpacing(Ch, Canvas, GetFont());
  FCharDistance += G.cx / 2;
  auto Advance = [&] {
    FCharDistance = FCharDistance - G.cx / 2 + C.Owner->NextCharPosition({0, 0}, G, Ch).X;
    return Shift;
  };
  if (FCharDistance < 0 || FCharDistance > FLength || FPolygons.empty() || FPolygons[0].empty()) {
    C.Clipped = true;
    return Advance();
  }
  WalkToCharDistance();
  if (FPolygonIndex >= int(FPolygons.size()))
    return Shift;
  const bool ShiftsGlyph = !FloatEquals(Shift, 0, 0.0001f);
  if (FPolygonIndex == 0 && FPointIndex == 0) {
    const TPointF A = FPolygons[0][0];
    TPointF B = FPolygons[0].size() > 1 ? FPolygons[0][1] : A;
    // At the very start the shift acts along the path, through the angle only.
    if (ShiftsGlyph)
      B = Towards(A, PointAngle(A, B), Shift);
    C = PlacedChar(A, PointAngle(A, B), false, C.Owner);
    return Advance();
  }
  auto [A, B] = SegmentAtCharDistance(FSegmentStart);
  const float Angle = PointAngle(A, B);
  // dy moves the glyph perpendicular to the path.
  if (ShiftsGlyph)
    B = Towards(B, Angle + 90, Shift);
  C = PlacedChar(B, Angle, false, C.Owner);
  return Advance();
}

// --- copying and XML ---------------------------------------------------------------------------

void TSVGTextPath::Clear()
{
  TSVGCustomTextContentChild::Clear();
  FListener.Stop(*this);
  FReference.clear();
  FStartOffset->Clear();
  FCharDistances.clear();
  FMethod = tpmAlign;
  FSpacing = tpsExact;
}

void TSVGTextPath::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Path = dynamic_cast<const TSVGTextPath *>(Source)) {
    auto *Other = const_cast<TSVGTextPath *>(Path);
    FCharDistances = Path->FCharDistances;
    FStartOffset->Assign(Path->FStartOffset.get());
    FMethod = Path->FMethod;
    FSpacing = Path->FSpacing;
    FLength = Path->FLength;
    SetReference(Path->FReference);
    SetPath(Other->GetPath());
  }
  TSVGCustomTextContentChild::AssignProperties(Source);
}

void TSVGTextPath::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomTextContentChild::DoLoadFromXML(Node);
  FReference = ParseURI(Node, QStringLiteral("href"), QString(), QStringLiteral("xlink"));
  FUpdatePath = true;
  if (TSVGLength *Read = ParsePercent(Node, QStringLiteral("startOffset"), FStartOffset.get(), 0, 1);
      Read != FStartOffset.get()) {
    FStartOffset->Assign(Read);
    delete Read;
  }
  if (const TSVGTextPathMethod Method = GetSVGTextPathMethod(Node.GetAttribute(QStringLiteral("method")));
      Method != tpmNone)
    FMethod = Method;
  if (const TSVGTextPathSpacing Spacing = GetSVGTextPathSpacing(Node.GetAttribute(QStringLiteral("spacing")));
      Spacing != tpsNone)
    FSpacing = Spacing;
}

void TSVGTextPath::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomTextContentChild::DoSaveToXML(Node);
  if (!FReference.isEmpty())
    SaveAttrString(Node, QStringLiteral("xlink:href"), QLatin1Char('#') + FReference, false, true);
  // A percentage is written as a share of 100, as every other length is, so that it reads back the same.
  SaveAttrString(Node, QStringLiteral("startOffset"), FStartOffset->ToString(GetFormatStr(), 0, 100),
                 FStartOffset->Raw() == 0 && IsCompactXML(), true);
  SaveAttrString(Node, QStringLiteral("method"), SVGTextPathMethods[FMethod], false, true);
  SaveAttrString(Node, QStringLiteral("spacing"), SVGTextPathSpacings[FSpacing], false, true);
}

} // namespace vx
