#include "values/VXSVGVocabulary.h"

namespace vx {

#define S(Text) QStringLiteral(Text)

const TSVGNames<TSVGAlign, 10> SVGAlignNames = {S("none"), S("xMinYMin"), S("xMidYMin"), S("xMaxYMin"),
  S("xMinYMid"), S("xMidYMid"), S("xMaxYMid"), S("xMinYMax"), S("xMidYMax"), S("xMaxYMax")};
// "mathematica" is one letter short on purpose, and so it is read and written back.
const TSVGNames<TSVGAlignmentBaseline, 13> SVGAlignmentBaselines = {QString(), S("auto"), S("baseline"),
  S("before-edge"), S("text-before-edge"), S("middle"), S("central"), S("after-edge"), S("text-after-edge"),
  S("ideographic"), S("alphabetic"), S("hanging"), S("mathematica")};
const TSVGNames<TSVGBaselineShift, 6> SVGBaselineShifts = {QString(), S("baseline"), S("sub"), S("super"),
  S("percentage"), S("length")};
const TSVGNames<TSVGDominantBaseline, 13> SVGDominantBaselines = {QString(), S("auto"), S("use-script"),
  S("no-change"), S("reset-size"), S("ideographic"), S("alphabetic"), S("hanging"), S("mathematical"), S("central"),
  S("middle"), S("text-after-edge"), S("text-before-edge")};
const TSVGNames<TSVGTextPathMethod, 3> SVGTextPathMethods = {QString(), S("align"), S("stretch")};
const TSVGNames<TSVGTextPathSpacing, 3> SVGTextPathSpacings = {QString(), S("exact"), S("auto")};
const TSVGNames<TSVGColorInterpolation, 4> SVGColorInterpolationNames = {QString(), S("auto"), S("sRGB"),
  S("linearRGB")};
const TSVGNames<TSVGColorRendering, 4> SVGColorRenderingNames = {QString(), S("auto"), S("optimizeSpeed"),
  S("optimizeQuality")};
const TSVGNames<TSVGShapeRendering, 5> SVGShapeRenderingNames = {QString(), S("auto"), S("optimizeSpeed"),
  S("crispEdges"), S("geometricPrecision")};
const TSVGNames<TSVGTextRendering, 5> SVGTextRenderingNames = {QString(), S("auto"), S("optimizeSpeed"),
  S("optimizeLegibility"), S("geometricPrecision")};
const TSVGNames<TSVGDirection, 3> SVGDirections = {QString(), S("ltr"), S("rtl")};
const TSVGNames<TSVGWritingMode, 7> SVGWritingModes = {QString(), S("lr-tb"), S("rl-tb"), S("tb-rl"), S("lr"),
  S("rl"), S("tb")};
const TSVGNames<TSVGGlyphOrientationVertical, 6> SVGGlyphOrientationVerticals = {QString(), S("auto"), S("0deg"),
  S("90deg"), S("180deg"), S("270deg")};
const TSVGNames<TSVGGlyphOrientationHorizontal, 5> SVGGlyphOrientationHorizontals = {QString(), S("0deg"),
  S("90deg"), S("180deg"), S("270deg")};
const TSVGNames<TSVGCursor, 17> SVGCursorNames = {QString(), S("auto"), S("crosshair"), S("default"), S("pointer"),
  S("move"), S("e-resize"), S("ne-resize"), S("nw-resize"), S("n-resize"), S("se-resize"), S("sw-resize"),
  S("s-resize"), S("w-resize"), S("text"), S("wait"), S("help")};
const TSVGNames<TSVGGenericFontFamily, 6> SVGGenericFontFamily = {QString(), S("serif"), S("sans-serif"),
  S("cursive"), S("fantasy"), S("monospace")};
const TSVGNames<TSVGFontAbsSize, 8> SVGFontAbsSizes = {QString(), S("xx-small"), S("x-small"), S("small"),
  S("medium"), S("large"), S("x-large"), S("xx-large")};
const TSVGNames<TSVGFontWeight, 14> SVGFontWeights = {QString(), S("normal"), S("bold"), S("bolder"), S("lighter"),
  S("100"), S("200"), S("300"), S("400"), S("500"), S("600"), S("700"), S("800"), S("900")};
const TSVGNames<TSVGFontVariant, 6> SVGFontVariants = {QString(), S("normal"), S("small-caps"), S("uppercase"),
  S("lowercase"), S("titlecase")};
const TSVGNames<TSVGFontStyle, 4> SVGFontStyles = {QString(), S("normal"), S("italic"), S("oblique")};
const TSVGNames<TSVGTextAnchor, 4> SVGTextAnchors = {QString(), S("start"), S("middle"), S("end")};
const TSVGNames<TSVGTextAlign, 3> SVGTextAlignNames = {S("middle"), S("start"), S("end")};
const TSVGNames<TSVGTextDecoration, 5> SVGTextDecorations = {QString(), S("underline"), S("overline"),
  S("line-through"), S("blink")};
const TSVGNames<TSVGCoordinateSystemUnit, 3> SVGCoordinateSystemUnits = {QString(), S("objectBoundingBox"),
  S("userSpaceOnUse")};
const TSVGNames<TSVGGradientSpread, 4> SVGGradientSpreads = {QString(), S("pad"), S("reflect"), S("repeat")};
const TSVGNames<TSVGFillRule, 3> SVGFillRules = {QString(), S("nonzero"), S("evenodd")};
const TSVGNames<TSVGVectorEffect, 2> SVGVectorEffects = {QString(), S("non-scaling-stroke")};
const TSVGNames<TSVGMarkerUnit, 3> SVGMarkerUnitNames = {QString(), S("strokeWidth"), S("userSpaceOnUse")};
const TSVGBooleanNames SVGVisibility = {S("hidden"), S("visible")};

const TSVGNames<TSVGElementType, SVGElementTypeCount> SVGElementTypeNames = {QString(), S("svg"), S("g"),
  S("image"), S("defs"), S("use"), S("circle"), S("ellipse"), S("rect"), S("line"), S("polyline"), S("polygon"),
  S("path"), S("text"), S("switch"), S("desc"), S("title"), S("style"), S("tspan"), S("textPath"), S("tref"),
  S("clipPath"), S("linearGradient"), S("radialGradient"), S("stop"), S("marker"), S("metadata"), S("script"),
  S("comment"), S("symbol"), S("pattern"), S("mask")};

namespace {

TSVGElementTypes AllElementTypes()
{
  TSVGElementTypes Result;
  for (int I = etDoc; I < SVGElementTypeCount; ++I)
    Result.Include(TSVGElementType(I));
  return Result;
}

} // namespace

const TSVGElementTypes SVGAllElements = AllElementTypes();
const TSVGElementTypes SVGContainerElements = {etDoc, etGroup, etDefs, etSwitch, etMarker, etSymbol, etPattern};
const TSVGElementTypes SVGDescriptiveElements = {etDesc, etTitle, etMetadata};
const TSVGElementTypes SVGShapeElements = {etCircle, etEllipse, etRectangle, etLine, etPolyline, etPolygon, etPath};
const TSVGElementTypes SVGStructuralElements = {etDoc, etGroup, etDefs, etUse, etSymbol};
const TSVGElementTypes SVGGradientElements = {etLinearGradient, etRadialGradient};
const TSVGElementTypes SVGTextContentElements = {etText, etTSpan, etTextPath, etTRef};
const TSVGElementTypes SVGTextContentChildElements = {etTSpan, etTextPath, etTRef};

const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> SVGStylePropertyNames = {QString(),
  S("alignment-baseline"), S("baseline-shift"), S("clip"), S("clip-path"), S("clip-rule"), S("color"),
  S("color-interpolation"), S("color-rendering"), S("cursor"), S("direction"), S("display"), S("dominant-baseline"),
  S("fill"), S("fill-opacity"), S("fill-rule"), S("flood-color"), S("flood-opacity"), S("font"), S("font-family"),
  S("font-size"), S("font-style"), S("font-variant"), S("font-weight"), S("glyph-orientation-horizontal"),
  S("glyph-orientation-vertical"), S("kerning"), S("letter-spacing"), S("marker"), S("marker-end"), S("marker-mid"),
  S("marker-start"), S("opacity"), S("overflow"), S("shape-rendering"), S("stop-color"), S("stop-opacity"),
  S("stroke"), S("stroke-dasharray"), S("stroke-dashoffset"), S("stroke-linecap"), S("stroke-linejoin"),
  S("stroke-miterlimit"), S("stroke-opacity"), S("stroke-width"), S("text-anchor"), S("text-decoration"),
  S("text-rendering"), S("vector-effect"), S("visibility"), S("word-spacing"), S("writing-mode")};

// The font shorthand has no default text; "???" marks that on purpose.
const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> DefaultSVGStylePropertyValues = {QString(), S("auto"),
  S("baseline"), S("auto"), S("none"), S("nonzero"), QString(), S("sRGB"), S("auto"), S("auto"), S("ltr"),
  S("inline"), S("auto"), S("black"), S("1"), S("nonzero"), S("black"), S("1"), S("???"), S("Tahoma"), S("medium"),
  S("normal"), S("normal"), S("normal"), S("0deg"), S("auto"), S("auto"), S("normal"), S("none"), S("none"),
  S("none"), S("none"), S("1"), S("visible"), S("auto"), S("black"), S("1"), S("none"), S("none"), S("0"), S("butt"),
  S("miter"), S("4"), S("1"), S("1"), S("start"), S("none"), S("auto"), S("none"), S("visible"), S("normal"),
  S("lr-tb")};

const TSVGStyleProperties SVGFontStyleProperties = {ipFont, ipFontFamily, ipFontSize, ipFontStyle, ipFontVariant,
  ipFontWeight, ipTextDecoration};
const TSVGStyleProperties SVGMediaStyleProperties = {ipCursor, ipDisplay, ipVisibility};
const TSVGStyleProperties SVGTextStyleProperties = {ipTextAnchor, ipTextDecoration};
const TSVGStyleProperties SVGClipMaskStyleProperties = {ipClip, ipClipPath, ipClipRule, ipOpacity};
const TSVGStyleProperties SVGFilterStyleProperties = {ipFloodColor, ipFloodOpacity};
const TSVGStyleProperties SVGGradientStyleProperties = {ipStopColor, ipStopOpacity};
const TSVGStyleProperties SVGPaintingStyleProperties = {ipColor, ipColorInterpolation, ipColorRendering, ipFill,
  ipFillOpacity, ipFillRule, ipMarker, ipMarkerEnd, ipMarkerMid, ipMarkerStart, ipStroke, ipStrokeDasharray,
  ipStrokeDashOffset, ipStrokeLinecap, ipStrokeLineJoin, ipStrokeMiterLimit, ipStrokeOpacity, ipStrokeWidth,
  ipVectorEffect};

const TSVGNames<TSVGUnit, SVGUnitCount> SVGUnitStrings = {QString(), S("px"), S("pt"), S("pc"), S("mm"), S("cm"),
  S("in"), S("em"), S("ex"), S("%")};

const TSVGNames<TSVGGenericFontFamily, 6> SVGGenericFont = {QString(), S("Garamond"), S("Tahoma"),
  S("Brush Script"), S("Alpha Geometrique"), S("Courier New")};

#define F(Fragment) S("http://www.w3.org/TR/SVG11/feature" Fragment)
const TSVGNames<TSVGFeature, SVGFeatureCount> SVGFeatures = {S("Unknown"), F("#SVG"), F("#SVGDOM"),
  F("#SVG-static"), F("#SVGDOM-static"), F("#SVG-animation"), F("#SVGDOM-animation"), F("#SVG-dynamic"),
  F("#SVGDOM-dynamic"), F("#CoreAttribute"), F("#Structure"), F("#BasicStructure"), F("#ContainerAttribute"),
  F("#ConditionalProcessing"), F("#Image"), F("#Style"), F("#ViewportAttribute"), F("#Shape"), F("#Text"),
  F("#BasicText"), F("#PaintAttribute"), F("#BasicPaintAttribute"), F("#OpacityAttribute"), F("#GraphicsAttribute"),
  F("#BasicGraphicsAttribute"), F("#Marker"), F("#ColorProfile"), F("#Gradient"), F("#Pattern"), F("#Clip"),
  F("#Mask"), F("#Filter"), F("#XlinkAttribute"), F("#Font"), F("#BasicFont"), F("#Extensibility"),
  F("#Hyperlinking"), F("#Scripting"), F("#View"), F("#Cursor"), F("#Animation"), F("#GraphicalEventsAttribute"),
  F("#DocumentEventsAttribute"), F("#AnimationEventsAttribute")};
#undef F

// What conditional processing answers; Image, Text and Pattern read "no" although those elements draw.
const TSVGFeatureSupport SVGFeatureSupport = {
  false,                                                  // Unknown
  false, false, false, false, false, false, false, false, // SVG ... SVGDOM-dynamic
  true, true, true, false, true,                          // CoreAttribute ... ConditionalProcessing
  false, true, true, true, false, true,                   // Image, Style, ViewportAttribute, Shape, Text, BasicText
  false, true, true, false,                               // PaintAttribute ... GraphicsAttribute
  true, true, false, true, false, true,                   // BasicGraphicsAttribute ... Clip
  false, false, false, false, false, false, false, false, false, // Mask ... View
  false, false, false, false, false                       // Cursor ... AnimationEventsAttribute
};

#undef S

std::int32_t MAX_SVGIMAGE_SIZE = 8096;

} // namespace vx
