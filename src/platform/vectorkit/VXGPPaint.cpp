#include "platform/vectorkit/VXGPPaint.h"

#include "platform/vectorkit/VXGPBitmap.h"

#include <QLinearGradient>
#include <QRadialGradient>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace vx {

QColor VXToQColor(TVXGPColor Color)
{
  return QColor::fromRgba(Color);
}

QTransform VXToQTransform(const TMatrix &M)
{
  return QTransform(M.m11, M.m12, M.m13, M.m21, M.m22, M.m23, M.m31, M.m32, M.m33);
}

// --- gradient points ---------------------------------------------------------------------------

void TVXGPGradientPoints::Assign(const TPersistent *Source)
{
  if (auto *P = dynamic_cast<const TVXGPGradientPoints *>(Source)) {
    FPoints = P->FPoints;
    Changed();
    return;
  }
  TPersistent::Assign(Source);
}

TVXGPGradientPoint &TVXGPGradientPoints::Add()
{
  FPoints.emplace_back();
  Changed();
  return FPoints.back();
}

TVXGPGradientPoint &TVXGPGradientPoints::Add(float Offset, TVXGPColor Color)
{
  FPoints.push_back({Offset, Color});
  Changed();
  return FPoints.back();
}

void TVXGPGradientPoints::Clear()
{
  if (FPoints.empty())
    return;
  FPoints.clear();
  Changed();
}

TVXGPGradientPoint &TVXGPGradientPoints::GetPoint(int Index)
{
  if (Index < 0 || Index >= GetCount())
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  return FPoints[std::size_t(Index)];
}

const TVXGPGradientPoint &TVXGPGradientPoints::GetPoint(int Index) const
{
  return const_cast<TVXGPGradientPoints *>(this)->GetPoint(Index);
}

void TVXGPGradientPoints::EndUpdate()
{
  if (FUpdateCount > 0 && --FUpdateCount == 0 && FPending)
    Changed();
}

void TVXGPGradientPoints::Changed()
{
  if (FUpdateCount > 0) {
    FPending = true;
    return;
  }
  FPending = false;
  if (OnChange)
    OnChange(this);
}

// --- radial transform --------------------------------------------------------------------------

TVXGPRadialTransform::TVXGPRadialTransform()
{
  const TNotifyEvent Forward = [this](TObject *) {
    if (OnChange)
      OnChange(this);
  };
  FCenter.OnChange = Forward;
  FFocalOffset.OnChange = Forward;
  FScale.OnChange = Forward;
}

void TVXGPRadialTransform::Assign(const TPersistent *Source)
{
  if (auto *R = dynamic_cast<const TVXGPRadialTransform *>(Source)) {
    FCenter.Assign(&R->FCenter);
    FFocalOffset.Assign(&R->FFocalOffset);
    FScale.Assign(&R->FScale);
    return;
  }
  TPersistent::Assign(Source);
}

// --- gradient ----------------------------------------------------------------------------------

TVXGPGradient::TVXGPGradient()
{
  const TNotifyEvent Forward = [this](TObject *) { Changed(); };
  FPoints.OnChange = Forward;
  FStart.OnChange = Forward;
  FEnd.OnChange = Forward;
  FRadialTransform.OnChange = Forward;
}

void TVXGPGradient::Assign(const TPersistent *Source)
{
  if (auto *G = dynamic_cast<const TVXGPGradient *>(Source)) {
    // One change for the whole copy: the parts report to nobody meanwhile.
    const TNotifyEvent Saved = OnChange;
    OnChange = nullptr;
    FStyle = G->FStyle;
    FPoints.Assign(&G->FPoints);
    FStart.Assign(&G->FStart);
    FEnd.Assign(&G->FEnd);
    FRadialTransform.Assign(&G->FRadialTransform);
    FLayout = G->FLayout;
    FTransform = G->FTransform;
    FSpread = G->FSpread;
    FRadius = G->FRadius;
    FFocalRadius = G->FFocalRadius;
    OnChange = Saved;
    Changed();
    return;
  }
  TPersistent::Assign(Source);
}

void TVXGPGradient::SetStyle(TVXGPGradientStyle Value)
{
  if (FStyle == Value)
    return;
  FStyle = Value;
  Changed();
}

void TVXGPGradient::SetLayout(TVXGPGradientLayout Value)
{
  if (FLayout == Value)
    return;
  FLayout = Value;
  Changed();
}

void TVXGPGradient::SetTransform(const TMatrix &Value)
{
  FTransform = Value;
  Changed();
}

void TVXGPGradient::SetSpread(TVXGPGradientSpread Value)
{
  if (FSpread == Value)
    return;
  FSpread = Value;
  Changed();
}

void TVXGPGradient::SetRadius(float Value)
{
  if (FRadius == Value)
    return;
  FRadius = Value;
  Changed();
}

void TVXGPGradient::SetFocalRadius(float Value)
{
  if (FFocalRadius == Value)
    return;
  FFocalRadius = Value;
  Changed();
}

void TVXGPGradient::Changed()
{
  if (OnChange)
    OnChange(this);
}

namespace {

struct TStop
{
  double T;
  TVXGPColor Color;
};

// Stops at distances T along the gradient (linear: the offset; radial: from the focus outward),
// rescaled from [Lo, Hi] to [0, 1]. Positions are kept strictly increasing, because Qt replaces a
// stop at an equal position instead of making a hard step.
QGradientStops ScaledStops(const std::vector<TStop> &Stops, double Lo, double Hi)
{
  QGradientStops Result;
  Result.reserve(qsizetype(Stops.size()));
  const double Span = Hi - Lo;
  double Previous = -1;
  for (const TStop &S : Stops) {
    double P = std::clamp((S.T - Lo) / Span, 0.0, 1.0);
    if (P <= Previous)
      P = std::min(1.0, Previous + 1e-7);
    if (P <= Previous)
      Result.back().second = VXToQColor(S.Color);
    else
      Result.append({P, VXToQColor(S.Color)});
    Previous = P;
  }
  return Result;
}

} // namespace

QBrush TVXGPGradient::CreateQBrush(const TRectF &Bounds) const
{
  const int Count = FPoints.GetCount();
  if (Count == 0)
    return QBrush(Qt::NoBrush);
  const bool Radial = FStyle == gsRadial;
  std::vector<TStop> Stops;
  Stops.reserve(std::size_t(Count));
  for (int I = 0; I < Count; ++I) {
    const TVXGPGradientPoint &P = FPoints.GetPoint(I);
    const double T = Radial ? 1.0 - double(P.Offset) : double(P.Offset);
    Stops.push_back({std::isfinite(T) ? T : 0.0, P.Color});
  }
  std::stable_sort(Stops.begin(), Stops.end(), [](const TStop &A, const TStop &B) { return A.T < B.T; });
  if (Count == 1)
    return QBrush(VXToQColor(Stops.front().Color));

  // Stops beyond the ends stretch the gradient: the line (or radius) grows to reach them.
  const double Lo = Radial ? 0.0 : std::min(0.0, Stops.front().T);
  const double Hi = std::max(1.0, Stops.back().T);
  const double W = Bounds.Width(), H = Bounds.Height();

  if (!Radial) {
    const QPointF P1(Bounds.Left + FStart.X() * W, Bounds.Top + FStart.Y() * H);
    const QPointF P2(Bounds.Left + FEnd.X() * W, Bounds.Top + FEnd.Y() * H);
    const QPointF D = P2 - P1;
    QLinearGradient G(P1 + D * Lo, P1 + D * Hi);
    // SVG blends the colours of stops unpremultiplied; Qt's default blends premultiplied ones.
    G.setInterpolationMode(QGradient::ComponentInterpolation);
    G.setStops(ScaledStops(Stops, Lo, Hi));
    return QBrush(G);
  }

  const QPointF C(Bounds.Left + FRadialTransform.Center().X() * W, Bounds.Top + FRadialTransform.Center().Y() * H);
  const double Rx = std::abs(FRadialTransform.Scale().X() * W / 2);
  const double Ry = std::abs(FRadialTransform.Scale().Y() * H / 2);
  if (!(Rx > 0) || !(Ry > 0) || !std::isfinite(Rx) || !std::isfinite(Ry))
    return QBrush(VXToQColor(Stops.back().Color));
  // Laid out on the unit circle and stretched into the ellipse by the brush transform.
  const QPointF Focal(FRadialTransform.FocalOffset().X() * W / Rx, FRadialTransform.FocalOffset().Y() * H / Ry);
  QRadialGradient G(QPointF(0, 0), Hi, Focal);
  G.setInterpolationMode(QGradient::ComponentInterpolation);
  G.setStops(ScaledStops(Stops, Lo, Hi));
  QBrush Result(G);
  Result.setTransform(QTransform::fromScale(Rx, Ry) * QTransform::fromTranslate(C.x(), C.y()));
  return Result;
}

QBrush TVXGPGradient::CreateQBrush(const TRectF &Bounds, const QTransform &UserToLogical) const
{
  return FLayout == glGradientSpace ? CreateGradientSpaceQBrush(UserToLogical) : CreateQBrush(Bounds);
}

namespace {

QGradient::Spread QtSpread(TVXGPGradientSpread Spread)
{
  switch (Spread) {
  case sdReflect:
    return QGradient::ReflectSpread;
  case sdRepeat:
    return QGradient::RepeatSpread;
  case sdPad:
    break;
  }
  return QGradient::PadSpread;
}

// How much smaller than an equal outer circle the focal one is made.
constexpr double EqualRadiiStep = 0.001;

bool IsFinite(const QPointF &P)
{
  return std::isfinite(P.x()) && std::isfinite(P.y());
}

} // namespace

QBrush TVXGPGradient::CreateGradientSpaceQBrush(const QTransform &UserToLogical) const
{
  const int Count = FPoints.GetCount();
  if (Count == 0)
    return QBrush(Qt::NoBrush);
  std::vector<TStop> Stops;
  Stops.reserve(std::size_t(Count));
  for (int I = 0; I < Count; ++I) {
    const TVXGPGradientPoint &P = FPoints.GetPoint(I);
    Stops.push_back({std::isfinite(P.Offset) ? std::clamp(double(P.Offset), 0.0, 1.0) : 0.0, P.Color});
  }
  std::stable_sort(Stops.begin(), Stops.end(), [](const TStop &A, const TStop &B) { return A.T < B.T; });
  const QBrush Last(VXToQColor(Stops.back().Color));
  const QTransform Placement = VXToQTransform(FTransform) * UserToLogical;
  if (Count == 1 || !Placement.isInvertible())
    return Last;
  std::unique_ptr<QGradient> G;
  if (FStyle == gsLinear) {
    const QPointF P1(FStart.X(), FStart.Y()), P2(FEnd.X(), FEnd.Y());
    if (!IsFinite(P1) || !IsFinite(P2) || P1 == P2)
      return Last;
    G = std::make_unique<QLinearGradient>(P1, P2);
  } else {
    const QPointF C(FRadialTransform.Center().X(), FRadialTransform.Center().Y());
    const QPointF F = C + QPointF(FRadialTransform.FocalOffset().X(), FRadialTransform.FocalOffset().Y());
    if (!IsFinite(C) || !IsFinite(F) || !(FRadius > 0) || !std::isfinite(FRadius) || !std::isfinite(FFocalRadius))
      return Last;
    // The raster engine draws only focal circles smaller than the outer one: an equal one is the
    // limit of a smaller one, a larger one the same gradient run backwards from the other circle.
    const double FocalRadius = std::min(double(std::max(0.0f, FFocalRadius)), FRadius * (1.0 - EqualRadiiStep));
    if (FFocalRadius <= FRadius) {
      G = std::make_unique<QRadialGradient>(C, FRadius, F, FocalRadius);
    } else {
      std::reverse(Stops.begin(), Stops.end());
      for (TStop &S : Stops)
        S.T = 1.0 - S.T;
      G = std::make_unique<QRadialGradient>(F, FFocalRadius, C, FRadius);
    }
  }
  // SVG blends the colours of stops unpremultiplied; Qt's default blends premultiplied ones.
  G->setInterpolationMode(QGradient::ComponentInterpolation);
  G->setSpread(QtSpread(FSpread));
  G->setStops(ScaledStops(Stops, 0.0, 1.0));
  QBrush Result(*G);
  Result.setTransform(Placement);
  return Result;
}

// --- brush -------------------------------------------------------------------------------------

TVXGPBrush::TVXGPBrush(TVXGPCanvas *Canvas, TVXGPBrushKind Kind, TVXGPColor Color)
  : FCanvas(Canvas), FColor(Color), FKind(Kind), FDefaultColor(Color), FDefaultKind(Kind)
{
}

TVXGPBrush::~TVXGPBrush() = default;

TVXGPGradient &TVXGPBrush::GetGradient()
{
  if (!FGradient) {
    FGradient = std::make_unique<TVXGPGradient>();
    FGradient->OnChange = [this](TObject *) { Change(); };
  }
  return *FGradient;
}

const TVXGPGradient &TVXGPBrush::GetGradient() const
{
  static const TVXGPGradient Empty;
  return FGradient ? *FGradient : Empty;
}

void TVXGPBrush::Assign(const TPersistent *Source)
{
  if (auto *B = dynamic_cast<const TVXGPBrush *>(Source)) {
    FColor = B->FColor;
    FKind = B->FKind;
    FDefaultColor = B->FDefaultColor;
    FDefaultKind = B->FDefaultKind;
    if (B->FGradient) {
      TVXGPGradient &Own = GetGradient();
      Own.OnChange = nullptr;
      Own.Assign(B->FGradient.get());
      Own.OnChange = [this](TObject *) { Change(); };
    } else {
      FGradient.reset();
    }
    FBitmap = B->FBitmap;
    FBitmapPlacement = B->FBitmapPlacement;
    FBitmapPlaced = B->FBitmapPlaced;
    FPreparedRect = B->FPreparedRect;
    Change();
    return;
  }
  TPersistent::Assign(Source);
}

void TVXGPBrush::SetColor(TVXGPColor Value)
{
  if (FColor == Value)
    return;
  FColor = Value;
  Change();
}

void TVXGPBrush::SetKind(TVXGPBrushKind Value)
{
  if (FKind == Value)
    return;
  FKind = Value;
  Change();
}

void TVXGPBrush::SetGradient(const TVXGPGradient *Gradient)
{
  if (Gradient && Gradient != FGradient.get())
    GetGradient().Assign(Gradient);
}

void TVXGPBrush::SetBitmap(std::shared_ptr<TVXGPBitmap> Bitmap)
{
  if (FBitmap == Bitmap)
    return;
  FBitmap = std::move(Bitmap);
  Change();
}

void TVXGPBrush::SetBitmapPlacement(const TMatrix &PixelsToUser)
{
  FBitmapPlacement = PixelsToUser;
  FBitmapPlaced = true;
  Change();
}

QBrush TVXGPBrush::CreateQBrush(const QTransform &UserToLogical) const
{
  if (FKind == bkGradient)
    return GetGradient().CreateQBrush(FPreparedRect, UserToLogical);
  if (FKind != bkBitmap || !FBitmapPlaced)
    return CreateQBrush();
  const QTransform Placement = VXToQTransform(FBitmapPlacement) * UserToLogical;
  if (!FBitmap || FBitmap->IsEmpty() || !Placement.isInvertible())
    return QBrush(Qt::NoBrush);
  QBrush Result(FBitmap->Image());
  Result.setTransform(Placement);
  return Result;
}

QBrush TVXGPBrush::CreateQBrush() const
{
  switch (FKind) {
  case bkSolid:
    return QBrush(VXToQColor(FColor));
  case bkGradient:
    return GetGradient().CreateQBrush(FPreparedRect);
  case bkBitmap:
    if (FBitmap && !FBitmap->IsEmpty())
      return QBrush(FBitmap->Image());
    return QBrush(Qt::NoBrush);
  case bkNone:
    break;
  }
  return QBrush(Qt::NoBrush);
}

void TVXGPBrush::Change()
{
  if (OnChange)
    OnChange(this);
}

// --- pen ---------------------------------------------------------------------------------------

namespace {

// The stock patterns, in units of the pen width.
std::vector<float> StockDashes(TVXGPDashStyle Style)
{
  switch (Style) {
  case dsDash:
    return {3, 1};
  case dsDot:
    return {1, 1};
  case dsDashDot:
    return {3, 1, 1, 1};
  case dsDashDotDot:
    return {3, 1, 1, 1, 1, 1};
  case dsSolid:
  case dsCustom:
    break;
  }
  return {};
}

Qt::PenCapStyle QtCap(TVXGPLineCap Cap)
{
  switch (Cap) {
  case lcSquare:
  case lcSquareAnchor:
  case lcDiamondAnchor:
  case lcArrowAnchor:
    return Qt::SquareCap;
  case lcRound:
  case lcRoundAnchor:
  case lcTriangle:
    return Qt::RoundCap;
  case lcFlat:
  case lcNoAnchor:
    break;
  }
  return Qt::FlatCap;
}

Qt::PenJoinStyle QtJoin(TVXGPLineJoin Join)
{
  switch (Join) {
  case ljBevel:
    return Qt::BevelJoin;
  case ljRound:
    return Qt::RoundJoin;
  case ljMiterClipped:
    return Qt::MiterJoin;
  case ljMiter:
    break;
  }
  // Beyond the limit a miter becomes a bevel, as in SVG.
  return Qt::SvgMiterJoin;
}

} // namespace

TVXGPPen::TVXGPPen(TVXGPCanvas *Canvas, TVXGPBrushKind Kind, TVXGPColor Color)
  : FCanvas(Canvas), FColor(Color), FKind(Kind), FDefaultColor(Color), FDefaultKind(Kind),
    FBrush(std::make_unique<TVXGPBrush>(Canvas, bkSolid, Color))
{
  FBrush->OnChange = [this](TObject *) { Change(); };
}

TVXGPPen::~TVXGPPen() = default;

void TVXGPPen::Assign(const TPersistent *Source)
{
  if (auto *P = dynamic_cast<const TVXGPPen *>(Source)) {
    FColor = P->FColor;
    FKind = P->FKind;
    FDefaultColor = P->FDefaultColor;
    FDefaultKind = P->FDefaultKind;
    FThickness = P->FThickness;
    FStartCap = P->FStartCap;
    FEndCap = P->FEndCap;
    FDashCap = P->FDashCap;
    FJoin = P->FJoin;
    FMiterLimit = P->FMiterLimit;
    FDash = P->FDash;
    FDashArray = P->FDashArray;
    FDashOffset = P->FDashOffset;
    FBrush->OnChange = nullptr;
    FBrush->Assign(P->FBrush.get());
    FBrush->OnChange = [this](TObject *) { Change(); };
    Change();
    return;
  }
  TPersistent::Assign(Source);
}

void TVXGPPen::SetColor(TVXGPColor Value)
{
  if (FColor == Value)
    return;
  FColor = Value;
  Change();
}

void TVXGPPen::SetKind(TVXGPBrushKind Value)
{
  if (FKind == Value)
    return;
  FKind = Value;
  Change();
}

void TVXGPPen::SetThickness(float Value)
{
  if (FThickness == Value)
    return;
  FThickness = Value;
  Change();
}

void TVXGPPen::SetStartCap(TVXGPLineCap Value)
{
  if (FStartCap == Value)
    return;
  FStartCap = Value;
  Change();
}

void TVXGPPen::SetEndCap(TVXGPLineCap Value)
{
  if (FEndCap == Value)
    return;
  FEndCap = Value;
  Change();
}

void TVXGPPen::SetDashCap(TVXGPLineCap Value)
{
  if (FDashCap == Value)
    return;
  FDashCap = Value;
  Change();
}

void TVXGPPen::SetJoin(TVXGPLineJoin Value)
{
  if (FJoin == Value)
    return;
  FJoin = Value;
  Change();
}

void TVXGPPen::SetMiterLimit(float Value)
{
  if (FMiterLimit == Value)
    return;
  FMiterLimit = Value;
  Change();
}

void TVXGPPen::SetDash(TVXGPDashStyle Value)
{
  if (FDash == Value)
    return;
  FDash = Value;
  if (Value != dsCustom)
    FDashArray = StockDashes(Value);
  Change();
}

void TVXGPPen::SetDashOffset(float Value)
{
  if (FDashOffset == Value)
    return;
  FDashOffset = Value;
  Change();
}

void TVXGPPen::SetCustomDash(const std::vector<float> &Dashes, int High, float Offset)
{
  const int Last = std::min(High, int(Dashes.size()) - 1);
  if (Last < 0) {
    FDash = dsSolid;
    FDashArray.clear();
  } else {
    FDash = dsCustom;
    FDashArray.assign(Dashes.begin(), Dashes.begin() + Last + 1);
  }
  FDashOffset = Offset;
  Change();
}

QPen TVXGPPen::CreateQPen(const TRectF &Bounds, const QTransform &UserToLogical) const
{
  const bool Placed = (FKind == bkGradient && FBrush->GetGradient().GetLayout() == glGradientSpace) ||
                      (FKind == bkBitmap && FBrush->HasBitmapPlacement());
  if (!Placed)
    return CreateQPen(Bounds);
  QPen Result = CreateQOutlinePen();
  TVXGPBrush Paint;
  Paint.Assign(FBrush.get());
  Paint.SetKind(FKind);
  const QBrush Brush = Paint.CreateQBrush(UserToLogical);
  if (Brush.style() == Qt::NoBrush)
    return QPen(Qt::NoPen);
  Result.setBrush(Brush);
  return Result;
}

QPen TVXGPPen::CreateQPen(const TRectF &Bounds) const
{
  QPen Result = CreateQOutlinePen();
  switch (FKind) {
  case bkNone:
    return QPen(Qt::NoPen);
  case bkSolid:
    Result.setBrush(VXToQColor(FColor));
    break;
  case bkGradient:
    Result.setBrush(FBrush->GetGradient().CreateQBrush(Bounds));
    break;
  case bkBitmap:
    if (!FBrush->GetBitmap() || FBrush->GetBitmap()->IsEmpty())
      return QPen(Qt::NoPen);
    Result.setBrush(QBrush(FBrush->GetBitmap()->Image()));
    break;
  }
  return Result;
}

QPen TVXGPPen::CreateQOutlinePen() const
{
  QPen Result(QBrush(Qt::black), std::isfinite(FThickness) ? std::max(0.0f, FThickness) : 0.0f);
  Result.setCapStyle(QtCap(FDash == dsSolid ? FStartCap : FDashCap));
  Result.setJoinStyle(QtJoin(FJoin));
  Result.setMiterLimit(FMiterLimit);
  if (FDash != dsSolid && !FDashArray.empty()) {
    QList<qreal> Pattern;
    double Sum = 0;
    // Qt strokes a dash of no length without its caps; SVG draws them, a dot for each. A dash a
    // thousandth of the pen wide shows its caps and nothing else.
    const double Shortest = Result.capStyle() == Qt::FlatCap ? 0.0 : 1e-3;
    for (std::size_t I = 0; I < FDashArray.size(); ++I) {
      const float V = FDashArray[I];
      double D = std::isfinite(V) ? std::max(0.0f, V) : 0.0;
      if (I % 2 == 0)
        D = std::max(D, Shortest);
      Pattern.append(D);
      Sum += D;
    }
    // Qt wants dash and gap pairs: an odd list is repeated, as SVG does.
    if (Pattern.size() % 2 != 0)
      Pattern.append(Pattern);
    if (Sum > 0) {
      Result.setDashPattern(Pattern);
      Result.setDashOffset(std::isfinite(FDashOffset) ? FDashOffset : 0.0);
    }
  }
  return Result;
}

void VXLimitDashes(QPen &Pen, const QPainterPath &Path)
{
  if (Pen.style() != Qt::CustomDashLine)
    return;
  const QList<qreal> Pattern = Pen.dashPattern();
  double Period = 0;
  for (qreal D : Pattern)
    Period += D;
  Period *= Pen.widthF() > 0 ? Pen.widthF() : 1.0;
  // What costs is the number of dashes drawn, the repeats of the pattern times its entries: a long
  // pattern repeated a few times costs as much as a short one repeated often.
  constexpr double MaxDashes = 200000;
  const double MaxPeriods = MaxDashes / double(std::max<qsizetype>(Pattern.size(), 1));
  const QRectF B = Path.controlPointRect();
  // The control polygon bounds the length from above; measure only when that bound is too long.
  const double Bound = double(Path.elementCount()) * (B.width() + B.height());
  if (Period > 0 && Bound / Period <= MaxPeriods)
    return;
  if (Period > 0 && Path.length() / Period <= MaxPeriods)
    return;
  Pen.setStyle(Qt::SolidLine);
}

void TVXGPPen::Change()
{
  if (OnChange)
    OnChange(this);
}

} // namespace vx
