#pragma once
// Selector matching: whether one CSS selector applies to an element, and with what weight.
#include <QString>

namespace vx {

class TSVGElement;

// The specificity of Selector for Self, or -1 when it does not apply. Tokens are tested left to
// right; types count as a, classes, attributes, relations and languages as b, ids as c, and the
// result is the number written by the digits of c, b and a in turn (one id, two classes and a type
// give 121; ten classes and two types give 102). The first failing token ends the test with the
// result as it stands, which is -1, or 0 for a selector that begins with "*": such a selector
// applies to every element.
//
// The relations (" ", ">", "+", and "*" after the start) look their right-hand name up in the
// owner's table of ids and move on to that element; attribute values are read from Self even then.
// Fails with ESVGException only for a malformed attribute selector.
int MatchSelector(const TSVGElement &Self, const QString &Selector);

// What an element must carry for a selector to apply to it at all: an id, a class or a type name.
// Any means the selector may apply to every element; Never that it applies to none.
struct TSVGSelectorSubject
{
  enum TKind { Any, Never, Id, Class, Type };
  TKind Kind = Any;
  QString Name;
};

// The subject of Selector as MatchSelector reads it: the tokens before the first relation are
// tested on Self itself, so each of them names something Self must have. The id is preferred, then
// a class, then the type. A selector that begins with "*" applies everywhere, and so does one the
// tokenizer refuses, so that matching it raises the same error.
TSVGSelectorSubject SelectorSubject(const QString &Selector);

} // namespace vx
