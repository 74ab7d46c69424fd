#include "values/VXSVGCSSValues.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGColors.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace vx {

namespace {

std::uint8_t ClampToByte(double Value)
{
  return std::uint8_t(std::lround(std::clamp(Value, 0.0, 255.0)));
}

// A number, or a percentage that Percent scales to the range of the component.
bool TryComponent(const QString &Text, double Percent, double &Value)
{
  const QString T = Trim(Text);
  const bool IsPercent = T.endsWith(u'%');
  if (!TryStrToFloat(IsPercent ? T.chopped(1) : T, Value) || !std::isfinite(Value))
    return false;
  if (IsPercent)
    Value = Value * Percent / 100.0;
  return true;
}

// The components between the brackets of a function: split at commas, or else at blanks with an
// alpha behind a slash.
QStringList FunctionComponents(const QString &Inner)
{
  if (Inner.contains(u','))
    return Inner.split(u',');
  const QStringList Halves = Inner.split(u'/');
  QString Blanks = Halves[0];
  for (QChar &C : Blanks)
    if (C.unicode() <= 32)
      C = u' ';
  QStringList Components = Blanks.split(u' ', Qt::SkipEmptyParts);
  if (Halves.size() > 1)
    Components.append(Halves.mid(1).join(u'/'));
  return Components;
}

bool IsPercentage(const QString &Component)
{
  return Trim(Component).endsWith(u'%');
}

// The alpha of a colour function: a plain number, 1 when left out.
bool TryAlpha(const QStringList &Components, double &Alpha)
{
  Alpha = 1;
  if (Components.size() == 3)
    return true;
  return Components.size() == 4 && !IsPercentage(Components[3]) && TryComponent(Components[3], 1.0, Alpha);
}

// Red, green and blue are all numbers or all percentages; a mix is no colour.
bool TryRGBFunction(const QStringList &Components, TVXGPColor &Color)
{
  std::array<double, 3> RGB{};
  double Alpha = 1;
  if ((Components.size() != 3 && Components.size() != 4) || !TryAlpha(Components, Alpha))
    return false;
  const bool Percentages = IsPercentage(Components[0]);
  for (std::size_t I = 0; I < 3; ++I)
    if (IsPercentage(Components[qsizetype(I)]) != Percentages || !TryComponent(Components[qsizetype(I)], 255.0, RGB[I]))
      return false;
  Color = VXMakeColor(ClampToByte(Alpha * 255.0), ClampToByte(RGB[0]), ClampToByte(RGB[1]), ClampToByte(RGB[2]));
  return true;
}

double HueToChannel(double P, double Q, double T)
{
  if (T < 0)
    T += 1;
  if (T > 1)
    T -= 1;
  if (T < 1.0 / 6)
    return P + (Q - P) * 6 * T;
  if (T < 0.5)
    return Q;
  if (T < 2.0 / 3)
    return P + (Q - P) * (2.0 / 3 - T) * 6;
  return P;
}

bool TryHSLFunction(const QStringList &Components, TVXGPColor &Color)
{
  double Hue = 0, Saturation = 0, Lightness = 0, Alpha = 1;
  if ((Components.size() != 3 && Components.size() != 4) || !TryAlpha(Components, Alpha))
    return false;
  // The hue is an angle, saturation and lightness are percentages.
  if (IsPercentage(Components[0]) || !IsPercentage(Components[1]) || !IsPercentage(Components[2]))
    return false;
  QString HueText = Trim(Components[0]);
  if (HueText.endsWith(QLatin1String("deg")))
    HueText.chop(3);
  if (!TryComponent(HueText, 1.0, Hue) || !TryComponent(Components[1], 1.0, Saturation) ||
      !TryComponent(Components[2], 1.0, Lightness))
    return false;
  Hue = std::fmod(std::fmod(Hue, 360.0) + 360.0, 360.0) / 360.0;
  Saturation = std::clamp(Saturation, 0.0, 1.0);
  Lightness = std::clamp(Lightness, 0.0, 1.0);
  const double Q = Lightness < 0.5 ? Lightness * (1 + Saturation) : Lightness + Saturation - Lightness * Saturation;
  const double P = 2 * Lightness - Q;
  Color = VXMakeColor(ClampToByte(Alpha * 255.0), ClampToByte(HueToChannel(P, Q, Hue + 1.0 / 3) * 255.0),
                      ClampToByte(HueToChannel(P, Q, Hue) * 255.0),
                      ClampToByte(HueToChannel(P, Q, Hue - 1.0 / 3) * 255.0));
  return true;
}

bool TryHexColor(const QString &Digits, TVXGPColor &Color)
{
  const qsizetype N = Digits.size();
  if (N != 3 && N != 4 && N != 6 && N != 8)
    return false;
  bool Ok = false;
  const std::uint32_t Value = Digits.toUInt(&Ok, 16);
  if (!Ok)
    return false;
  if (N <= 4) {
    // Each digit of the short forms stands for itself twice: "f" is "ff".
    std::array<std::uint32_t, 4> Channels{};
    for (qsizetype I = 0; I < N; ++I)
      Channels[std::size_t(I)] = ((Value >> (4 * (N - 1 - I))) & 0xF) * 0x11;
    Color = VXMakeColor(std::uint8_t(N == 4 ? Channels[3] : 255), std::uint8_t(Channels[0]), std::uint8_t(Channels[1]),
                        std::uint8_t(Channels[2]));
  } else {
    Color = N == 8 ? ((Value & 0xFF) << 24) | (Value >> 8) : 0xFF000000u | Value;
  }
  return true;
}

// The name of a function call "name(...)" in lower case, with its inner text; false for other text.
bool SplitFunction(const QString &T, QString &Name, QString &Inner)
{
  const qsizetype Open = T.indexOf(u'(');
  if (Open <= 0 || !T.endsWith(u')'))
    return false;
  Name = Trim(T.left(Open)).toLower();
  Inner = T.mid(Open + 1, T.size() - Open - 2);
  return true;
}

bool TryKeyword(const QString &T, TSVGCSSPaint &Paint)
{
  if (T == QLatin1String("none"))
    Paint.Keyword = pkNone;
  else if (T == QLatin1String("currentColor"))
    Paint.Keyword = pkCurrentColor;
  else if (T == QLatin1String("context-fill"))
    Paint.Keyword = pkContextFill;
  else if (T == QLatin1String("context-stroke"))
    Paint.Keyword = pkContextStroke;
  else if (TryParseCSSColor(T, Paint.Color))
    Paint.Keyword = pkColor;
  else
    return false;
  return true;
}

} // namespace

bool TryParseCSSColor(const QString &S, TVXGPColor &Color)
{
  const QString T = Trim(S);
  if (T.startsWith(u'#'))
    return TryHexColor(T.mid(1), Color);
  QString Name, Inner;
  if (SplitFunction(T, Name, Inner)) {
    if (Name == QLatin1String("rgb") || Name == QLatin1String("rgba"))
      return TryRGBFunction(FunctionComponents(Inner), Color);
    if (Name == QLatin1String("hsl") || Name == QLatin1String("hsla"))
      return TryHSLFunction(FunctionComponents(Inner), Color);
    return false;
  }
  if (T.compare(QLatin1String("transparent"), Qt::CaseInsensitive) == 0) {
    Color = 0;
    return true;
  }
  return SVGColorNameToColor(T, Color);
}

bool TryParseCSSOpacity(const QString &S, float &Opacity)
{
  double Value = 0;
  if (!TryComponent(S, 1.0, Value))
    return false;
  Opacity = float(std::clamp(Value, 0.0, 1.0));
  return true;
}

bool TryParseCSSPaint(const QString &S, TSVGCSSPaint &Paint)
{
  const QString T = Trim(S);
  Paint = TSVGCSSPaint{};
  if (!StartsText(QStringLiteral("url("), T))
    return TryKeyword(T, Paint);
  const qsizetype Close = T.indexOf(u')');
  if (Close < 0)
    return false;
  QString Target = Trim(T.mid(4, Close - 4));
  if (Target.size() >= 2 && (Target.front() == u'"' || Target.front() == u'\'') && Target.back() == Target.front())
    Target = Target.mid(1, Target.size() - 2);
  Paint.HasReference = true;
  if (Target.startsWith(u'#'))
    Paint.URI = Target.mid(1);
  const QString Fallback = Trim(T.mid(Close + 1));
  if (Fallback.isEmpty())
    return true;
  return TryKeyword(Fallback, Paint) && Paint.Keyword != pkContextFill && Paint.Keyword != pkContextStroke;
}

QString CSSTransformToSVG(const QString &S)
{
  static const QRegularExpression Units(QStringLiteral("([0-9.])(deg|px)"));
  return QString(S).replace(Units, QStringLiteral("\\1"));
}

namespace {

// One value of transform-origin along an axis of Size: a keyword, a percentage or pixels.
bool TryOriginValue(const QString &Token, float Size, float &Value)
{
  static const std::array<std::pair<const char *, float>, 5> Keywords = {{
      {"left", 0.0f}, {"top", 0.0f}, {"center", 0.5f}, {"right", 1.0f}, {"bottom", 1.0f},
  }};
  for (const auto &[Name, Fraction] : Keywords)
    if (Token == QLatin1String(Name)) {
      Value = Fraction * Size;
      return true;
    }
  double Number = 0;
  if (!TryComponent(Token.endsWith(QLatin1String("px")) ? Token.chopped(2) : Token, Size, Number))
    return false;
  Value = float(Number);
  return true;
}

} // namespace

bool TryParseTransformOrigin(const QString &S, float Width, float Height, float &X, float &Y)
{
  const QStringList Tokens = Trim(S).split(u' ', Qt::SkipEmptyParts);
  if (Tokens.isEmpty() || Tokens.size() > 3)
    return false;
  const QString Center = QStringLiteral("center");
  const QString Second = Tokens.size() > 1 ? Tokens[1] : Center;
  // A vertical keyword first, or a horizontal one second, names the axes the other way round.
  const bool Swapped = Tokens[0] == QLatin1String("top") || Tokens[0] == QLatin1String("bottom") ||
                       Second == QLatin1String("left") || Second == QLatin1String("right");
  return TryOriginValue(Swapped ? Second : Tokens[0], Width, X) && TryOriginValue(Swapped ? Tokens[0] : Second, Height, Y);
}

} // namespace vx
