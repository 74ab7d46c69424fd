// Markers, shapes and strokes in the two modes: each case gives the documented result and the
// standard (soStandardSVG) one, by pixel probes on a 40 by 40 picture.
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <vector>

using namespace vx;

namespace {

struct TProbe
{
  int X, Y;
  QRgb Expected;
};

struct TModeCase
{
  const char *Name;
  const char *Body;
  std::vector<TProbe> Documented, Standard;
};

class StandardStroke : public TPictureTest
{
protected:
  StandardStroke() : TPictureTest(40) {}

  void Check(const TModeCase &Case)
  {
    for (const bool Standard : {false, true}) {
      SCOPED_TRACE(std::string(Case.Name) + (Standard ? " (standard)" : " (documented)"));
      const QImage Image = RenderIn(Standard, QString::fromUtf8(Case.Body));
      for (const TProbe &Probe : Standard ? Case.Standard : Case.Documented)
        EXPECT_EQ(Image.pixel(Probe.X, Probe.Y), Probe.Expected) << "at " << Probe.X << ", " << Probe.Y;
    }
  }
};

TEST_F(StandardStroke, MarkerPlacement)
{
  const TModeCase Cases[] = {
    // Documented: the contents are not scaled without a view box, and move back by the reference
    // point from the vertex. Standard: scaled by the stroke width, reference point on the vertex.
    {"strokeWidth units without a view box",
     "<marker id='q' refX='1' refY='1'><rect width='3' height='3' fill='red'/></marker>"
     "<path d='M20,20 H30' stroke='none' stroke-width='2' marker-start='url(#q)'/>",
     {{20, 20, Red}, {21, 21, Red}, {22, 22, NoColor}, {18, 18, NoColor}},
     {{18, 18, Red}, {22, 22, Red}, {24, 24, NoColor}, {17, 17, NoColor}}},
    // Documented: the view box, its corner included, fills the marker rectangle standing at the
    // vertex, and the contents move back by the reference point. Standard: the reference point
    // (5, 5), the view box's corner, lands on the vertex.
    {"a view box with a corner and a reference point",
     "<marker id='q' markerUnits='userSpaceOnUse' viewBox='5 5 10 10' refX='5' refY='5' markerWidth='4' "
     "markerHeight='4' overflow='visible'><rect width='10' height='10' fill='red'/></marker>"
     "<path d='M20,20 H30' stroke='none' marker-start='url(#q)'/>",
     {{16, 16, Red}, {19, 19, Red}, {20, 20, NoColor}, {15, 15, NoColor}},
     {{18, 18, Red}, {21, 21, Red}, {22, 22, NoColor}, {17, 17, NoColor}}},
  };
  for (const TModeCase &Case : Cases)
    Check(Case);
}

// A red bar six units long along the marker's x axis, two wide, its left end on the vertex.
#define BAR_MARKER(Orient)                                                                                        \
  "<marker id='m' markerUnits='userSpaceOnUse' overflow='visible' orient='" Orient "'>"                           \
  "<rect x='0' y='-1' width='6' height='2' fill='red'/></marker>"

TEST_F(StandardStroke, MarkerOrientation)
{
  const char *const Line = "<line x1='20' y1='20' x2='30' y2='20' marker-start='url(#m)'/>";
  const std::vector<TProbe> AlongX{{24, 20, Red}, {20, 24, NoColor}, {16, 20, NoColor}};
  const std::vector<TProbe> Down{{20, 24, Red}, {24, 20, NoColor}};
  const std::vector<TProbe> Back{{16, 20, Red}, {24, 20, NoColor}};
  const std::pair<const char *, std::string> Bodies[] = {
    {"90", std::string(BAR_MARKER("90"))},
    {"90deg", std::string(BAR_MARKER("90deg"))},
    {"100grad", std::string(BAR_MARKER("100grad"))},
    {"0.25turn", std::string(BAR_MARKER("0.25turn"))},
    {"auto-start-reverse", std::string(BAR_MARKER("auto-start-reverse"))},
  };
  for (const auto &[Name, Marker] : Bodies) {
    const std::string Body = Marker + Line;
    const bool Reverse = std::string(Name) == "auto-start-reverse";
    // Documented: a fixed angle draws at 0 and "auto-start-reverse" is not known; standard turns.
    Check({Name, Body.c_str(), AlongX, Reverse ? Back : Down});
  }
}

// Two by two red squares centred on their vertex, in user units.
#define SQUARE_MARKERS                                                                                            \
  "<marker id='q' markerUnits='userSpaceOnUse' refX='1' refY='1' markerWidth='2' markerHeight='2'>"               \
  "<rect width='2' height='2' fill='red'/></marker>"
#define ALL_SQUARES "marker-start='url(#q)' marker-mid='url(#q)' marker-end='url(#q)'"

TEST_F(StandardStroke, MarkerVertices)
{
  const TModeCase Cases[] = {
    // Documented, only lines, point lists and paths carry markers; standard marks every shape, a
    // circle from the right end of its horizontal axis round through the ends of both axes.
    {"markers on a rect",
     SQUARE_MARKERS "<rect x='10' y='10' width='20' height='20' fill='none' " ALL_SQUARES "/>",
     {{10, 10, NoColor}, {29, 29, NoColor}},
     {{10, 10, Red}, {29, 10, Red}, {29, 29, Red}, {10, 29, Red}, {20, 10, NoColor}}},
    {"markers on a circle", SQUARE_MARKERS "<circle cx='20' cy='20' r='10' fill='none' " ALL_SQUARES "/>",
     {{30, 20, NoColor}},
     {{30, 20, Red}, {20, 30, Red}, {10, 20, Red}, {20, 10, Red}, {27, 27, NoColor}}},
    // A polygon is a closed figure: its last vertex is its first point again, not its last one.
    {"the end of a polygon",
     "<marker id='e' markerUnits='userSpaceOnUse' refX='1' refY='1' markerWidth='2' markerHeight='2'>"
     "<rect width='2' height='2' fill='red'/></marker>"
     "<polygon points='10,10 30,10 30,30' fill='none' marker-end='url(#e)'/>",
     {{30, 30, Red}, {10, 10, NoColor}},
     {{10, 10, Red}, {30, 30, NoColor}}},
    // A path of no length: documented its markers have no direction and are skipped; standard draws them.
    {"a path of no length", SQUARE_MARKERS "<path d='M20,20 L20,20' marker-start='url(#q)'/>",
     {{20, 20, NoColor}},
     {{20, 20, Red}, {19, 19, Red}}},
    // Where the path turns straight back, the documented bisector has no direction and the mid
    // marker faces along x; the standard one faces a quarter turn clockwise, downwards.
    {"a path that turns back",
     "<marker id='m' markerUnits='userSpaceOnUse' overflow='visible' orient='auto'>"
     "<rect x='0' y='-1' width='6' height='2' fill='red'/></marker>"
     "<path d='M10,20 L30,20 L10,20' marker-mid='url(#m)'/>",
     {{34, 20, Red}, {30, 24, NoColor}},
     {{30, 24, Red}, {34, 20, NoColor}}},
  };
  for (const TModeCase &Case : Cases)
    Check(Case);
}

TEST_F(StandardStroke, PaintOrder)
{
  const TModeCase Cases[] = {
    // The inner half of a wide stroke: documented always over the fill, standard under it.
    {"stroke before fill",
     "<rect x='10' y='10' width='20' height='20' fill='blue' stroke='red' stroke-width='8' paint-order='stroke'/>",
     {{12, 20, Red}, {7, 20, Red}},
     {{12, 20, Blue}, {7, 20, Red}}},
    // Markers first, under the fill and the stroke; a part named twice makes the declaration
    // invalid, so the parent's order holds.
    {"markers under the fill, inherited past an invalid declaration",
     SQUARE_MARKERS "<g paint-order='markers'><path d='M10,20 H30 V30 H10 Z' fill='blue' marker-start='url(#q)' "
                    "paint-order='fill fill'/></g>",
     {{10, 20, Red}, {9, 19, Red}},
     {{10, 20, Blue}, {11, 21, Blue}, {9, 19, Red}}},
    // The stroke after the markers covers them.
    {"stroke over the markers",
     SQUARE_MARKERS "<path d='M10,20 H30' stroke='blue' stroke-width='4' marker-start='url(#q)' "
                    "paint-order='fill markers'/>",
     {{10, 20, Red}},
     {{10, 20, Blue}, {12, 20, Blue}}},
  };
  for (const TModeCase &Case : Cases)
    Check(Case);
}

TEST_F(StandardStroke, CrispEdgesTurnAntiAliasingOff)
{
  const QString Body = QStringLiteral("<circle cx='20' cy='20' r='13.3' fill='blue' shape-rendering='crispEdges'/>");
  for (const bool Standard : {false, true}) {
    const QImage Image = RenderIn(Standard, Body);
    int Partial = 0;
    for (int Y = 0; Y < Image.height(); ++Y)
      for (int X = 0; X < Image.width(); ++X)
        Partial += qAlpha(Image.pixel(X, Y)) != 0 && qAlpha(Image.pixel(X, Y)) != 255;
    if (Standard)
      EXPECT_EQ(Partial, 0);
    else
      EXPECT_GT(Partial, 0);
  }
}

TEST_F(StandardStroke, StrokesUnderUnequalScales)
{
  // A stroke 4 units wide under a vertical scale of 3: standard, it is 12 pixels high, as the
  // shape is stretched; documented, it keeps one width in device units.
  Check({"a stretched stroke",
         "<line x1='10' y1='20' x2='30' y2='20' stroke='blue' stroke-width='4' "
         "transform='translate(0 -40) scale(1 3)'/>",
         {{20, 20, Blue}, {20, 25, NoColor}},
         {{20, 20, Blue}, {20, 25, Blue}, {20, 27, NoColor}}});
}

TEST_F(StandardStroke, DashArrays)
{
  const TModeCase Cases[] = {
    // Documented, an entry of 0 turns dashing off; standard draws the caps of empty dashes as dots.
    {"dashes of no length with round caps",
     "<line x1='5' y1='20' x2='35' y2='20' stroke='blue' stroke-width='6' stroke-linecap='round' "
     "stroke-dasharray='0 10'/>",
     {{15, 20, Blue}, {10, 20, Blue}},
     {{15, 20, Blue}, {10, 20, NoColor}}},
    // Standard: a quarter of the 40-unit diagonal (over root 2) is 10, the offset of 1em is 5. The
    // documented road keeps the percentages as fractions of a unit: no picture to probe.
    {"dashes in percent, an offset in em",
     "<line x1='0' y1='20' x2='40' y2='20' stroke='blue' stroke-width='4' font-size='5' "
     "stroke-dasharray='25% 25%' stroke-dashoffset='1em'/>",
     {},
     {{2, 20, Blue}, {7, 20, NoColor}, {12, 20, NoColor}, {17, 20, Blue}}},
    // Documented, square caps of dashes end flat.
    {"square caps on dashes",
     "<line x1='5' y1='20' x2='35' y2='20' stroke='blue' stroke-width='4' stroke-linecap='square' "
     "stroke-dasharray='4 8'/>",
     {{10, 20, NoColor}, {7, 20, Blue}},
     {{10, 20, Blue}, {12, 20, NoColor}}},
  };
  for (const TModeCase &Case : Cases)
    Check(Case);
}

TEST_F(StandardStroke, ShapeRadii)
{
  const TModeCase Cases[] = {
    {"a negative circle radius", "<circle cx='20' cy='20' r='-10' fill='blue'/>",
     {{20, 20, Blue}, {20, 12, Blue}},
     {{20, 20, NoColor}}},
    // Documented, an ellipse without rx has no width; standard takes rx from ry.
    {"an ellipse without rx", "<ellipse cx='20' cy='20' ry='10' fill='blue'/>",
     {{20, 20, NoColor}},
     {{20, 20, Blue}, {12, 20, Blue}, {8, 20, NoColor}}},
    // Standard, a missing ry takes rx's used length: a quarter of the 40-unit width, not of the
    // 20-unit height.
    {"an ellipse without ry in a percentage",
     "<svg width='40' height='20'><ellipse cx='20' cy='10' rx='25%' fill='blue'/></svg>",
     {{20, 10, NoColor}},
     {{20, 18, Blue}, {20, 10, Blue}, {31, 10, NoColor}}},
    // Documented, a negative rx becomes 0: square corners. Standard reads it as missing: ry's radius.
    {"a rect with a negative rx", "<rect x='5' y='5' width='30' height='30' rx='-10' ry='10' fill='blue'/>",
     {{6, 6, Blue}},
     {{6, 6, NoColor}, {20, 20, Blue}}},
  };
  for (const TModeCase &Case : Cases)
    Check(Case);
}

} // namespace
