#include "values/VXSVGPropertyParsers.h"

#include "platform/rtl/VXStringList.h"
#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGLookups.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPaint.h"

#include <QStringList>

#include <algorithm>

namespace vx {

namespace {

// The inheriting family: the look-up of the trimmed text unless it is blank or inherited.
template <typename E>
E ParseInheritedKeyword(const QString &S, E Default, bool &IsInherited, E (*Lookup)(const QString &))
{
  const QString T = ApplyInheritRule(S, IsInherited);
  return T.isEmpty() || IsInherited ? Default : Lookup(T);
}

// The family without inheritance; KeepDefault puts the default back for an unknown word.
template <typename E>
E ParseKeyword(const QString &S, E Default, E (*Lookup)(const QString &), bool KeepDefault)
{
  const QString T = Trim(S);
  if (T.isEmpty())
    return Default;
  const E Result = Lookup(T);
  return KeepDefault && Result == E(0) ? Default : Result;
}

// The text a special member reads, or empty when the default (or the inherited value) stands.
QString ReadableText(const QString &S, bool &IsInherited)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  return IsInherited ? QString() : T;
}

TSVGStylePropertyAutoLength &ParseAutoLength(const QString &S, TSVGStylePropertyAutoLength &Length,
                                             const QString &Keyword)
{
  const QString T = Trim(S);
  Length.SetParentValue(T == QLatin1String("inherit") || (Length.IsParentValue() && T.isEmpty()));
  if (T.isEmpty() || Length.IsParentValue())
    return Length;
  Length.SetAutomatic(T == Keyword);
  if (!Length.IsAutomatic())
    ParseLength(T, &Length);
  return Length;
}

void SetMember(TSVGStyleProperties &Set, TSVGStyleProperty Property, bool Member)
{
  if (Member)
    Set.Include(Property);
  else
    Set.Exclude(Property);
}

bool IsDoubleQuoted(const QString &S)
{
  return S.size() >= 2 && S.front() == QLatin1Char('"') && S.back() == QLatin1Char('"');
}

} // namespace

// --- keywords ---------------------------------------------------------------------------------------

TSVGAlignmentBaseline ParseAlignmentBaseline(const QString &S, TSVGAlignmentBaseline Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGAlignmentBaseline);
}

TSVGDominantBaseline ParseDominantBaseline(const QString &S, TSVGDominantBaseline Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGDominantBaseline);
}

TSVGColorInterpolation ParseColorInterpolation(const QString &S, TSVGColorInterpolation Default,
                                               bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGColorInterpolation);
}

TSVGColorRendering ParseColorRendering(const QString &S, TSVGColorRendering Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGColorRendering);
}

TSVGShapeRendering ParseShapeRendering(const QString &S, TSVGShapeRendering Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGShapeRendering);
}

TSVGTextRendering ParseTextRendering(const QString &S, TSVGTextRendering Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGTextRendering);
}

TSVGDirection ParseDirection(const QString &S, TSVGDirection Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGDirection);
}

TSVGGlyphOrientationHorizontal ParseGlyphOrientationHorizontal(const QString &S,
                                                               TSVGGlyphOrientationHorizontal Default,
                                                               bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGGlyphOrientationHorizontal);
}

TSVGGlyphOrientationVertical ParseGlyphOrientationVertical(const QString &S, TSVGGlyphOrientationVertical Default,
                                                           bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGGlyphOrientationVertical);
}

TSVGWritingMode ParseWritingMode(const QString &S, TSVGWritingMode Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGWritingMode);
}

TSVGFillRule ParseFillRule(const QString &S, TSVGFillRule Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGFillRule);
}

TSVGVectorEffect ParseVectorEffect(const QString &S, TSVGVectorEffect Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGVectorEffect);
}

TSVGFontVariant ParseFontVariant(const QString &S, TSVGFontVariant Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGFontVariant);
}

TSVGFontWeight ParseFontWeight(const QString &S, TSVGFontWeight Default, bool &IsInherited)
{
  return ParseInheritedKeyword(S, Default, IsInherited, &GetSVGFontWeight);
}

TSVGTextPathMethod ParseTextPathMethod(const QString &S, TSVGTextPathMethod Default)
{
  return ParseKeyword(S, Default, &GetSVGTextPathMethod, false);
}

TSVGTextPathSpacing ParseTextPathSpacing(const QString &S, TSVGTextPathSpacing Default)
{
  return ParseKeyword(S, Default, &GetSVGTextPathSpacing, false);
}

TSVGMarkerUnit ParseMarkerUnit(const QString &S, TSVGMarkerUnit Default)
{
  return ParseKeyword(S, Default, &GetSVGMarkerUnit, true);
}

TSVGCoordinateSystemUnit ParseCoordinateSystemUnit(const QString &S, TSVGCoordinateSystemUnit Default)
{
  return ParseKeyword(S, Default, &GetSVGGradientUnit, true);
}

TSVGGradientSpread ParseGradientSpread(const QString &S, TSVGGradientSpread Default)
{
  return ParseKeyword(S, Default, &GetSVGGradientSpread, true);
}

// --- special members --------------------------------------------------------------------------------

bool ParseVisible(const QString &S, bool Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  return T.isEmpty() ? Default : T == QLatin1String("visible");
}

bool ParseDisplay(const QString &S, bool Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  return T.isEmpty() ? Default : T != QLatin1String("none");
}

bool ParseOverflow(const QString &S, bool Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  return T.isEmpty() ? Default : T == QLatin1String("visible") || T == QLatin1String("auto");
}

TCursor ParseCursor(const QString &S, TCursor Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Default;
  QString Word = T;
  // url("...") lists end in the keyword to fall back to.
  if (StartsText(QStringLiteral("url(\""), T)) {
    const QStringList Items = CleanArray(T.split(QLatin1Char(',')));
    Word = Items.isEmpty() ? QString() : Items.back();
  }
  return SVGCursorMapping[GetSVGCursor(Word)];
}

TVXGPLineCap ParseLineCap(const QString &S, TVXGPLineCap Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Default;
  if (T == QLatin1String("round"))
    return lcRound;
  return T == QLatin1String("square") ? lcSquare : lcFlat;
}

TVXGPLineJoin ParseLineJoin(const QString &S, TVXGPLineJoin Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Default;
  if (T == QLatin1String("bevel"))
    return ljBevel;
  return T == QLatin1String("round") ? ljRound : ljMiter;
}

float ParseMiterLimit(const QString &S, float Default, bool &IsInherited)
{
  // "inherit" fails as a number, so the inherited case falls back to the default by itself.
  const QString T = ApplyInheritRule(S, IsInherited);
  float Result = Default;
  if (!T.isEmpty())
    TryStrToFloat(T, Result);
  return Result;
}

TSVGTextAlign ParseTextAnchor(const QString &S, TSVGTextAlign Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Default;
  switch (GetSVGTextAnchor(T)) {
  case taMiddle: return staCenter;
  case taEnd: return staTrailing;
  default: return staLeading;
  }
}

TVXGPFontStyles ParseFontStyle(const QString &S, TVXGPFontStyles Default, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Default;
  TVXGPFontStyles Result = Default;
  const TSVGFontStyle Style = GetSVGFontStyle(T);
  if (Style == sfsItalic || Style == sfsOblique)
    Result.Include(fsItalic);
  else
    Result.Exclude(fsItalic);
  return Result;
}

void ParseTextDecoration(const QString &S, TSVGFont &Font, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return;
  TVXGPFontStyles Style = Font.GetStyle();
  Style.Exclude(fsUnderline);
  Style.Exclude(fsStrikeOut);
  TExtendedFontStyles Extended;
  switch (GetSVGTextDecoration(T)) {
  case tdUnderline:
    Style.Include(fsUnderline);
    break;
  case tdOverline:
    Extended.Include(fsOverline);
    break;
  case tdLineThrough:
    Style.Include(fsStrikeOut);
    break;
  case tdBlink:
    // Blink is not drawn; it keeps the underline it has always come with.
    Style.Include(fsUnderline);
    Extended.Include(fsBlink);
    break;
  case tdNone:
    break;
  }
  Font.SetStyle(Style);
  Font.SetExtendStyles(Extended);
}

TStrings &ParseFontFamily(const QString &S, TStrings &Families, bool &IsInherited)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Families;
  Families.BeginUpdate();
  try {
    Families.SetDelimiter(QLatin1Char(','));
    Families.SetStrictDelimiter(true);
    Families.SetDelimitedText(T);
    // The list unquotes only an item that starts with its quote; one behind a blank still has its
    // quotes after trimming, and an empty item names no family.
    for (int I = Families.Count() - 1; I >= 0; --I) {
      QString Family = Trim(Families.Get(I));
      if (IsDoubleQuoted(Family))
        Family = Trim(Family.mid(1, Family.size() - 2));
      if (Family.isEmpty())
        Families.Delete(I);
      else
        Families.Put(I, Family);
    }
  } catch (...) {
    Families.EndUpdate();
    throw;
  }
  Families.EndUpdate();
  return Families;
}

float ParseFontSize(const QString &S, float Default, float ParentSize, bool &IsInherited,
                    const TSVGUnitFactors &Factors)
{
  const QString T = ReadableText(S, IsInherited);
  if (T.isEmpty())
    return Default;
  const TSVGUnit Unit = T.size() >= 2 ? GetSVGUnit(T.right(2)) : suNone;
  const QString W = T.chopped(std::min(T.size(), SVGUnitStrings[Unit].size()));
  double Result = Default;
  const TSVGFontAbsSize Size = GetSVGFontAbsSize(W);
  if (!W.isEmpty() && Size != fabNone)
    Result = SVGFontSizes[Size];
  else if (W == QLatin1String("larger"))
    Result = double(ParentSize) * 1.2;
  else if (W == QLatin1String("smaller"))
    Result = double(ParentSize) / 1.2;
  else {
    float Number = 0;
    if (TryStrToFloat(W, Number))
      Result = Number;
  }
  return float(Result * (Unit == suFontSize ? double(ParentSize) : double(Factors[Unit])));
}

TSVGStylePropertyAutoLength &ParseKerning(const QString &S, TSVGStylePropertyAutoLength &Length,
                                          const TSVGUnitFactors &)
{
  return ParseAutoLength(S, Length, QStringLiteral("auto"));
}

TSVGStylePropertyAutoLength &ParseSpacing(const QString &S, TSVGStylePropertyAutoLength &Length,
                                          const TSVGUnitFactors &)
{
  return ParseAutoLength(S, Length, QStringLiteral("normal"));
}

TSVGBaselineShiftLength &ParseBaselineShift(const QString &S, TSVGBaselineShiftLength &Length)
{
  const QString T = Trim(S);
  Length.SetParentValue(T == QLatin1String("inherit") || (Length.IsParentValue() && T.isEmpty()));
  if (T.isEmpty() || Length.IsParentValue())
    return Length;
  Length.SetShift(GetSVGBaselineShift(T));
  const TSVGBaselineShift Shift = Length.GetShift();
  if (Shift == bsNone || Shift == bsPercentage || Shift == bsLength) {
    ParsePercent(T, &Length, 0, 1);
    Length.SetShift(Length.IsPercent() ? bsPercentage : bsLength);
  }
  return Length;
}

// --- dashes -----------------------------------------------------------------------------------------

std::vector<float> ParseDashes(const QString &S, std::vector<bool> &IsPercent, TSVGUnits &Units,
                               const TSVGUnitFactors &Factors, float Min, float Max)
{
  const QStringList Tokens = CleanArray(SplitNumbers(S, SVGListDelimiters));
  const std::size_t Count = std::size_t(Tokens.size());
  std::vector<float> Result(Count);
  Units.assign(Count, suNone);
  IsPercent.assign(Count, false);
  for (std::size_t I = 0; I < Count; ++I) {
    Result[I] = ParsePercent(Tokens[qsizetype(I)], 0, Units[I], Factors, Min, Max);
    IsPercent[I] = Units[I] == suPercent;
  }
  // SVG repeats an odd list to make it even; only the pattern is doubled.
  if (Count % 2 == 1)
    Result.insert(Result.end(), Result.begin(), Result.end());
  return Result;
}

namespace {

// Whether Dashes make a pattern under Rule; otherwise the line stays solid.
bool DrawsDashes(const std::vector<float> &Dashes, TSVGDashRule Rule)
{
  double Sum = 0;
  for (float Dash : Dashes) {
    if (Rule == drPositiveEntries ? !(Dash > 0) : !(Dash >= 0))
      return false;
    Sum += Dash;
  }
  return Sum > 0;
}

} // namespace

void ParseDashArray(const QString &DashArray, const QString &DashOffset, TSVGPen &Pen, TSVGStyleProperties &Inherits,
                    const TSVGUnitFactors &Factors, TSVGDashRule Rule)
{
  bool Flag = Inherits.Contains(ipStrokeDashOffset);
  ParsePercent(DashOffset, Pen.GetSVGDashOffset(), Flag, 0, 1);
  SetMember(Inherits, ipStrokeDashOffset, Flag);

  const QString T = Trim(DashArray);
  Flag = T == QLatin1String("inherit") || (Inherits.Contains(ipStrokeDasharray) && T.isEmpty());
  SetMember(Inherits, ipStrokeDasharray, Flag);
  if (T.isEmpty() || Flag)
    return;
  Pen.SetDash(dsSolid);
  if (T == QLatin1String("none"))
    return;
  std::vector<bool> IsPercent;
  TSVGUnits Units;
  const std::vector<float> Dashes = ParseDashes(T, IsPercent, Units, Factors, 0, 1);
  if (Dashes.empty())
    return;
  if (!DrawsDashes(Dashes, Rule))
    return;
  Pen.SetCustomDash(Dashes, int(Dashes.size()) - 1, Pen.GetSVGDashOffset()->GetValue());
  Pen.SetDashArrayPreferredUnits(Units);
  Pen.SetDashArrayIsPercent(IsPercent);
}

QString SVGStrokeCapToString(TVXGPLineCap Cap)
{
  switch (Cap) {
  case lcFlat: case lcNoAnchor: return QStringLiteral("butt");
  case lcSquare: case lcSquareAnchor: return QStringLiteral("square");
  default: return QStringLiteral("round");
  }
}

QString SVGStrokeJoinToString(TVXGPLineJoin Join)
{
  switch (Join) {
  case ljMiter: case ljMiterClipped: return QStringLiteral("miter");
  case ljBevel: return QStringLiteral("bevel");
  case ljRound: return QStringLiteral("round");
  }
  return QString();
}

} // namespace vx
