#pragma once
// The transform attribute, point lists and rectangles as text, and the wrapping of long path lines
// in saved XML. Unlike the style parsers these raise on bad input: a transform or point list that
// cannot be read is an error of the document, not a reason to fall back.
#include "platform/geometry/VXGeometry.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

#include <vector>

namespace vx {

class IXMLNode;
class TStrings;
class TSVGViewBox;

// A transform list: the rightmost transform acts on a point first. An unknown name raises
// ESVGException (SInvalidTransform), a bad number EConvertError; a missing ")" ends the list
// silently with what was read so far. A list whose product is not finite gives the identity.
TMatrix ParseTransformation(const QString &S);
// The transform functions; S is the text between the brackets.
TMatrix ParseMatrix(const QString &S);
TMatrix ParseTranslateMatrix(const QString &S);
TMatrix ParseScaleMatrix(const QString &S);
TMatrix ParseRotateMatrix(const QString &S);
TMatrix ParseSkewXMatrix(const QString &S);
TMatrix ParseSkewYMatrix(const QString &S);
// "" for the identity, else "scale(...)", "translate(...)" or "matrix(...)" with full-precision
// numbers. Rotations and skews print as matrix, so printing does not restore the written form.
QString SVGTransformationToString(const TMatrix &M);

// Numbers in pairs; an odd last number is dropped, a bad one raises EConvertError.
TVXPoints ParsePoints(const QString &S);
// Empty when the attribute is absent.
TVXPoints ParsePoints(const IXMLNode &Node, const QString &Name);
QString SVGPointToString(const TPointF &Point, TSVGUnit aUnit, const QString &Format);
// The points 0 to High, joined by blanks.
QString SVGPointsToString(const TVXPoints &Points, int High, TSVGUnit aUnit, const QString &Format);

// The points of a polyline or polygon element.
class TSVGPointList
{
public:
  int Count() const { return int(FItems.size()); }
  // Raises EListError outside 0..Count - 1.
  TPointF Items(int Index) const;
  void SetItems(int Index, const TPointF &Point);
  int Add(const TPointF &Point);
  void Insert(int Index, const TPointF &Point);
  void Delete(int Index);
  void Clear() { FItems.clear(); }

  const TVXPoints &Points() const { return FItems; }
  void SetPoints(const TVXPoints &Points) { FItems = Points; }
  bool operator==(const TSVGPointList &) const = default;

private:
  void CheckIndex(int Index, int Limit) const;

  TVXPoints FItems;
};

// "x y width height" in lengths; anything but four tokens gives the empty rectangle.
TRectF ParseRect(const QString &S, const TSVGUnitFactors &UnitFactors);
// Into a view box, each number keeping its unit; missing numbers leave the rest as they are and no
// number at all clears the box.
TSVGViewBox *ParseRect(const QString &S, TSVGViewBox *ViewBox);
// "left top width height".
QString SVGRectToString(const TRectF &Rect, TSVGUnit aUnit, const QString &Format);
// The clip property: "auto" is the empty rectangle, "rect(top right bottom left)" with blanks
// between the numbers, anything else keeps Default.
TRectF ParseClipRect(const QString &S, const TRectF &Default, bool &IsInherited, const TSVGUnitFactors &UnitFactors);

// Breaks the lines of saved XML that are longer than MaxLength where they hold the d attribute of a
// path: before the attribute and then at blanks or commas inside its value, never inside other
// quoted text. Verifies that the pieces join up to the old line and raises EInvalidOperation
// ("SVGSplitLines Failed") if they do not.
void SVGSplitLines(TStrings &Strings, int MaxLength);

} // namespace vx
