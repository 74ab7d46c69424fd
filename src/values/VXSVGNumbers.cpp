#include "values/VXSVGNumbers.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/xml/VXXmlDom.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLength.h"

#include <cmath>
#include <numbers>

namespace vx {

namespace {

// "Infinity" and "-Infinity" in any case; the plus sign is not accepted.
bool TryInfinity(const QString &T, float &Value)
{
  if (SameText(T, QStringLiteral("Infinity"))) {
    Value = SVGInfinity;
    return true;
  }
  if (SameText(T, QStringLiteral("-Infinity"))) {
    Value = -SVGInfinity;
    return true;
  }
  return false;
}

// The unit named at the end of a trimmed, non-empty length text.
TSVGUnit UnitOfText(const QString &T)
{
  return T.size() >= 2 ? GetSVGUnit(T.right(2)) : suNone;
}

// The number part of a trimmed length text whose unit is aUnit.
QString NumberPart(const QString &T, TSVGUnit aUnit)
{
  return T.left(T.size() - SVGUnitStrings[aUnit].size());
}

// The length text after the unit: the number, "Infinity" when allowed, or Default.
float ParseLengthNumber(const QString &T, float Default, TSVGUnit aUnit, bool AllowInfinity)
{
  const QString N = NumberPart(T, aUnit);
  float Result = Default;
  if (!(AllowInfinity && TryInfinity(N, Result)))
    TryStrToFloat(N, Result);
  return Result;
}

float ApplyFactor(float Value, TSVGUnit aUnit, const TSVGUnitFactors &Factors)
{
  return float(double(Value) * double(Factors[aUnit]));
}

// The share P percent of Min..Max, computed in double precision.
float PercentOfRange(float P, float Min, float Max)
{
  return float(double(Min) + (double(Max) - double(Min)) * double(P) / 100.0);
}

// The percentage step that follows a length parse whose unit came out as percent.
float ApplyPercent(const QString &T, float Pixels, float Default, TSVGUnit aUnit, float Min, float Max)
{
  if (aUnit != suPercent || T.isEmpty())
    return Pixels;
  float P;
  return TryStrToFloat(T.chopped(1), P) ? PercentOfRange(P, Min, Max) : Default;
}

void ApplyPercent(const QString &T, TSVGLength *Length, float Min, float Max)
{
  if (Length->Unit() != suPercent || T.isEmpty())
    return;
  float P;
  if (TryStrToFloat(T.chopped(1), P))
    Length->SetRaw(PercentOfRange(P, Min, Max));
}

} // namespace

float ParseNumber(const QString &S, float Default, bool &IsInherited)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  float Result = Default;
  if (T.isEmpty() || IsInherited)
    return Result;
  if (!TryInfinity(T, Result))
    TryStrToFloat(T, Result);
  return Result;
}

TSVGNumbers ParseNumbers(const QString &S, const TSVGNumbers &Defaults)
{
  const QStringList Tokens = CleanArray(SplitNumbers(S, SVGListDelimiters));
  TSVGNumbers Result(Tokens.size());
  for (qsizetype I = 0; I < Tokens.size(); ++I) {
    bool IsInherited = false;
    const float Default = I < qsizetype(Defaults.size()) ? Defaults[I] : 0.0f;
    Result[I] = ParseNumber(Tokens[I], Default, IsInherited);
  }
  return Result;
}

TSVGNumbers ParseNumbers(const IXMLNode &Node, const QString &Name, const TSVGNumbers &Defaults)
{
  if (!Node.HasAttribute(Name))
    return {};
  return ParseNumbers(Node.GetAttribute(Name), Defaults);
}

QStringList SplitNumbers(const QString &S, const QString &Delimiters)
{
  const QStringList Parts = SplitString(S, Delimiters);
  QStringList Result;
  Result.reserve(Parts.size());
  for (const QString &Part : Parts) {
    qsizetype Sign = -1;
    for (qsizetype I = 1; I < Part.size(); ++I)
      if (Part[I] == u'+' || Part[I] == u'-') {
        Sign = I;
        break;
      }
    // Only the first sign is looked at: after an exponent letter it belongs to the number.
    if (Sign > 0 && Part[Sign - 1] != u'e' && Part[Sign - 1] != u'E') {
      Result.append(Part.left(Sign));
      Result.append(Part.mid(Sign));
    } else
      Result.append(Part);
  }
  return Result;
}

TSVGUnit GetSVGUnit(const QString &S)
{
  if (S.isEmpty())
    return suNone;
  for (int I = suPixels; I < SVGUnitCount; ++I) {
    if (SameText(S, SVGUnitStrings[I]))
      return TSVGUnit(I);
    if (I == suPercent && S.size() > 1 && S[S.size() - 2] == u'%')
      return suPercent;
  }
  return S.back() == u'%' ? suPercent : suNone;
}

float ParseLength(const QString &S, float Default, bool &IsInherited, TSVGUnit &aUnit,
                  const TSVGUnitFactors &Factors)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  if (T.isEmpty() || IsInherited)
    return Default;
  aUnit = UnitOfText(T);
  return ApplyFactor(ParseLengthNumber(T, Default, aUnit, false), aUnit, Factors);
}

float ParseLength(const QString &S, float Default, TSVGUnit &aUnit, const TSVGUnitFactors &Factors)
{
  const QString T = Trim(S);
  if (T.isEmpty())
    return Default;
  aUnit = UnitOfText(T);
  return ApplyFactor(ParseLengthNumber(T, Default, aUnit, true), aUnit, Factors);
}

TSVGLength *ParseLength(const QString &S, TSVGLength *Length)
{
  const QString T = Trim(S);
  if (T.isEmpty())
    return Length;
  const TSVGUnit Unit = UnitOfText(T);
  Length->SetUnit(Unit);
  Length->SetRaw(ParseLengthNumber(T, Length->Raw(), Unit, true));
  Length->SetIsPercent(Unit == suPercent);
  return Length;
}

float ParseLength(const IXMLNode &Node, const QString &Name, float Default, TSVGUnit &aUnit,
                  const TSVGUnitFactors &Factors)
{
  if (!Node.HasAttribute(Name))
    return Default;
  return ParseLength(Node.GetAttribute(Name), Default, aUnit, Factors);
}

float ParseLength(const IXMLNode &Node, const QString &Name, float Default, bool &IsInherited, TSVGUnit &aUnit,
                  const TSVGUnitFactors &Factors)
{
  if (!Node.HasAttribute(Name))
    return Default;
  return ParseLength(Node.GetAttribute(Name), Default, IsInherited, aUnit, Factors);
}

float ParsePercent(const QString &S, float Default, bool &IsInherited, TSVGUnit &aUnit,
                   const TSVGUnitFactors &Factors, float Min, float Max)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  if (T.isEmpty() || IsInherited)
    return Default;
  const float Pixels = ParseLength(T, Default, aUnit, Factors);
  return ApplyPercent(T, Pixels, Default, aUnit, Min, Max);
}

float ParsePercent(const QString &S, float Default, TSVGUnit &aUnit, const TSVGUnitFactors &Factors, float Min,
                   float Max)
{
  const QString T = Trim(S);
  const float Pixels = ParseLength(T, Default, aUnit, Factors);
  return ApplyPercent(T, Pixels, Default, aUnit, Min, Max);
}

float ParsePercent(const QString &S, float Default, TSVGUnit &aUnit, const TSVGUnitFactors &Factors)
{
  return ParsePercent(S, Default, aUnit, Factors, 0.0f, 1.0f);
}

TSVGLength *ParsePercent(const QString &S, TSVGLength *Length, bool &IsInherited, float Min, float Max)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  if (T.isEmpty() || IsInherited)
    return Length;
  return ParsePercent(T, Length, Min, Max);
}

TSVGLength *ParsePercent(const QString &S, TSVGLength *Length, float Min, float Max)
{
  const QString T = Trim(S);
  ParseLength(T, Length);
  ApplyPercent(T, Length, Min, Max);
  return Length;
}

float ParsePercent(const IXMLNode &Node, const QString &Name, float Default, bool &IsInherited, TSVGUnit &aUnit,
                   const TSVGUnitFactors &Factors, float Min, float Max)
{
  if (!Node.HasAttribute(Name))
    return Default;
  return ParsePercent(Node.GetAttribute(Name), Default, IsInherited, aUnit, Factors, Min, Max);
}

float ParsePercent(const IXMLNode &Node, const QString &Name, float Default, TSVGUnit &aUnit,
                   const TSVGUnitFactors &Factors, float Min, float Max)
{
  if (!Node.HasAttribute(Name))
    return Default;
  return ParsePercent(Node.GetAttribute(Name), Default, aUnit, Factors, Min, Max);
}

TSVGLength *ParsePercent(const IXMLNode &Node, const QString &Name, TSVGLength *Length, bool &IsInherited,
                         float Min, float Max)
{
  if (!Node.HasAttribute(Name))
    return Length;
  return ParsePercent(Node.GetAttribute(Name), Length, IsInherited, Min, Max);
}

TSVGLength *ParsePercent(const IXMLNode &Node, const QString &Name, TSVGLength *Length, float Min, float Max)
{
  if (!Node.HasAttribute(Name))
    return Length;
  return ParsePercent(Node.GetAttribute(Name), Length, Min, Max);
}

TSVGLengths *ParseLengths(const QString &S, TSVGLengths *Lengths, float Min, float Max)
{
  const QStringList Tokens = CleanArray(SplitNumbers(S, SVGListDelimiters));
  while (Lengths->Count() > Tokens.size())
    Lengths->Delete(Lengths->Count() - 1);
  for (qsizetype I = 0; I < Tokens.size(); ++I) {
    if (I < Lengths->Count()) {
      ParsePercent(Tokens[I], Lengths->Items(int(I)), Min, Max);
      continue;
    }
    auto Length = std::make_unique<TSVGLength>(0.0f, false, suNone);
    ParsePercent(Tokens[I], Length.get(), Min, Max);
    Lengths->Add(Length.release());
  }
  return Lengths;
}

TSVGLengths *ParseLengths(const IXMLNode &Node, const QString &Name, TSVGLengths *Lengths, float Min, float Max)
{
  if (!Node.HasAttribute(Name))
    return Lengths;
  return ParseLengths(Node.GetAttribute(Name), Lengths, Min, Max);
}

float ParseAngle(const QString &S, float Default, bool &IsAuto)
{
  const QString T = Trim(S);
  if (T.isEmpty())
    return Default;
  IsAuto = T == QLatin1String("auto");
  if (IsAuto)
    return Default;
  const QStringList Tokens = CleanArray(SplitString(T, QStringLiteral(" ")));
  float Angle;
  if (Tokens.isEmpty() || !TryStrToFloat(Tokens[0], Angle))
    return Default;
  if (Tokens.size() > 1 && SameText(Tokens[1], QStringLiteral("rad")))
    return Angle;
  if (Tokens.size() > 1 && SameText(Tokens[1], QStringLiteral("grad")))
    return float(double(Angle) * std::numbers::pi / 200.0);
  return float(double(Angle) * std::numbers::pi / 180.0);
}

float PixelsToSVGUnit(float Pixels, TSVGUnit aUnit, const TSVGUnitFactors &Factors)
{
  switch (aUnit) {
  case suNone:
  case suPixels:
    return Pixels;
  case suPercent:
    return Pixels * 100.0f;
  default:
    return Pixels / Factors[aUnit];
  }
}

QString SVGNumberToString(float Value, TSVGUnit aUnit, const QString &Format)
{
  const QString Text = FormatFloat(Format, double(Value));
  // Pixels are the default unit of SVG, so they are never written out.
  if (aUnit == suNone || aUnit == suPixels)
    return Text;
  return Text + SVGUnitStrings[aUnit];
}

QString SVGNumbersToString(const TSVGNumbers &Numbers, const QString &Format, const QString &Separator)
{
  QString Result;
  for (std::size_t I = 0; I < Numbers.size(); ++I) {
    if (I > 0)
      Result += Separator;
    Result += FormatFloat(Format, double(Numbers[I]));
  }
  return Result;
}

QString SVGLengthToString(float Value, bool IsPercent, TSVGUnit aUnit, const QString &Format, float Min, float Max)
{
  if (IsPercent)
    Value = (Max - Min) * Value + Min;
  return SVGNumberToString(Value, aUnit, Format);
}

QString SVGLengthToString(const TSVGLength &Length, const QString &Format, float Min, float Max)
{
  return SVGNumberToString(Length.GetPercentValue(Min, Max), Length.Unit(), Format);
}

QString SVGLengthsToString(const TSVGLengths &Lengths, const QString &Format, float, float,
                           const QString &Separator)
{
  QString Result;
  for (int I = 0; I < Lengths.Count(); ++I) {
    if (I > 0)
      Result += Separator;
    Result += SVGLengthToString(*Lengths.Items(I), Format, 0.0f, 1.0f);
  }
  return Result;
}

} // namespace vx
