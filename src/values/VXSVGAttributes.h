#pragma once
// The thin layer between the XML DOM and the value parsers: attribute and child-element text, string
// lists, references, comment stripping and the normalisation of character data.
#include "platform/rtl/VXExport.h"
#include "platform/xml/VXXmlDom.h"
#include "values/VXSVGVocabulary.h"

#include <QString>
#include <QStringList>

namespace vx {

class TStrings;

// The delimiters of number and token lists: comma, blank, line feed and carriage return (not tab).
inline const QString SVGListDelimiters = QStringLiteral(", \n\r");
// The namespace in which saved child elements are created.
inline const QString SVGNamespaceURI = QStringLiteral("http://www.w3.org/2000/svg");
inline const QString XLinkNamespaceURI = QStringLiteral("http://www.w3.org/1999/xlink");

// The attribute's text in the empty namespace, or empty.
VX_EXPORT QString ParseAttrString(const IXMLNode &Node, const QString &Name);
// The attribute's text in the namespace of Prefix (none when empty), or Default when absent.
VX_EXPORT QString ParseAttrString(const IXMLNode &Node, const QString &Name, const QString &Default, const QString &Prefix);
// The text of the child element Name, or Default.
VX_EXPORT QString ParseString(const IXMLNode &Node, const QString &Name, const QString &Default);
// Appends the cleaned tokens of S; clears the list when S is blank.
VX_EXPORT void ParseStringList(TStrings &Strings, const QString &S, const QString &Delimiters);
// Always clears first; a present but blank attribute leaves one empty string, so that it differs
// from an absent one.
VX_EXPORT void ParseRequiredStringList(const IXMLNode &Node, const QString &Name, TStrings &Strings, const QString &Delimiters);

VX_EXPORT bool SaveAttrString(const IXMLNode &Node, const QString &Name, const QString &Value, bool Omit, bool Remove);
VX_EXPORT bool SaveAttrString(const IXMLNode &Node, const QString &Name, const TStrings &Strings, bool Omit, bool Remove,
                    QChar Delimiter);
// Writes Property as an attribute of its own or, InStyle, as a pair appended to the style attribute.
// Defaults are left out when Remove, except for the properties that SVG inherits by default, whose
// absence would let the parent's value through; an inherited property is written only as
// "name:inherit" in a style, and only for those that SVG does not inherit. True when written.
VX_EXPORT bool SaveStyleProperty(const IXMLNode &Node, TSVGStyleProperty Property, QString Value, const QString &Default,
                       bool InStyle, bool IsInherited, bool Remove);
VX_EXPORT bool SaveNodeString(const IXMLNode &Node, const QString &Name, const QString &Value, bool Omit, bool Remove);

// "#id" (unless it reads as a hex colour) and "url(#id)" give the id; anything else stands as written.
VX_EXPORT QString ParseURI(const QString &S);
VX_EXPORT QString ParseURI(const QString &S, const QString &Default, bool &IsInherited);
VX_EXPORT QString ParseURI(const IXMLNode &Node, const QString &Name, const QString &Default, const QString &Prefix);
// As ParseURI, but only references into the same document: anything else gives the empty string.
VX_EXPORT QString ParseLocalURI(const QString &S);
VX_EXPORT QString ParseLocalURI(const QString &S, const QString &Default, bool &IsInherited);

VX_EXPORT bool IsHexColor(const QString &S);
VX_EXPORT bool VXIsWhiteSpace(QChar C);
// Cuts out every closed /* */ comment; an opener without a closer stays with all that follows it.
VX_EXPORT QString RemoveComments(const QString &S);
// Collapses runs of blanks to one; a leading or trailing blank survives as one blank, which text
// layout needs between neighbouring spans.
VX_EXPORT QString CleanText(const QString &S);
// Trims each string and drops the empty ones, order kept.
VX_EXPORT QStringList CleanArray(const QStringList &Strings);
// Splits S at every one of the Delimiters characters; adjacent delimiters give empty tokens.
VX_EXPORT QStringList SplitString(const QString &S, const QString &Delimiters);

// The inherit rule shared by every property parser: the word "inherit" sets IsInherited, blank text
// keeps it, anything else clears it. Returns the trimmed text, to be parsed only when it is not
// empty and IsInherited is false.
VX_EXPORT QString ApplyInheritRule(const QString &S, bool &IsInherited);

} // namespace vx
