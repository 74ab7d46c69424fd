#include "platform/rtl/VXSysUtils.h"

#include "platform/rtl/VXExceptions.h"

#include <charconv>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <string>

namespace vx {

namespace {

bool IsBlank(QChar C) { return C.unicode() <= 32; }
bool IsDigit(char C) { return C >= '0' && C <= '9'; }

// Copies the number part of S into Out as ASCII, checking the grammar on the way. Leading '+' is
// dropped because from_chars does not take it.
bool ExtractNumber(const QString &S, std::string &Out, bool AllowFraction)
{
  qsizetype Begin = 0, End = S.size();
  while (Begin < End && IsBlank(S[Begin]))
    ++Begin;
  while (End > Begin && IsBlank(S[End - 1]))
    --End;
  Out.clear();
  qsizetype I = Begin;
  auto Peek = [&]() -> char {
    if (I >= End)
      return '\0';
    const char16_t U = S[I].unicode();
    return U < 128 ? char(U) : '\x7f';
  };
  if (Peek() == '+' || Peek() == '-') {
    if (Peek() == '-')
      Out.push_back('-');
    ++I;
  }
  int Digits = 0;
  while (IsDigit(Peek())) {
    Out.push_back(Peek());
    ++I;
    ++Digits;
  }
  if (AllowFraction && Peek() == '.') {
    Out.push_back('.');
    ++I;
    while (IsDigit(Peek())) {
      Out.push_back(Peek());
      ++I;
      ++Digits;
    }
  }
  if (Digits == 0)
    return false;
  if (AllowFraction && (Peek() == 'e' || Peek() == 'E')) {
    Out.push_back('e');
    ++I;
    if (Peek() == '+' || Peek() == '-') {
      Out.push_back(Peek());
      ++I;
    }
    int ExponentDigits = 0;
    while (IsDigit(Peek())) {
      Out.push_back(Peek());
      ++I;
      ++ExponentDigits;
    }
    if (ExponentDigits == 0)
      return false;
  }
  return I == End;
}

bool ParseDouble(const QString &S, double &Value)
{
  std::string Text;
  if (!ExtractNumber(S, Text, true))
    return false;
  double Parsed = 0;
  const auto [Ptr, Error] = std::from_chars(Text.data(), Text.data() + Text.size(), Parsed);
  if (Error == std::errc::result_out_of_range) {
    // Underflow reads as zero; overflow fails.
    const bool NegativeExponent = Text.find("e-") != std::string::npos;
    if (!NegativeExponent)
      return false;
    Parsed = 0;
  } else if (Error != std::errc() || Ptr != Text.data() + Text.size()) {
    return false;
  }
  Value = Parsed;
  return true;
}

} // namespace

bool TryStrToFloat(const QString &S, double &Value)
{
  double Parsed;
  if (!ParseDouble(S, Parsed))
    return false;
  Value = Parsed;
  return true;
}

bool TryStrToFloat(const QString &S, float &Value)
{
  double Parsed;
  if (!ParseDouble(S, Parsed) || std::fabs(Parsed) > double(FLT_MAX))
    return false;
  Value = float(Parsed);
  return true;
}

float StrToFloat(const QString &S)
{
  float Value = 0;
  if (!TryStrToFloat(S, Value))
    throw EConvertError(QStringLiteral("'%1' is not a valid floating point value").arg(S));
  return Value;
}

bool TryStrToInt(const QString &S, int &Value)
{
  std::string Text;
  if (!ExtractNumber(S, Text, false))
    return false;
  int Parsed = 0;
  const auto [Ptr, Error] = std::from_chars(Text.data(), Text.data() + Text.size(), Parsed);
  if (Error != std::errc() || Ptr != Text.data() + Text.size())
    return false;
  Value = Parsed;
  return true;
}

int StrToInt(const QString &S)
{
  int Value = 0;
  if (!TryStrToInt(S, Value))
    throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(S));
  return Value;
}

int StrToIntDef(const QString &S, int Default)
{
  int Value = Default;
  return TryStrToInt(S, Value) ? Value : Default;
}

QString IntToStr(long long Value)
{
  return QString::number(Value);
}

QString FormatFloat(const QString &Pattern, double Value)
{
  if (std::isnan(Value))
    return QStringLiteral("NAN");
  if (std::isinf(Value))
    return Value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
  const qsizetype Point = Pattern.indexOf(QLatin1Char('.'));
  int Required = 0, Optional = 0;
  if (Point >= 0) {
    for (qsizetype I = Point + 1; I < Pattern.size(); ++I) {
      if (Pattern[I] == QLatin1Char('0'))
        ++Required;
      else if (Pattern[I] == QLatin1Char('#'))
        ++Optional;
    }
  }
  const int Places = Required + Optional;
  // Round half away from zero on the decimal text, as a person reading the number would.
  char Buffer[64];
  const double Scale = std::pow(10.0, Places);
  double Rounded = std::round(Value * Scale) / Scale;
  if (std::fabs(Value * Scale) > 1e17)
    Rounded = Value;
  std::snprintf(Buffer, sizeof Buffer, "%.*f", Places, Rounded);
  std::string Text(Buffer);
  if (Places > 0) {
    std::size_t Keep = Text.size();
    const std::size_t MinKeep = Text.find('.') + 1 + Required;
    while (Keep > MinKeep && Text[Keep - 1] == '0')
      --Keep;
    if (Keep > 0 && Text[Keep - 1] == '.')
      --Keep;
    Text.resize(Keep);
  }
  if (Text == "-0" || (Text.size() > 1 && Text[0] == '-' && Text.find_first_not_of("-0.") == std::string::npos))
    Text.erase(0, 1);
  return QString::fromLatin1(Text.c_str());
}

QString FloatToStr(double Value)
{
  if (std::isnan(Value))
    return QStringLiteral("NAN");
  if (std::isinf(Value))
    return Value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
  if (Value == 0)
    return QStringLiteral("0");
  char Buffer[64];
  std::snprintf(Buffer, sizeof Buffer, "%.14e", Value);
  // Buffer: [-]d.ddddddddddddddde[+-]xx
  std::string Text(Buffer);
  const std::size_t EPos = Text.find('e');
  const int Exponent = std::stoi(Text.substr(EPos + 1));
  const bool Negative = Text[0] == '-';
  std::string Digits;
  for (std::size_t I = Negative ? 1 : 0; I < EPos; ++I)
    if (IsDigit(Text[I]))
      Digits.push_back(Text[I]);
  while (Digits.size() > 1 && Digits.back() == '0')
    Digits.pop_back();
  std::string Result = Negative ? "-" : "";
  if (Exponent >= 15 || Exponent < -5) {
    Result += Digits[0];
    if (Digits.size() > 1)
      Result.append(".").append(Digits, 1);
    Result.append("E").append(std::to_string(Exponent));
  } else if (Exponent < 0) {
    Result.append("0.").append(std::size_t(-Exponent - 1), '0').append(Digits);
  } else {
    const std::size_t IntDigits = std::size_t(Exponent) + 1;
    if (Digits.size() <= IntDigits) {
      Result += Digits + std::string(IntDigits - Digits.size(), '0');
    } else {
      Result += Digits.substr(0, IntDigits) + "." + Digits.substr(IntDigits);
    }
  }
  return QString::fromLatin1(Result.c_str());
}

bool FloatEquals(float A, float B, float Epsilon)
{
  return std::fabs(A - B) <= Epsilon;
}

bool SameValue(double A, double B, double Epsilon)
{
  if (Epsilon == 0)
    Epsilon = std::max(std::min(std::fabs(A), std::fabs(B)) * 1e-12, 1e-12);
  return std::fabs(A - B) <= Epsilon;
}

QString Trim(const QString &S)
{
  qsizetype Begin = 0, End = S.size();
  while (Begin < End && IsBlank(S[Begin]))
    ++Begin;
  while (End > Begin && IsBlank(S[End - 1]))
    --End;
  return (Begin == 0 && End == S.size()) ? S : S.mid(Begin, End - Begin);
}

QString TrimLeft(const QString &S)
{
  qsizetype Begin = 0;
  while (Begin < S.size() && IsBlank(S[Begin]))
    ++Begin;
  return S.mid(Begin);
}

QString TrimRight(const QString &S)
{
  qsizetype End = S.size();
  while (End > 0 && IsBlank(S[End - 1]))
    --End;
  return S.left(End);
}

namespace {

char16_t AsciiUpper(char16_t C) { return (C >= u'a' && C <= u'z') ? char16_t(C - 32) : C; }
char16_t AsciiLower(char16_t C) { return (C >= u'A' && C <= u'Z') ? char16_t(C + 32) : C; }

} // namespace

QString UpperCase(const QString &S)
{
  QString Result = S;
  for (QChar &C : Result)
    C = QChar(AsciiUpper(C.unicode()));
  return Result;
}

QString LowerCase(const QString &S)
{
  QString Result = S;
  for (QChar &C : Result)
    C = QChar(AsciiLower(C.unicode()));
  return Result;
}

int CompareText(const QString &A, const QString &B)
{
  const qsizetype N = std::min(A.size(), B.size());
  for (qsizetype I = 0; I < N; ++I) {
    const char16_t CA = AsciiUpper(A[I].unicode()), CB = AsciiUpper(B[I].unicode());
    if (CA != CB)
      return CA < CB ? -1 : 1;
  }
  return A.size() == B.size() ? 0 : (A.size() < B.size() ? -1 : 1);
}

bool SameText(const QString &A, const QString &B)
{
  return A.size() == B.size() && CompareText(A, B) == 0;
}

bool StartsText(const QString &SubText, const QString &Text)
{
  return SubText.size() <= Text.size() && SameText(SubText, Text.left(SubText.size()));
}

bool EndsText(const QString &SubText, const QString &Text)
{
  return SubText.size() <= Text.size() && SameText(SubText, Text.right(SubText.size()));
}

namespace {

QString FormatOne(char Kind, int Precision, const TFormatArg &Arg)
{
  char Buffer[512];
  switch (Kind) {
  case 's':
    if (const QString *Text = std::get_if<QString>(&Arg))
      return *Text;
    break;
  case 'd':
    if (const long long *Int = std::get_if<long long>(&Arg))
      return QString::number(*Int);
    break;
  case 'x':
    if (const long long *Int = std::get_if<long long>(&Arg))
      return QString::number(*Int, 16).toUpper();
    break;
  case 'f':
  case 'g':
  case 'e': {
    double Value = 0;
    if (const double *Real = std::get_if<double>(&Arg))
      Value = *Real;
    else if (const long long *Int = std::get_if<long long>(&Arg))
      Value = double(*Int);
    else
      break;
    if (Kind == 'g')
      return FloatToStr(Value);
    std::snprintf(Buffer, sizeof Buffer, Kind == 'f' ? "%.*f" : "%.*E", Precision < 0 ? 2 : Precision, Value);
    return QString::fromLatin1(Buffer);
  }
  default:
    break;
  }
  throw EConvertError(QStringLiteral("Format '%%%1' invalid or incompatible with argument").arg(QChar::fromLatin1(Kind)));
}

} // namespace

QString Format(const QString &Pattern, std::initializer_list<TFormatArg> Args)
{
  QString Result;
  Result.reserve(Pattern.size() + 16);
  auto Next = Args.begin();
  for (qsizetype I = 0; I < Pattern.size(); ++I) {
    if (Pattern[I] != QLatin1Char('%') || I + 1 >= Pattern.size()) {
      Result += Pattern[I];
      continue;
    }
    ++I;
    if (Pattern[I] == QLatin1Char('%')) {
      Result += QLatin1Char('%');
      continue;
    }
    int Precision = -1;
    if (Pattern[I] == QLatin1Char('.')) {
      Precision = 0;
      while (++I < Pattern.size() && Pattern[I].isDigit())
        Precision = Precision * 10 + Pattern[I].digitValue();
    }
    if (I >= Pattern.size() || Next == Args.end())
      throw EConvertError(QStringLiteral("Format '%1' invalid or incompatible with argument").arg(Pattern));
    Result += FormatOne(char(AsciiLower(Pattern[I].unicode())), Precision, *Next++);
  }
  return Result;
}

} // namespace vx
