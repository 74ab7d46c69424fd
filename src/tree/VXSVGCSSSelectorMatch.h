#pragma once
// Selector matching as CSS does it, for the standard road: compound selectors of a type or "*", ids,
// classes, attribute tests on any attribute and :first-child, joined by the descendant, child,
// next-sibling and later-sibling combinators, matched from the right.
#include "tree/VXSVGSelectorMatch.h"

#include <QString>

namespace vx {

class TSVGElement;

// The specificity of Selector for Self as one number (ids count 10000, classes, attributes and
// pseudo-classes 100, types 1), or -1 when it does not apply or cannot be read. Other pseudo-classes
// never apply: a static picture is never hovered or focused.
int MatchCSSSelector(const TSVGElement &Self, const QString &Selector);

// What an element must carry for Selector to apply to it, read from the rightmost compound: its id,
// else a class, else its type. A selector that cannot be read applies to none.
TSVGSelectorSubject CSSSelectorSubject(const QString &Selector);

} // namespace vx
