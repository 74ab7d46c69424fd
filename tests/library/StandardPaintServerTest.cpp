// Gradients, stops and patterns in both modes: the documented result without soStandardSVG, the
// browser's result with it, probed on small pictures.
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QImage>

#include <cstddef>
#include <cstdlib>

using namespace vx;

namespace {

// Red up to the middle of the gradient vector, blue from there: a probe reads one or the other.
const char *const HardStep = "<stop offset='0.5' stop-color='red'/><stop offset='0.5' stop-color='blue'/>";

struct TProbeCase
{
  const char *Name;
  const char *Body; // "$" stands for HardStep
  int X, Y;
  QRgb Documented, Standard;
};

bool Near(QRgb A, QRgb B)
{
  const int Tolerance = 8;
  return std::abs(qAlpha(A) - qAlpha(B)) <= Tolerance && std::abs(qRed(A) - qRed(B)) <= Tolerance &&
         std::abs(qGreen(A) - qGreen(B)) <= Tolerance && std::abs(qBlue(A) - qBlue(B)) <= Tolerance;
}

class StandardPaintServers : public TPictureTest
{
protected:
  StandardPaintServers() : TPictureTest(40) {}

  template <std::size_t N>
  void ExpectProbes(const TProbeCase (&Cases)[N])
  {
    for (const TProbeCase &C : Cases) {
      SCOPED_TRACE(C.Name);
      const QString Body = QString::fromUtf8(C.Body).replace(QLatin1Char('$'), QString::fromUtf8(HardStep));
      const QRgb Documented = RenderIn(false, Body).pixel(C.X, C.Y);
      EXPECT_TRUE(Near(Documented, C.Documented)) << std::hex << Documented;
      const QRgb Standard = RenderIn(true, Body).pixel(C.X, C.Y);
      EXPECT_TRUE(Near(Standard, C.Standard)) << std::hex << Standard;
    }
  }
};

// Each picture fills or strokes the 40 by 40 canvas (or a part of it) with one paint server.
const TProbeCase GradientCases[] = {
  // In bounding-box units the documented road leaves gradientTransform out.
  {"transform in bounding-box units",
   "<linearGradient id='g' gradientTransform='rotate(90)'>$</linearGradient>"
   "<rect width='40' height='40' fill='url(#g)'/>",
   30, 5, Blue, Red},
  // The end of the vector defaults to 100% of the viewport, not to 1 user unit.
  {"user-space default of x2",
   "<linearGradient id='g' gradientUnits='userSpaceOnUse'>$</linearGradient>"
   "<rect width='20' height='40' fill='url(#g)'/>",
   15, 5, Blue, Red},
  // Attributes come through href, not only the stops.
  {"vector through href",
   "<linearGradient id='a' x2='0' y2='1'/><linearGradient id='g' xlink:href='#a'>$</linearGradient>"
   "<rect width='40' height='40' fill='url(#g)'/>",
   30, 5, Blue, Red},
  {"spread through href",
   "<linearGradient id='a' spreadMethod='repeat'/><linearGradient id='g' xlink:href='#a' x2='0.5'>$"
   "</linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   25, 5, Blue, Red},
  // An offset below the one before it is raised to it: blue starts where red ends.
  {"offsets kept in order",
   "<linearGradient id='g'><stop offset='0.5' stop-color='red'/><stop offset='0.2' stop-color='blue'/>"
   "</linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   2, 20, Blue, Red},
  // The radius of the focal circle: inside it the first colour, out to r the ramp.
  {"focal radius",
   "<radialGradient id='g' fr='0.4'><stop offset='0' stop-color='red'/><stop offset='1' stop-color='blue'/>"
   "</radialGradient><rect width='40' height='40' fill='url(#g)'/>",
   25, 20, 0xFFB90046, Red},
  // A horizontal line has no height: a bounding-box gradient gives its stroke nothing to paint.
  {"stroke of a box without height",
   "<linearGradient id='g'>$</linearGradient>"
   "<line x1='0' y1='20' x2='40' y2='20' stroke='url(#g)' stroke-width='6'/>",
   5, 20, Red, NoColor},
};

TEST_F(StandardPaintServers, GradientsAreLaidOutByEachModesRules)
{
  ExpectProbes(GradientCases);
}

const TProbeCase StopCases[] = {
  {"stop-color inherit takes the gradient's",
   "<linearGradient id='g' stop-color='blue'><stop offset='0' stop-color='inherit'/>"
   "<stop offset='1' stop-color='inherit'/></linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   20, 20, 0xFF000000, Blue},
  {"stop-opacity as a percentage",
   "<linearGradient id='g'><stop offset='0' stop-color='blue' stop-opacity='50%'/></linearGradient>"
   "<rect width='40' height='40' fill='url(#g)'/>",
   20, 20, Blue, 0x80000080},
  // An offset is a number or a percentage; one in millimetres is none, so it stays 0.
  {"offset with a unit",
   "<linearGradient id='g'><stop offset='5mm' stop-color='red'/><stop offset='1' stop-color='blue'/>"
   "</linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   20, 20, Blue, 0xFF800080},
};

TEST_F(StandardPaintServers, StopsAreReadByEachModesRules)
{
  ExpectProbes(StopCases);
}

const TProbeCase PatternCases[] = {
  // The documented href lends contents only: the tile of the referring pattern has no size.
  {"tile through href",
   "<pattern id='a' patternUnits='userSpaceOnUse' width='20' height='20'/>"
   "<pattern id='p' xlink:href='#a'><rect width='10' height='20' fill='red'/></pattern>"
   "<rect width='40' height='40' fill='url(#p)'/>",
   25, 5, NoColor, Red},
  {"contents through href",
   "<pattern id='a'><rect width='10' height='20' fill='red'/></pattern>"
   "<pattern id='p' xlink:href='#a' patternUnits='userSpaceOnUse' width='20' height='20'/>"
   "<rect width='40' height='40' fill='url(#p)'/>",
   25, 5, Red, Red},
  // Contents in bounding-box units are fractions of the painted box.
  {"content units",
   "<pattern id='p' width='1' height='1' patternContentUnits='objectBoundingBox'>"
   "<rect width='0.5' height='1' fill='red'/></pattern><rect width='40' height='40' fill='url(#p)'/>",
   10, 20, NoColor, Red},
  // A skewed tile: the red column leans to the right as it goes down, and near the bottom the next
  // tile, shifted along the skew, brings it back on the left.
  {"skewed tile",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='40' height='40' patternTransform='skewX(45)'>"
   "<rect width='10' height='40' fill='red'/></pattern><rect width='40' height='40' fill='url(#p)'/>",
   4, 38, NoColor, Red},
};

TEST_F(StandardPaintServers, PatternsAreTiledByEachModesRules)
{
  ExpectProbes(PatternCases);
}

TEST_F(StandardPaintServers, ARecursivePatternPaintsNothingWhereItRefersToItself)
{
  const QString Body = QStringLiteral(
    "<pattern id='p' patternUnits='userSpaceOnUse' width='20' height='20'>"
    "<rect width='10' height='10' fill='red'/><rect x='10' width='10' height='10' fill='url(#p)'/></pattern>"
    "<rect width='40' height='40' fill='url(#p)'/>");
  const QImage Image = RenderIn(true, Body);
  EXPECT_EQ(Image.pixel(5, 5), Red);
  EXPECT_EQ(Image.pixel(15, 5), NoColor);
}

} // namespace
