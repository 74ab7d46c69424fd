#pragma once
// The dictionary of the library: every enumeration of SVG keywords with its name table, the constant
// sets of element types and style properties, units, font tables, cursors, features and options.
// Value 0 of a keyword enumeration means that nothing was given; its table entry is usually empty.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXSet.h"

#include <QString>

#include <array>
#include <cstdint>
#include <vector>

namespace vx {

// A name table indexed by its enumeration.
template <typename E, std::size_t N>
using TSVGNames = std::array<QString, N>;

enum TSVGAlign : std::uint8_t {
  saNone, saXMinYMin, saXMidYMin, saXMaxYMin, saXMinYMid, saXMidYMid, saXMaxYMid, saXMinYMax, saXMidYMax, saXMaxYMax
};
enum TSVGAlignmentBaseline : std::uint8_t {
  abNone, abAuto, abBaseline, abBeforeEdge, abTextBeforeEdge, abMiddle, abCentral, abAfterEdge, abTextAfterEdge,
  abIdeographic, abAlphabetic, abHanging, abMathematical
};
enum TSVGBaselineShift : std::uint8_t { bsNone, bsBaseline, bsSubscript, bsSuperscript, bsPercentage, bsLength };
enum TSVGDominantBaseline : std::uint8_t {
  dbNone, dbAuto, dbUseScript, dbNoChange, dbResetSize, dbIdeographic, dbAlphabetic, dbHanging, dbMathematical,
  dbCentral, dbMiddle, dbTextAfterEdge, dbTextBeforeEdge
};
enum TSVGTextPathMethod : std::uint8_t { tpmNone, tpmAlign, tpmStretch };
enum TSVGTextPathSpacing : std::uint8_t { tpsNone, tpsExact, tpsAuto };
enum TSVGColorInterpolation : std::uint8_t { sciNone, sciAuto, sciSRGB, sciLinearRGB };
enum TSVGColorRendering : std::uint8_t { clrnNone, clrnAuto, clrnOptimizeSpeed, clrnOptimizeQuality };
enum TSVGShapeRendering : std::uint8_t {
  srnNone, srnAuto, srnOptimizeSpeed, srnCrispEdges, srnGeometricPrecision
};
enum TSVGTextRendering : std::uint8_t {
  txrnNone, txrnAuto, txrnOptimizeSpeed, txrnOptimizeLegibility, txrnGeometricPrecision
};
enum TSVGDirection : std::uint8_t { dirNone, dirLeftToRight, dirRightToLeft };
enum TSVGWritingMode : std::uint8_t {
  wmNone, wmLeftRight_TopBottom, wmRightLeft_TopBottom, wmTopBottom_RightLeft, wmLeftRight, wmRightLeft, wmTopBottom
};
enum TSVGGlyphOrientationVertical : std::uint8_t { ovNone, ovAuto, ov0Deg, ov90Deg, ov180Deg, ov270Deg };
enum TSVGGlyphOrientationHorizontal : std::uint8_t { ohNone, oh0Deg, oh90Deg, oh180Deg, oh270Deg };
enum TSVGCursor : std::uint8_t {
  scrNone, scrAuto, scrCrosshair, scrDefault, scrPointer, scrMove, scrE_resize, scrNE_resize, scrNW_resize,
  scrN_resize, scrSE_resize, scrSW_resize, scrS_resize, scrW_resize, scrText, scrWait, scrHelp
};
enum TSVGGenericFontFamily : std::uint8_t { gffNone, gffSerif, gffSansSerif, gffCursive, gffFantasy, gffMonospace };
enum TSVGFontAbsSize : std::uint8_t {
  fabNone, fabXXSmall, fabXSmall, fabSmall, fabMedium, fabLarge, fabXLarge, FabXXLarge
};
enum TSVGFontWeight : std::uint8_t {
  fwNone, fwNormal, fwBold, fwBolder, fwLighter, fw100, fw200, fw300, fw400, fw500, fw600, fw700, fw800, fw900
};
enum TSVGFontVariant : std::uint8_t { fvNone, fvNormal, fvSmallCaps, fvUpperCase, fvLowerCase, fvTitleCase };
enum TSVGFontStyle : std::uint8_t { sfsNone, sfsNormal, sfsItalic, sfsOblique };
enum TSVGTextAnchor : std::uint8_t { taNone, taStart, taMiddle, taEnd };
enum TSVGTextAlign : std::uint8_t { staCenter, staLeading, staTrailing };
enum TSVGTextDecoration : std::uint8_t { tdNone, tdUnderline, tdOverline, tdLineThrough, tdBlink };
enum TSVGCoordinateSystemUnit : std::uint8_t { csuNone, csuObjectBoundingBox, csuUserSpaceOnUse };
enum TSVGGradientSpread : std::uint8_t { gsNone, gsPad, gsReflect, gsRepeat };
enum TSVGFillRule : std::uint8_t { frNone, frNonZero, frEvenOdd };
enum TSVGVectorEffect : std::uint8_t { veNone, veNonScalingStroke };
enum TSVGMarkerUnit : std::uint8_t { muNone, muStrokeWidth, muUserSpaceOnUse };

extern VX_EXPORT const TSVGNames<TSVGAlign, 10> SVGAlignNames;
extern VX_EXPORT const TSVGNames<TSVGAlignmentBaseline, 13> SVGAlignmentBaselines;
extern VX_EXPORT const TSVGNames<TSVGBaselineShift, 6> SVGBaselineShifts;
extern VX_EXPORT const TSVGNames<TSVGDominantBaseline, 13> SVGDominantBaselines;
extern VX_EXPORT const TSVGNames<TSVGTextPathMethod, 3> SVGTextPathMethods;
extern VX_EXPORT const TSVGNames<TSVGTextPathSpacing, 3> SVGTextPathSpacings;
extern VX_EXPORT const TSVGNames<TSVGColorInterpolation, 4> SVGColorInterpolationNames;
extern VX_EXPORT const TSVGNames<TSVGColorRendering, 4> SVGColorRenderingNames;
extern VX_EXPORT const TSVGNames<TSVGShapeRendering, 5> SVGShapeRenderingNames;
extern VX_EXPORT const TSVGNames<TSVGTextRendering, 5> SVGTextRenderingNames;
extern VX_EXPORT const TSVGNames<TSVGDirection, 3> SVGDirections;
extern VX_EXPORT const TSVGNames<TSVGWritingMode, 7> SVGWritingModes;
extern VX_EXPORT const TSVGNames<TSVGGlyphOrientationVertical, 6> SVGGlyphOrientationVerticals;
extern VX_EXPORT const TSVGNames<TSVGGlyphOrientationHorizontal, 5> SVGGlyphOrientationHorizontals;
extern VX_EXPORT const TSVGNames<TSVGCursor, 17> SVGCursorNames;
extern VX_EXPORT const TSVGNames<TSVGGenericFontFamily, 6> SVGGenericFontFamily;
extern VX_EXPORT const TSVGNames<TSVGFontAbsSize, 8> SVGFontAbsSizes;
extern VX_EXPORT const TSVGNames<TSVGFontWeight, 14> SVGFontWeights;
extern VX_EXPORT const TSVGNames<TSVGFontVariant, 6> SVGFontVariants;
extern VX_EXPORT const TSVGNames<TSVGFontStyle, 4> SVGFontStyles;
extern VX_EXPORT const TSVGNames<TSVGTextAnchor, 4> SVGTextAnchors;
extern VX_EXPORT const TSVGNames<TSVGTextAlign, 3> SVGTextAlignNames;
extern VX_EXPORT const TSVGNames<TSVGTextDecoration, 5> SVGTextDecorations;
extern VX_EXPORT const TSVGNames<TSVGCoordinateSystemUnit, 3> SVGCoordinateSystemUnits;
extern VX_EXPORT const TSVGNames<TSVGGradientSpread, 4> SVGGradientSpreads;
extern VX_EXPORT const TSVGNames<TSVGFillRule, 3> SVGFillRules;
extern VX_EXPORT const TSVGNames<TSVGVectorEffect, 2> SVGVectorEffects;
extern VX_EXPORT const TSVGNames<TSVGMarkerUnit, 3> SVGMarkerUnitNames;

// Indexed by a Boolean: false "hidden", true "visible"; serves visibility and overflow.
using TSVGBooleanNames = std::array<QString, 2>;
extern VX_EXPORT const TSVGBooleanNames SVGVisibility;

// --- element types ------------------------------------------------------------------------------

enum TSVGElementType : std::uint8_t {
  etNone, etDoc, etGroup, etImage, etDefs, etUse, etCircle, etEllipse, etRectangle, etLine, etPolyline, etPolygon,
  etPath, etText, etSwitch, etDesc, etTitle, etStyle, etTSpan, etTextPath, etTRef, etClipPath, etLinearGradient,
  etRadialGradient, etGradientStop, etMarker, etMetadata, etScript, etComment, etSymbol, etPattern,
  // Read only under soStandardSVG: the classic road passes "mask" over as an unknown element.
  etMask
};
inline constexpr int SVGElementTypeCount = etMask + 1;
using TSVGElementTypes = TSet<TSVGElementType, std::uint32_t>;
extern VX_EXPORT const TSVGNames<TSVGElementType, SVGElementTypeCount> SVGElementTypeNames;

extern VX_EXPORT const TSVGElementTypes SVGAllElements;
extern VX_EXPORT const TSVGElementTypes SVGContainerElements;
extern VX_EXPORT const TSVGElementTypes SVGDescriptiveElements;
extern VX_EXPORT const TSVGElementTypes SVGShapeElements;
extern VX_EXPORT const TSVGElementTypes SVGStructuralElements;
extern VX_EXPORT const TSVGElementTypes SVGGradientElements;
extern VX_EXPORT const TSVGElementTypes SVGTextContentElements;
extern VX_EXPORT const TSVGElementTypes SVGTextContentChildElements;

// --- style properties ---------------------------------------------------------------------------

// Alphabetical by CSS name.
enum TSVGStyleProperty : std::uint8_t {
  ipNone, ipAlignmentBaseline, ipBaselineShift, ipClip, ipClipPath, ipClipRule, ipColor, ipColorInterpolation,
  ipColorRendering, ipCursor, ipDirection, ipDisplay, ipDominantBaseline, ipFill, ipFillOpacity, ipFillRule,
  ipFloodColor, ipFloodOpacity, ipFont, ipFontFamily, ipFontSize, ipFontStyle, ipFontVariant, ipFontWeight,
  ipGlyphOrientationHorizontal, ipGlyphOrientationVertical, ipKerning, ipLetterSpacing, ipMarker, ipMarkerEnd,
  ipMarkerMid, ipMarkerStart, ipOpacity, ipOverflow, ipShapeRendering, ipStopColor, ipStopOpacity, ipStroke,
  ipStrokeDasharray, ipStrokeDashOffset, ipStrokeLinecap, ipStrokeLineJoin, ipStrokeMiterLimit, ipStrokeOpacity,
  ipStrokeWidth, ipTextAnchor, ipTextDecoration, ipTextRendering, ipVectorEffect, ipVisibility, ipWordSpacing,
  ipWritingMode
};
inline constexpr int SVGStylePropertyCount = ipWritingMode + 1;
using TSVGStyleProperties = TSet<TSVGStyleProperty, std::uint64_t>;
extern VX_EXPORT const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> SVGStylePropertyNames;
extern VX_EXPORT const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> DefaultSVGStylePropertyValues;

extern VX_EXPORT const TSVGStyleProperties SVGFontStyleProperties;
extern VX_EXPORT const TSVGStyleProperties SVGMediaStyleProperties;
extern VX_EXPORT const TSVGStyleProperties SVGTextStyleProperties;
extern VX_EXPORT const TSVGStyleProperties SVGClipMaskStyleProperties;
extern VX_EXPORT const TSVGStyleProperties SVGFilterStyleProperties;
extern VX_EXPORT const TSVGStyleProperties SVGGradientStyleProperties;
extern VX_EXPORT const TSVGStyleProperties SVGPaintingStyleProperties;

// --- units and fonts ----------------------------------------------------------------------------

enum TSVGUnit : std::uint8_t {
  suNone, suPixels, suPoints, suPicas, suMillimeters, suCentimeters, suInches, suFontSize, suFontXHeight, suPercent
};
inline constexpr int SVGUnitCount = suPercent + 1;
using TSVGUnits = std::vector<TSVGUnit>;
// Pixels per unit, indexed by TSVGUnit.
using TSVGUnitFactors = std::array<float, SVGUnitCount>;
extern VX_EXPORT const TSVGNames<TSVGUnit, SVGUnitCount> SVGUnitStrings;
// The default factors; em, ex and percent are placeholders that a live element replaces.
inline constexpr TSVGUnitFactors SVGUnitFactors = {1.0f, 1.0f, 1.333f, 15.996f, 3.78f, 37.8f, 96.0f, 1.0f, 1.0f, 1.0f};

// Point sizes of the absolute font-size keywords: a scale of 1.2 around 12.
using TSVGFontAbsPointSizes = std::array<float, 8>;
inline constexpr TSVGFontAbsPointSizes SVGFontSizes = {
  12.0f, 6.9444447f, 8.333333f, 10.0f, 12.0f, 14.4f, 17.28f, 20.736f
};
// The concrete font of each generic family.
extern VX_EXPORT const TSVGNames<TSVGGenericFontFamily, 6> SVGGenericFont;

// --- cursors ------------------------------------------------------------------------------------

// Platform cursor numbers.
using TCursor = std::int16_t;
using TSVGCursorMapping = std::array<TCursor, 17>;
inline constexpr TSVGCursorMapping SVGCursorMapping = {
  -1, 0, -3, 0, -21, -12, -9, -6, -8, -7, -8, -6, -7, -9, -4, -11, -20
};

// --- features -----------------------------------------------------------------------------------

enum TSVGFeature : std::uint8_t {
  sfUnknown, sfSVG, sfSVGDOM, sfSVGstatic, sfSVGDOMstatic, sfSVGanimation, sfSVGDOManimation, sfSVGdynamic,
  sfSVGDOMdynamic, sfCoreAttribute, sfStructure, sfBasicStructure, sfContainerAttribute, sfConditionalProcessing,
  sfImage, sfStyle, sfViewportAttribute, sfShape, sfText, sfBasicText, sfPaintAttribute, sfBasicPaintAttribute,
  sfOpacityAttribute, sfGraphicsAttribute, sfBasicGraphicsAttribute, sfMarker, sfColorProfile, sfGradient, sfPattern,
  sfClip, sfMask, sfFilter, sfXlinkAttribute, sfFont, sfBasicFont, sfExtensibility, sfHyperlinking, sfScripting,
  sfView, sfCursor, sfAnimation, sfGraphicalEventsAttribute, sfDocumentEventsAttribute, sfAnimationEventsAttribute
};
inline constexpr int SVGFeatureCount = sfAnimationEventsAttribute + 1;
using TSVGFeatureSupport = std::array<bool, SVGFeatureCount>;
extern VX_EXPORT const TSVGNames<TSVGFeature, SVGFeatureCount> SVGFeatures;
extern VX_EXPORT const TSVGFeatureSupport SVGFeatureSupport;

// --- options and states -------------------------------------------------------------------------

enum TSVGOption : std::uint8_t {
  soSkipUnknownXML, soUseLocaleForLanguage, soEnforceUniqueID, soApplyClipping, soCompactExport,
  soExportUnknownXML, soExportDisabled, soExportOptimizedBinaryStyleProperties, soFMXRadialGradientPatch,
  soUseFillText,
  // Loading, the cascade and drawing follow SVG 1.1 (and what browsers share of CSS and SVG 2)
  // wherever the classic behaviour differs. Not in the default set.
  soStandardSVG
};
using TSVGOptions = TSet<TSVGOption, std::uint16_t>;
inline constexpr TSVGOptions DefaultSVGOptions = TSVGOptions::FromBits(443);

enum TSVGFindOption : std::uint8_t {
  foFindHiddenElements, foFindGroups, foFindNoRecursion, foUseBoundingBox, foFindNonFilled, foFindDisabled
};
using TSVGFindOptions = TSet<TSVGFindOption, std::uint8_t>;

enum TSVGElementStateValue : std::uint8_t { esReading, esWriting, esDestroying };
using TSVGElementState = TSet<TSVGElementStateValue, std::uint8_t>;

enum TSVGImageWrapMode : std::uint8_t { iwOriginal, iwFit, iwStretch, iwTile, iwCenter };

enum TExtendedFontStyle : std::uint8_t { fsOverline, fsBlink };
using TExtendedFontStyles = TSet<TExtendedFontStyle, std::uint8_t>;

// The largest width or height, in pixels, of a raster made from a document; a host may change it.
extern VX_EXPORT std::int32_t MAX_SVGIMAGE_SIZE;

} // namespace vx
