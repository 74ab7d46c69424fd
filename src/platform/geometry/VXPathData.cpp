#include "platform/geometry/VXPathData.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/rtl/VXSysUtils.h"

namespace vx {

namespace {

// A cursor over path-data text; numbers are read in place, without temporary strings.
class TPathScanner
{
public:
  explicit TPathScanner(const QString &Text) : FText(Text.constData()), FEnd(FText + Text.size()) {}

  void SkipSeparators()
  {
    while (FText < FEnd && (FText->unicode() <= 32 || *FText == u','))
      ++FText;
  }
  bool AtEnd() { SkipSeparators(); return FText >= FEnd; }
  QChar Peek() const { return *FText; }
  void Next() { ++FText; }
  bool AtNumber()
  {
    SkipSeparators();
    if (FText >= FEnd)
      return false;
    const char16_t C = FText->unicode();
    return (C >= u'0' && C <= u'9') || C == u'-' || C == u'+' || C == u'.';
  }

  bool ReadNumber(double &Value)
  {
    SkipSeparators();
    const QChar *P = FText;
    double Sign = 1;
    if (P < FEnd && (*P == u'-' || *P == u'+'))
      Sign = *P++ == u'-' ? -1 : 1;
    double Mantissa = 0;
    int Digits = 0, Scale = 0;
    while (P < FEnd && P->unicode() >= u'0' && P->unicode() <= u'9')
      Mantissa = Mantissa * 10 + (P++->unicode() - u'0'), ++Digits;
    if (P < FEnd && *P == u'.')
      for (++P; P < FEnd && P->unicode() >= u'0' && P->unicode() <= u'9'; ++Digits, --Scale)
        Mantissa = Mantissa * 10 + (P++->unicode() - u'0');
    if (Digits == 0)
      return false;
    if (P < FEnd && (*P == u'e' || *P == u'E')) {
      const QChar *E = P + 1;
      int ExpSign = 1, Exp = 0;
      if (E < FEnd && (*E == u'-' || *E == u'+'))
        ExpSign = *E++ == u'-' ? -1 : 1;
      if (E < FEnd && E->unicode() >= u'0' && E->unicode() <= u'9') {
        while (E < FEnd && E->unicode() >= u'0' && E->unicode() <= u'9')
          Exp = std::min(Exp * 10 + (E++->unicode() - u'0'), 100000);
        Scale += ExpSign * Exp;
        P = E;
      }
    }
    Value = Sign * Mantissa * std::pow(10.0, Scale);
    FText = P;
    return std::isfinite(Value);
  }

  // Arc flags are single characters and need no separator after them ("0110").
  bool ReadFlag(bool &Flag)
  {
    SkipSeparators();
    if (FText >= FEnd || (*FText != u'0' && *FText != u'1'))
      return false;
    Flag = *FText++ == u'1';
    return true;
  }

private:
  const QChar *FText;
  const QChar *FEnd;
};

TPointF Pt(double X, double Y) { return {float(X), float(Y)}; }

double Dist(const TPointF &A, const TPointF &B) { return std::hypot(double(B.X) - A.X, double(B.Y) - A.Y); }

TPointF CubicAt(const TPointF &P0, const TPointF &P1, const TPointF &P2, const TPointF &P3, double T)
{
  const double U = 1 - T;
  const double A = U * U * U, B = 3 * U * U * T, C = 3 * U * T * T, D = T * T * T;
  return Pt(A * P0.X + B * P1.X + C * P2.X + D * P3.X, A * P0.Y + B * P1.Y + C * P2.Y + D * P3.Y);
}

// Number of line segments that keeps a cubic within Tolerance, from the size of its second differences.
int CubicSegments(const TPointF &P0, const TPointF &P1, const TPointF &P2, const TPointF &P3, double Tolerance)
{
  const double DX = std::max(std::abs(P0.X - 2.0 * P1.X + P2.X), std::abs(P1.X - 2.0 * P2.X + P3.X));
  const double DY = std::max(std::abs(P0.Y - 2.0 * P1.Y + P2.Y), std::abs(P1.Y - 2.0 * P2.Y + P3.Y));
  const double D = std::hypot(DX, DY);
  const double N = std::ceil(std::sqrt(0.75 * D / std::max(Tolerance, 1e-4)));
  return int(std::clamp(N, 1.0, 1000.0));
}

} // namespace

TVXPathData::TVXPathData(const TVXPathData &Source)
    : FPoints(Source.FPoints), FFormatStr(Source.FFormatStr), FFillMode(Source.FFillMode)
{
}

TVXPathData &TVXPathData::operator=(const TVXPathData &Source)
{
  Assign(Source);
  return *this;
}

void TVXPathData::Assign(const TVXPathData &Source)
{
  if (&Source == this)
    return;
  FPoints = Source.FPoints;
  FFormatStr = Source.FFormatStr;
  FFillMode = Source.FFillMode;
  Changed();
}

void TVXPathData::Clear()
{
  FPoints.clear();
  Changed();
}

void TVXPathData::BeginUpdate() { ++FUpdateCount; }

void TVXPathData::EndUpdate()
{
  if (FUpdateCount > 0 && --FUpdateCount == 0 && FChanged)
    Changed();
}

void TVXPathData::Changed()
{
  if (FUpdateCount > 0) {
    FChanged = true;
    return;
  }
  FChanged = false;
  if (OnChange)
    OnChange(this);
}

void TVXPathData::MoveTo(const TPointF &P) { Add(ppMove, P); Changed(); }
void TVXPathData::LineTo(const TPointF &P) { Add(ppLine, P); Changed(); }

void TVXPathData::CurveTo(const TPointF &C1, const TPointF &C2, const TPointF &P)
{
  Add(ppCubic, C1);
  Add(ppCubic, C2);
  Add(ppCubic, P);
  Changed();
}

void TVXPathData::ClosePath()
{
  // The closing point repeats the start of the figure so that lengths and polygons close by themselves.
  for (auto It = FPoints.rbegin(); It != FPoints.rend(); ++It)
    if (It->Kind == ppMove) {
      Add(ppClose, It->Point);
      Changed();
      return;
    }
}

namespace {

// Appends the cubic points of an elliptical arc from P0 to P1 with SVG's endpoint parameters.
void ArcToCubics(std::vector<TVXPathPoint> &Out, const TPointF &P0, double Rx, double Ry, double AngleDeg,
                 bool LargeArc, bool Sweep, const TPointF &P1)
{
  if (P0 == P1)
    return;
  Rx = std::abs(Rx);
  Ry = std::abs(Ry);
  if (Rx == 0 || Ry == 0) {
    Out.push_back({ppLine, P1});
    return;
  }
  const double Phi = AngleDeg * std::numbers::pi / 180.0;
  const double CosPhi = std::cos(Phi), SinPhi = std::sin(Phi);
  const double DX = (double(P0.X) - P1.X) / 2, DY = (double(P0.Y) - P1.Y) / 2;
  const double X1 = CosPhi * DX + SinPhi * DY, Y1 = -SinPhi * DX + CosPhi * DY;
  const double Lambda = (X1 * X1) / (Rx * Rx) + (Y1 * Y1) / (Ry * Ry);
  if (Lambda > 1) {
    Rx *= std::sqrt(Lambda);
    Ry *= std::sqrt(Lambda);
  }
  const double Num = Rx * Rx * Ry * Ry - Rx * Rx * Y1 * Y1 - Ry * Ry * X1 * X1;
  const double Den = Rx * Rx * Y1 * Y1 + Ry * Ry * X1 * X1;
  double Coef = Den > 0 ? std::sqrt(std::max(0.0, Num / Den)) : 0;
  if (LargeArc == Sweep)
    Coef = -Coef;
  const double CX1 = Coef * Rx * Y1 / Ry, CY1 = -Coef * Ry * X1 / Rx;
  const double CX = CosPhi * CX1 - SinPhi * CY1 + (double(P0.X) + P1.X) / 2;
  const double CY = SinPhi * CX1 + CosPhi * CY1 + (double(P0.Y) + P1.Y) / 2;
  const double Theta1 = std::atan2((Y1 - CY1) / Ry, (X1 - CX1) / Rx);
  double Delta = std::atan2((-Y1 - CY1) / Ry, (-X1 - CX1) / Rx) - Theta1;
  if (Sweep && Delta < 0)
    Delta += 2 * std::numbers::pi;
  else if (!Sweep && Delta > 0)
    Delta -= 2 * std::numbers::pi;
  const int Segments = std::max(1, int(std::ceil(std::abs(Delta) / (std::numbers::pi / 2) - 1e-9)));
  const double Step = Delta / Segments;
  const double K = 4.0 / 3.0 * std::tan(Step / 4);
  auto Map = [&](double Ux, double Uy) {
    return Pt(CX + Rx * Ux * CosPhi - Ry * Uy * SinPhi, CY + Rx * Ux * SinPhi + Ry * Uy * CosPhi);
  };
  double T = Theta1;
  for (int I = 0; I < Segments; ++I) {
    const double C0 = std::cos(T), S0 = std::sin(T), C1 = std::cos(T + Step), S1 = std::sin(T + Step);
    Out.push_back({ppCubic, Map(C0 - K * S0, S0 + K * C0)});
    Out.push_back({ppCubic, Map(C1 + K * S1, S1 - K * C1)});
    Out.push_back({ppCubic, I == Segments - 1 ? P1 : Map(C1, S1)});
    T += Step;
  }
}

} // namespace

void TVXPathData::SetPathString(const QString &Text)
{
  FPoints.clear();
  FPoints.reserve(std::size_t(Text.size() / 3));
  TPathScanner S(Text);
  TPointF Cur, Start, LastCtrl;
  QChar Prev;     // previous command letter, to reflect control points of S and T
  QChar Cmd;
  bool HasFigure = false;
  bool Closed = false;
  double V[7];
  auto Read = [&](int N, int First = 0) {
    for (int I = First; I < First + N; ++I)
      if (!S.ReadNumber(V[I]))
        return false;
    return true;
  };
  while (!S.AtEnd()) {
    if (!S.AtNumber()) {
      Cmd = S.Peek();
      S.Next();
    } else if (Cmd.isNull() || Cmd == u'z' || Cmd == u'Z')
      break;  // numbers with no command before them
    const char16_t C = Cmd.toUpper().unicode();
    const bool Rel = Cmd.isLower();
    const double BX = Rel ? Cur.X : 0, BY = Rel ? Cur.Y : 0;
    if (C != u'M' && !HasFigure && C != u'Z')
      break;  // a path must start with a move
    if (Closed && C != u'M' && C != u'Z') {
      FPoints.push_back({ppMove, Start});  // drawing on after a close starts a new figure there
      Closed = false;
    }
    bool Ok = true;
    switch (C) {
    case u'M':
      if ((Ok = Read(2))) {
        Cur = Start = Pt(BX + V[0], BY + V[1]);
        FPoints.push_back({ppMove, Cur});
        HasFigure = true;
        Closed = false;
        Cmd = Rel ? QChar(u'l') : QChar(u'L');  // further pairs are lines
      }
      break;
    case u'L':
      if ((Ok = Read(2)))
        FPoints.push_back({ppLine, Cur = Pt(BX + V[0], BY + V[1])});
      break;
    case u'H':
      if ((Ok = Read(1)))
        FPoints.push_back({ppLine, Cur = Pt(BX + V[0], Cur.Y)});
      break;
    case u'V':
      if ((Ok = Read(1)))
        FPoints.push_back({ppLine, Cur = Pt(Cur.X, BY + V[0])});
      break;
    case u'C':
    case u'S': {
      const int N = C == u'C' ? 6 : 4;
      if (!(Ok = Read(N)))
        break;
      TPointF C1 = Cur;
      const char16_t P = Prev.toUpper().unicode();
      if (C == u'S' && (P == u'C' || P == u'S'))
        C1 = Pt(2.0 * Cur.X - LastCtrl.X, 2.0 * Cur.Y - LastCtrl.Y);
      else if (C == u'C')
        C1 = Pt(BX + V[0], BY + V[1]);
      const int O = N - 4;
      LastCtrl = Pt(BX + V[O], BY + V[O + 1]);
      Cur = Pt(BX + V[O + 2], BY + V[O + 3]);
      FPoints.push_back({ppCubic, C1});
      FPoints.push_back({ppCubic, LastCtrl});
      FPoints.push_back({ppCubic, Cur});
      break;
    }
    case u'Q':
    case u'T': {
      const int N = C == u'Q' ? 4 : 2;
      if (!(Ok = Read(N)))
        break;
      const char16_t P = Prev.toUpper().unicode();
      TPointF Q = Cur;
      if (C == u'Q')
        Q = Pt(BX + V[0], BY + V[1]);
      else if (P == u'Q' || P == u'T')
        Q = Pt(2.0 * Cur.X - LastCtrl.X, 2.0 * Cur.Y - LastCtrl.Y);
      const TPointF End = Pt(BX + V[N - 2], BY + V[N - 1]);
      FPoints.push_back({ppCubic, Pt(Cur.X + 2.0 / 3 * (Q.X - Cur.X), Cur.Y + 2.0 / 3 * (Q.Y - Cur.Y))});
      FPoints.push_back({ppCubic, Pt(End.X + 2.0 / 3 * (Q.X - End.X), End.Y + 2.0 / 3 * (Q.Y - End.Y))});
      FPoints.push_back({ppCubic, End});
      LastCtrl = Q;
      Cur = End;
      break;
    }
    case u'A': {
      bool Large = false, Sweep = false;
      if (!(Ok = Read(3) && S.ReadFlag(Large) && S.ReadFlag(Sweep) && Read(2, 3)))
        break;
      const TPointF End = Pt(BX + V[3], BY + V[4]);
      ArcToCubics(FPoints, Cur, V[0], V[1], V[2], Large, Sweep, End);
      Cur = End;
      break;
    }
    case u'Z':
      if (HasFigure) {
        if (!Closed)
          FPoints.push_back({ppClose, Start});
        Cur = Start;
        Closed = true;
      }
      break;
    default:
      Ok = false;
    }
    if (!Ok)
      break;
    Prev = Cmd;
  }
  Changed();
}

QString TVXPathData::GetPathString() const
{
  QString Result;
  Result.reserve(int(FPoints.size()) * 12);
  auto AddNumber = [&](float Value) {
    if (!Result.isEmpty() && !Result.back().isLetter())
      Result += u' ';
    Result += FormatFloat(FFormatStr, Value);
  };
  auto AddPoint = [&](const TPointF &P) {
    AddNumber(P.X);
    AddNumber(P.Y);
  };
  for (std::size_t I = 0; I < FPoints.size(); ++I) {
    const TVXPathPoint &P = FPoints[I];
    switch (P.Kind) {
    case ppMove:
      Result += u'M';
      AddPoint(P.Point);
      break;
    case ppLine:
      Result += u'L';
      AddPoint(P.Point);
      break;
    case ppCubic:
      Result += u'C';
      for (std::size_t J = I; J < std::min(I + 3, FPoints.size()); ++J)
        AddPoint(FPoints[J].Point);
      I += 2;
      break;
    case ppClose:
      Result += u'Z';
      break;
    }
  }
  return Result;
}

void TVXPathData::AddRectangle(const TRectF &R)
{
  BeginUpdate();
  MoveTo({R.Left, R.Top});
  LineTo({R.Right, R.Top});
  LineTo({R.Right, R.Bottom});
  LineTo({R.Left, R.Bottom});
  ClosePath();
  EndUpdate();
}

void TVXPathData::AddRectangle(const TRectF &R, float Rx, float Ry, int /*Corners*/, int /*CornerType*/)
{
  if (Rx <= 0 || Ry <= 0) {
    AddRectangle(R);
    return;
  }
  Rx = std::min(Rx, std::abs(R.Width()) / 2);
  Ry = std::min(Ry, std::abs(R.Height()) / 2);
  // Control points at this fraction of a radius make a quarter ellipse.
  const float K = 1 - 0.5522847498f;
  const float L = R.Left, T = R.Top, Ri = R.Right, B = R.Bottom;
  BeginUpdate();
  MoveTo({L + Rx, T});
  LineTo({Ri - Rx, T});
  CurveTo({Ri - Rx * K, T}, {Ri, T + Ry * K}, {Ri, T + Ry});
  LineTo({Ri, B - Ry});
  CurveTo({Ri, B - Ry * K}, {Ri - Rx * K, B}, {Ri - Rx, B});
  LineTo({L + Rx, B});
  CurveTo({L + Rx * K, B}, {L, B - Ry * K}, {L, B - Ry});
  LineTo({L, T + Ry});
  CurveTo({L, T + Ry * K}, {L + Rx * K, T}, {L + Rx, T});
  ClosePath();
  EndUpdate();
}

void TVXPathData::AddEllipse(const TRectF &R)
{
  const float K = 0.5522847498f;
  const float CX = (R.Left + R.Right) / 2, CY = (R.Top + R.Bottom) / 2;
  const float RX = R.Width() / 2, RY = R.Height() / 2;
  BeginUpdate();
  MoveTo({R.Right, CY});
  CurveTo({R.Right, CY + RY * K}, {CX + RX * K, R.Bottom}, {CX, R.Bottom});
  CurveTo({CX - RX * K, R.Bottom}, {R.Left, CY + RY * K}, {R.Left, CY});
  CurveTo({R.Left, CY - RY * K}, {CX - RX * K, R.Top}, {CX, R.Top});
  CurveTo({CX + RX * K, R.Top}, {R.Right, CY - RY * K}, {R.Right, CY});
  ClosePath();
  EndUpdate();
}

void TVXPathData::ApplyMatrix(const TMatrix &M)
{
  for (TVXPathPoint &P : FPoints)
    P.Point = VXMatrixTransformPoint(P.Point, M);
  Changed();
}

TRectF TVXPathData::GetBounds() const
{
  if (FPoints.empty())
    return {};
  TRectF R{FPoints[0].Point.X, FPoints[0].Point.Y, FPoints[0].Point.X, FPoints[0].Point.Y};
  for (const TVXPathPoint &P : FPoints) {
    R.Left = std::min(R.Left, P.Point.X);
    R.Top = std::min(R.Top, P.Point.Y);
    R.Right = std::max(R.Right, P.Point.X);
    R.Bottom = std::max(R.Bottom, P.Point.Y);
  }
  return R;
}

namespace {

// Walks the path as polygons: curves become line segments within Tolerance. Visit(point, kind) sees
// kinds move, line and close only.
template <class TVisit>
void WalkFlat(const std::vector<TVXPathPoint> &Points, double Tolerance, TVisit Visit)
{
  TPointF Cur;
  for (std::size_t I = 0; I < Points.size(); ++I) {
    const TVXPathPoint &P = Points[I];
    if (P.Kind == ppCubic) {
      if (I + 2 >= Points.size())
        break;  // a curve cut short is not drawn
      const TPointF &C1 = P.Point, &C2 = Points[I + 1].Point, &End = Points[I + 2].Point;
      const int N = CubicSegments(Cur, C1, C2, End, Tolerance);
      for (int J = 1; J < N; ++J)
        Visit(CubicAt(Cur, C1, C2, End, double(J) / N), ppLine);
      Visit(End, ppLine);
      Cur = End;
      I += 2;
      continue;
    }
    Visit(P.Point, I == 0 ? ppMove : P.Kind);
    Cur = P.Point;
  }
}

} // namespace

double TVXPathData::GetLength() const
{
  double Length = 0;
  TPointF Last;
  WalkFlat(FPoints, 0.001, [&](const TPointF &P, TVXPathPointKind Kind) {
    const bool NewFigure = Kind == ppMove;
    if (!NewFigure)
      Length += Dist(Last, P);
    Last = P;
  });
  return Length;
}

void TVXPathData::Flatten(float Tolerance)
{
  std::vector<TVXPathPoint> Flat;
  Flat.reserve(FPoints.size() * 2);
  WalkFlat(FPoints, Tolerance, [&](const TPointF &P, TVXPathPointKind Kind) { Flat.push_back({Kind, P}); });
  FPoints = std::move(Flat);
  Changed();
}

TVXPolygons TVXPathData::ToPolygons() const
{
  TVXPolygons Result;
  WalkFlat(FPoints, 0.25, [&](const TPointF &P, TVXPathPointKind Kind) {
    const bool NewFigure = Kind == ppMove;
    if (NewFigure || Result.empty())
      Result.emplace_back();
    Result.back().push_back(P);
  });
  return Result;
}

TVXPathData::TDistances TVXPathData::GetDistances() const
{
  TDistances Result;
  double Total = 0;
  TPointF Last;
  WalkFlat(FPoints, 0.25, [&](const TPointF &P, TVXPathPointKind Kind) {
    const bool NewFigure = Kind == ppMove;
    if (NewFigure || Result.empty())
      Result.emplace_back();
    else
      Total += Dist(Last, P);
    Result.back().push_back(float(Total));
    Last = P;
  });
  return Result;
}

} // namespace vx
