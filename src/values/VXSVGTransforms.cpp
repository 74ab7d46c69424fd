#include "values/VXSVGTransforms.h"

#include "platform/rtl/VXStringList.h"
#include "platform/rtl/VXSysUtils.h"
#include "platform/xml/VXXmlDom.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGException.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGViewBox.h"

#include <cmath>
#include <numbers>

namespace vx {

namespace {

// The arguments of a transform function, read strictly: a bad number raises EConvertError.
std::vector<float> ParseArguments(const QString &S)
{
  const QStringList Tokens = CleanArray(SplitNumbers(Trim(S), SVGListDelimiters));
  std::vector<float> Result;
  Result.reserve(std::size_t(Tokens.size()));
  for (const QString &Token : Tokens)
    Result.push_back(StrToFloat(Token));
  return Result;
}

[[noreturn]] void RaiseArgumentCount(const QString &Kind, const QString &S)
{
  throw ESVGException(Format(SInvalidTransformationMatrix, {Kind, S}));
}

float DegToRad(float Degrees)
{
  return float(double(Degrees) * std::numbers::pi / 180.0);
}

float TanDegrees(float Degrees)
{
  return float(std::tan(double(Degrees) * std::numbers::pi / 180.0));
}

bool IsNameEdge(QChar C)
{
  return C.unicode() <= 32 || C == u',';
}

// The function name in front of "(": blanks, control characters and commas between two functions
// are dropped from both ends.
QString TransformName(const QString &S)
{
  if (!S.isEmpty() && !IsNameEdge(S.front()) && S.back().unicode() > 32)
    return S;
  qsizetype First = 0;
  qsizetype Last = S.size() - 1;
  while (First <= Last && IsNameEdge(S[First]))
    ++First;
  while (Last >= First && IsNameEdge(S[Last]))
    --Last;
  return S.mid(First, Last - First + 1);
}

TMatrix ParseNamedMatrix(const QString &Name, const QString &Arguments)
{
  if (Name == QLatin1String("matrix"))
    return ParseMatrix(Arguments);
  if (Name == QLatin1String("translate"))
    return ParseTranslateMatrix(Arguments);
  if (Name == QLatin1String("scale"))
    return ParseScaleMatrix(Arguments);
  if (Name == QLatin1String("rotate"))
    return ParseRotateMatrix(Arguments);
  if (Name == QLatin1String("skewX"))
    return ParseSkewXMatrix(Arguments);
  if (Name == QLatin1String("skewY"))
    return ParseSkewYMatrix(Arguments);
  throw ESVGException(Format(SInvalidTransform, {Name}));
}

bool IsFiniteMatrix(const TMatrix &M)
{
  for (const float Value : {M.m11, M.m12, M.m13, M.m21, M.m22, M.m23, M.m31, M.m32, M.m33}) {
    if (!std::isfinite(Value))
      return false;
  }
  return true;
}

QString MatrixNumber(float Value)
{
  return FloatToStr(double(Value));
}

} // namespace

// --- transforms ---------------------------------------------------------------------------------

TMatrix ParseMatrix(const QString &S)
{
  const std::vector<float> A = ParseArguments(S);
  if (A.size() != 6)
    throw ESVGException(Format(SInvalidMatrix, {S}));
  TMatrix Result = VXIdentityMatrix;
  Result.m11 = A[0];
  Result.m12 = A[1];
  Result.m21 = A[2];
  Result.m22 = A[3];
  Result.m31 = A[4];
  Result.m32 = A[5];
  return Result;
}

TMatrix ParseTranslateMatrix(const QString &S)
{
  const std::vector<float> A = ParseArguments(S);
  if (A.size() != 1 && A.size() != 2)
    RaiseArgumentCount(QStringLiteral("translate"), S);
  return CreateTranslateVXMatrix(A[0], A.size() == 2 ? A[1] : 0.0f);
}

TMatrix ParseScaleMatrix(const QString &S)
{
  const std::vector<float> A = ParseArguments(S);
  if (A.size() != 1 && A.size() != 2)
    RaiseArgumentCount(QStringLiteral("scale"), S);
  return CreateScaleVXMatrix(A[0], A.size() == 2 ? A[1] : A[0]);
}

TMatrix ParseRotateMatrix(const QString &S)
{
  const std::vector<float> A = ParseArguments(S);
  if (A.size() != 1 && A.size() != 3)
    RaiseArgumentCount(QStringLiteral("rotation"), S);
  const TMatrix Rotation = CreateRotationVXMatrix(DegToRad(A[0]));
  if (A.size() == 1)
    return Rotation;
  // Around (cx, cy): move the centre to the origin, rotate, move back.
  TMatrix Result = CreateTranslateVXMatrix(A[1], A[2]);
  Result = VXMatrixMultiply(Rotation, Result);
  return VXMatrixMultiply(CreateTranslateVXMatrix(-A[1], -A[2]), Result);
}

TMatrix ParseSkewXMatrix(const QString &S)
{
  const std::vector<float> A = ParseArguments(S);
  TMatrix Result = VXIdentityMatrix;
  if (!A.empty())
    Result.m21 = TanDegrees(A[0]);
  return Result;
}

TMatrix ParseSkewYMatrix(const QString &S)
{
  const std::vector<float> A = ParseArguments(S);
  TMatrix Result = VXIdentityMatrix;
  if (!A.empty())
    Result.m12 = TanDegrees(A[0]);
  return Result;
}

TMatrix ParseTransformation(const QString &S)
{
  const QString T = Trim(S);
  TMatrix Result = VXIdentityMatrix;
  int Count = 0;
  // Offsets into T rather than copies of its tail keep long lists linear.
  qsizetype Base = 0;
  qsizetype P = T.indexOf(u'(');
  while (P >= 0) {
    const qsizetype Q = T.indexOf(u')', P);
    if (Q < 0)
      break;
    const TMatrix M = ParseNamedMatrix(TransformName(T.mid(Base, P - Base)), T.mid(P + 1, Q - P - 1));
    // Each further transform is applied after what came before it, read from the right.
    Result = Count == 0 ? M : VXMatrixMultiply(M, Result);
    ++Count;
    Base = Q + 1;
    P = T.indexOf(u'(', Base);
  }
  // A list whose product does not stay finite is dropped, as if it were absent: no drawing can use
  // it, and a save must never write a number that cannot be read again.
  return IsFiniteMatrix(Result) ? Result : VXIdentityMatrix;
}

QString SVGTransformationToString(const TMatrix &M)
{
  // A matrix that is not finite is written as none at all, which reads back as the identity.
  if (!IsFiniteMatrix(M) || VXMatrixEquals(M, VXIdentityMatrix, 0.00001f))
    return QString();
  const bool Linear = M.m13 == 0 && M.m23 == 0 && M.m33 == 1;
  if (Linear && M.m12 == 0 && M.m21 == 0 && M.m31 == 0 && M.m32 == 0)
    return QStringLiteral("scale(%1 %2)").arg(MatrixNumber(M.m11), MatrixNumber(M.m22));
  if (Linear && M.m11 == 1 && M.m22 == 1 && M.m12 == 0 && M.m21 == 0)
    return QStringLiteral("translate(%1 %2)").arg(MatrixNumber(M.m31), MatrixNumber(M.m32));
  return QStringLiteral("matrix(%1 %2 %3 %4 %5 %6)")
      .arg(MatrixNumber(M.m11), MatrixNumber(M.m12), MatrixNumber(M.m21), MatrixNumber(M.m22),
           MatrixNumber(M.m31), MatrixNumber(M.m32));
}

// --- points -------------------------------------------------------------------------------------

TVXPoints ParsePoints(const QString &S)
{
  const QStringList Tokens = CleanArray(SplitNumbers(Trim(S), SVGListDelimiters));
  TVXPoints Result;
  Result.reserve(std::size_t(Tokens.size() / 2));
  for (qsizetype I = 0; I + 1 < Tokens.size(); I += 2)
    Result.push_back(TPointF{StrToFloat(Tokens[I]), StrToFloat(Tokens[I + 1])});
  return Result;
}

TVXPoints ParsePoints(const IXMLNode &Node, const QString &Name)
{
  if (!Node.HasAttribute(Name))
    return {};
  return ParsePoints(Node.GetAttribute(Name));
}

QString SVGPointToString(const TPointF &Point, TSVGUnit aUnit, const QString &Format)
{
  return SVGNumberToString(Point.X, aUnit, Format) + u',' + SVGNumberToString(Point.Y, aUnit, Format);
}

QString SVGPointsToString(const TVXPoints &Points, int High, TSVGUnit aUnit, const QString &Format)
{
  const qsizetype Last = std::min<qsizetype>(High, qsizetype(Points.size()) - 1);
  QString Result;
  for (qsizetype I = 0; I <= Last; ++I) {
    if (I > 0)
      Result += u' ';
    Result += SVGPointToString(Points[std::size_t(I)], aUnit, Format);
  }
  return Result;
}

void TSVGPointList::CheckIndex(int Index, int Limit) const
{
  if (Index < 0 || Index > Limit)
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
}

TPointF TSVGPointList::Items(int Index) const
{
  CheckIndex(Index, Count() - 1);
  return FItems[std::size_t(Index)];
}

void TSVGPointList::SetItems(int Index, const TPointF &Point)
{
  CheckIndex(Index, Count() - 1);
  FItems[std::size_t(Index)] = Point;
}

int TSVGPointList::Add(const TPointF &Point)
{
  FItems.push_back(Point);
  return Count() - 1;
}

void TSVGPointList::Insert(int Index, const TPointF &Point)
{
  CheckIndex(Index, Count());
  FItems.insert(FItems.begin() + Index, Point);
}

void TSVGPointList::Delete(int Index)
{
  CheckIndex(Index, Count() - 1);
  FItems.erase(FItems.begin() + Index);
}

// --- rectangles ---------------------------------------------------------------------------------

TRectF ParseRect(const QString &S, const TSVGUnitFactors &UnitFactors)
{
  const QStringList Tokens = CleanArray(SplitString(Trim(S), SVGListDelimiters));
  if (Tokens.size() != 4)
    return TRectF{};
  float Values[4];
  for (int I = 0; I < 4; ++I) {
    bool IsInherited = false;
    TSVGUnit Unit = suNone;
    Values[I] = ParseLength(Tokens[I], 0.0f, IsInherited, Unit, UnitFactors);
  }
  return TRectF{Values[0], Values[1], Values[0] + Values[2], Values[1] + Values[3]};
}

TSVGViewBox *ParseRect(const QString &S, TSVGViewBox *ViewBox)
{
  const QStringList Tokens = CleanArray(SplitString(Trim(S), SVGListDelimiters));
  if (Tokens.isEmpty()) {
    ViewBox->Clear();
    return ViewBox;
  }
  TSVGLength *const Lengths[4] = {ViewBox->X(), ViewBox->Y(), ViewBox->Width(), ViewBox->Height()};
  // One notification for the whole box, which also marks it as given.
  ViewBox->BeginUpdate();
  for (qsizetype I = 0; I < std::min<qsizetype>(Tokens.size(), 4); ++I)
    ParseLength(Tokens[I], Lengths[I]);
  ViewBox->EndUpdate();
  return ViewBox;
}

QString SVGRectToString(const TRectF &Rect, TSVGUnit aUnit, const QString &Format)
{
  return SVGNumberToString(Rect.Left, aUnit, Format) + u' ' + SVGNumberToString(Rect.Top, aUnit, Format) + u' ' +
         SVGNumberToString(Rect.Width(), aUnit, Format) + u' ' + SVGNumberToString(Rect.Height(), aUnit, Format);
}

TRectF ParseClipRect(const QString &S, const TRectF &Default, bool &IsInherited, const TSVGUnitFactors &UnitFactors)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  if (T.isEmpty() || IsInherited)
    return Default;
  if (T == QLatin1String("auto"))
    return TRectF{};
  if (!StartsText(QStringLiteral("rect("), T) || !T.endsWith(u')'))
    return Default;
  // The offsets stand apart by blanks only, in the order top, right, bottom, left.
  const QStringList Tokens = CleanArray(SplitString(T.mid(5, T.size() - 6), QStringLiteral(" ")));
  float Values[4] = {0, 0, 0, 0};
  for (qsizetype I = 0; I < std::min<qsizetype>(Tokens.size(), 4); ++I) {
    TSVGUnit Unit = suNone;
    Values[I] = ParseLength(Tokens[I], 0.0f, Unit, UnitFactors);
  }
  return TRectF{Values[3], Values[0], Values[1], Values[2]};
}

// --- splitting long lines -----------------------------------------------------------------------

namespace {

// Positions here are 1-based, 0 meaning "not found", as in the search below.
QChar CharAt(const QString &Line, qsizetype Position)
{
  return Position >= 1 && Position <= Line.size() ? Line[Position - 1] : QChar();
}

// The first Sub at or behind Start that does not stand between double quotes counted from Start.
qsizetype FindOutsideQuotes(const QString &Sub, const QString &Line, qsizetype Start)
{
  if (Sub.isEmpty() || Start < 1 || Start > Line.size() - 1)
    return 0;
  bool Quoted = false;
  for (qsizetype I = Start; I + Sub.size() - 1 <= Line.size(); ++I) {
    if (Line[I - 1] == u'"')
      Quoted = !Quoted;
    else if (!Quoted && QStringView(Line).mid(I - 1, Sub.size()) == Sub)
      return I;
  }
  return 0;
}

// Emits the pieces of one line: the first replaces the line, the others are inserted behind it.
class TLineSplitter
{
public:
  TLineSplitter(TStrings &Strings, int &Index, const QString &Line) : FStrings(Strings), FIndex(Index), FLine(Line) {}

  // The text from Start up to, not including, Stop.
  void Emit(qsizetype Start, qsizetype Stop)
  {
    const QString Piece = FLine.mid(Start - 1, Stop - Start);
    if (Start == 1)
      FStrings.Put(FIndex, Piece);
    else
      FStrings.Insert(++FIndex, Piece);
    FCheck += Piece;
  }

  void Verify() const
  {
    if (FCheck != FLine)
      throw EInvalidOperation(QStringLiteral("SVGSplitLines Failed"));
  }

private:
  TStrings &FStrings;
  int &FIndex;
  const QString &FLine;
  QString FCheck;
};

// The position just behind the name of the d attribute of the path that starts at PathStart, or 0.
qsizetype FindPathData(const QString &Line, qsizetype PathStart)
{
  qsizetype D = FindOutsideQuotes(QStringLiteral(" d"), Line, PathStart + 5);
  while (D != 0 && D <= Line.size()) {
    D += 2;
    const QChar C = CharAt(Line, D);
    if (C == u' ' || C == u'=')
      return D;
    D = FindOutsideQuotes(QStringLiteral(" d"), Line, D);
  }
  return 0;
}

void SplitPathLine(TStrings &Strings, int &Index, int MaxLength)
{
  const QString Line = Strings.Get(Index);
  const qsizetype P = FindOutsideQuotes(QStringLiteral("<path "), Line, 1);
  if (P == 0)
    return;
  qsizetype D = FindPathData(Line, P);
  if (D <= 0)
    return;
  TLineSplitter Splitter(Strings, Index, Line);
  qsizetype Start = 1;
  if (D >= MaxLength) {
    Splitter.Emit(Start, D - 1);
    Start = D - 1;
  }
  while (CharAt(Line, D) == u' ')
    ++D;
  if (CharAt(Line, D) == u'=') {
    ++D;
    while (CharAt(Line, D) == u' ')
      ++D;
  }
  if (CharAt(Line, D) == u'"') {
    qsizetype Col = D - Start + 1;
    ++D;
    while (D <= Line.size() && Line[D - 1] != u'"') {
      if (Col >= MaxLength) {
        while (D <= Line.size() && Line[D - 1] != u' ' && Line[D - 1] != u',' && Line[D - 1] != u'"')
          ++D;
        // An unterminated value: what is left goes out whole below.
        if (D > Line.size())
          break;
        // The closing quote takes the last character of the value along, so that no line holds
        // the quote alone.
        if (Line[D - 1] == u'"')
          --D;
        Splitter.Emit(Start, D);
        Col = 0;
        Start = D;
      }
      ++D;
      ++Col;
    }
  }
  Splitter.Emit(Start, Line.size() + 1);
  Splitter.Verify();
}

} // namespace

void SVGSplitLines(TStrings &Strings, int MaxLength)
{
  struct TUpdateGuard
  {
    TStrings &Strings;
    explicit TUpdateGuard(TStrings &S) : Strings(S) { Strings.BeginUpdate(); }
    ~TUpdateGuard() { Strings.EndUpdate(); }
  } Guard(Strings);
  for (int I = 0; I < Strings.Count(); ++I)
    if (Strings.Get(I).size() > MaxLength)
      SplitPathLine(Strings, I, MaxLength);
}

} // namespace vx
