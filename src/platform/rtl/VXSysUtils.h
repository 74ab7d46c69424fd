#pragma once
// Locale-free number text and the string helpers whose rules differ from QString's own:
// Trim drops every character of code 32 or below, case-insensitive comparisons are ASCII only,
// and numbers always use a point as decimal separator and no thousands separator.
#include "platform/rtl/VXExport.h"

#include <QString>

#include <cstdint>
#include <initializer_list>
#include <variant>

namespace vx {

// --- numbers -------------------------------------------------------------------------------------

// Accepts optional surrounding blanks, an optional sign, digits with an optional point and an
// optional exponent. Fails on anything else, on empty text and beyond the 32-bit float range;
// Value is left alone on failure.
VX_EXPORT bool TryStrToFloat(const QString &S, float &Value);
VX_EXPORT bool TryStrToFloat(const QString &S, double &Value);
// As TryStrToFloat, raising EConvertError on failure.
VX_EXPORT float StrToFloat(const QString &S);
VX_EXPORT bool TryStrToInt(const QString &S, int &Value);
VX_EXPORT int StrToInt(const QString &S);
VX_EXPORT int StrToIntDef(const QString &S, int Default);
VX_EXPORT QString IntToStr(long long Value);

// Formats Value by a pattern of the "0.###" kind: digits after the point are "0" (always shown) or
// "#" (shown when not zero); the value is rounded half away from zero to that many places.
VX_EXPORT QString FormatFloat(const QString &Pattern, double Value);
// Up to 15 significant digits, shortest general form: fixed notation while the value has at most
// 15 integer digits and is at least 0.00001 in magnitude, else scientific ("1.5E-10").
VX_EXPORT QString FloatToStr(double Value);

VX_EXPORT bool FloatEquals(float A, float B, float Epsilon = 0.00001f);
VX_EXPORT bool SameValue(double A, double B, double Epsilon = 0);

// --- strings -------------------------------------------------------------------------------------

VX_EXPORT QString Trim(const QString &S);
VX_EXPORT QString TrimLeft(const QString &S);
VX_EXPORT QString TrimRight(const QString &S);
VX_EXPORT QString UpperCase(const QString &S); // ASCII letters only
VX_EXPORT QString LowerCase(const QString &S); // ASCII letters only
VX_EXPORT bool SameText(const QString &A, const QString &B);
VX_EXPORT int CompareText(const QString &A, const QString &B);
VX_EXPORT bool StartsText(const QString &SubText, const QString &Text);
VX_EXPORT bool EndsText(const QString &SubText, const QString &Text);

// Delphi-style Format: %s, %d, %f (two decimals), %g, %x and %% with optional precision ("%.3f").
using TFormatArg = std::variant<QString, long long, double>;
VX_EXPORT QString Format(const QString &Pattern, std::initializer_list<TFormatArg> Args);

} // namespace vx
