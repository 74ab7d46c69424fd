#pragma once
// Selector tokens: one CSS selector text as a flat array of tokens, which style matching walks from
// left to right. A token carries the name or value that belongs to it; the combinators carry the
// name on their right.
#include "platform/rtl/VXExport.h"

#include <QString>

#include <array>
#include <cstdint>
#include <vector>

namespace vx {

enum TSVGSelectorTokenType : std::uint8_t {
  sttNone, sttString, sttHasAttribute, sttPrefixMatch, sttSuffixMatch, sttSubstringMatch, sttExactMatch,
  sttDashMatch, sttContainsWord, sttIDHashChar, sttUniversalChar, sttColonChar, sttClassChar, sttHasDescendant,
  sttHasChild, sttHasFollower, sttLanguage
};
inline constexpr int SVGSelectorTokenTypeCount = sttLanguage + 1;

// The text that introduces each kind of token; sttNone and sttString have none.
using TSVGSelectorTokenTypeStrings = std::array<QString, SVGSelectorTokenTypeCount>;
extern VX_EXPORT const TSVGSelectorTokenTypeStrings SVGSelectorTokenTypes;

// Exact look-up in SVGSelectorTokenTypes from index 0; sttNone for anything unknown (and for "").
VX_EXPORT TSVGSelectorTokenType GetSVGSelectorTokenType(const QString &S);

struct VX_EXPORT TSVGSelectorToken
{
  TSVGSelectorTokenType TokenType = sttNone;
  QString Value;

  TSVGSelectorToken() = default;
  TSVGSelectorToken(TSVGSelectorTokenType aTokenType, const QString &aValue)
    : TokenType(aTokenType), Value(aValue)
  {
  }

  // For example: sttClassChar(.) = "a"
  QString ToString() const;

  bool operator==(const TSVGSelectorToken &) const = default;
};

using TSVGSelectorTokens = std::vector<TSVGSelectorToken>;

// Splits one selector (no commas) into tokens. Grammar is not checked beyond attribute selectors:
// "[name" without a closing bracket, or with an operator that is not one, raises ESVGException
// "Invalid selector: %s". A value without its "]" and a "(" without its ")" run to the end.
VX_EXPORT TSVGSelectorTokens TokenizeSelector(const QString &S);

} // namespace vx
