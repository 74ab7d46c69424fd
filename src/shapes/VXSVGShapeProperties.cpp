// The published properties of the shapes beyond the graphic element's: the corner radii of a
// rectangle, the points of a polyline or polygon and the data of a path. Points and path data are
// written with every digit a float holds, so a stream gives back the very geometry it was given.
#include "platform/geometry/VXPathData.h"
#include "platform/rtl/VXSysUtils.h"
#include "shapes/VXSVGBasicShapes.h"
#include "shapes/VXSVGPath.h"
#include "tree/VXSVGPropertyRegistry.h"

namespace vx {

namespace {

void AppendPoint(QString &Text, const TPointF &Point)
{
  Text += FloatToStr(Point.X);
  Text += QLatin1Char(' ');
  Text += FloatToStr(Point.Y);
  Text += QLatin1Char(' ');
}

QString ExactPoints(const TVXPoints &Points)
{
  QString Text;
  for (const TPointF &Point : Points)
    AppendPoint(Text, Point);
  return Text.trimmed();
}

// Curves are kept as cubic points in threes, so every curve segment reads back as one "C".
QString ExactPathData(const TVXPathData &Data)
{
  QString Text;
  int CubicPoints = 0;
  for (const TVXPathPoint &Point : Data.Points()) {
    switch (Point.Kind) {
    case ppMove:
      Text += QLatin1String("M ");
      break;
    case ppLine:
      Text += QLatin1String("L ");
      break;
    case ppCubic:
      if (CubicPoints++ % 3 == 0)
        Text += QLatin1String("C ");
      break;
    case ppClose:
      Text += QLatin1String("Z ");
      continue;
    }
    AppendPoint(Text, Point.Point);
  }
  return Text.trimmed();
}

const TPropertyTable &RectangleProperties()
{
  using C = TSVGRectangle;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    PublishedObject<C>(QStringLiteral("RX"), QStringLiteral("TSVGLength"), [](C &R) -> TSVGLength & { return R.RX(); }),
    PublishedObject<C>(QStringLiteral("RY"), QStringLiteral("TSVGLength"), [](C &R) -> TSVGLength & { return R.RY(); }),
  });
  return Table;
}

const TPropertyTable &PolylineProperties()
{
  using C = TSVGPolyline;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    PublishedValue<C>(QStringLiteral("Polygon"), tkString, QStringLiteral("string"),
                      [](const C &P) { return ExactPoints(P.Points()); }, &C::SetPolygon,
                      std::function<bool(const C &)>([](const C &P) { return !P.Points().empty(); })),
  });
  return Table;
}

const TPropertyTable &PathProperties()
{
  using C = TSVGPath;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    PublishedValue<C>(QStringLiteral("Data"), tkString, QStringLiteral("string"),
                      [](const C &P) { return ExactPathData(P.Data()); },
                      [](C &P, const QString &Text) {
                        TVXPathData Data;
                        Data.SetPathString(Text);
                        P.SetData(Data);
                      },
                      std::function<bool(const C &)>([](const C &P) { return P.Data().GetCount() > 0; })),
  });
  return Table;
}

const TSVGPropertiesRegistration Rectangle(TSVGRectangle::ClassInfo(), &RectangleProperties);
const TSVGPropertiesRegistration Polyline(TSVGPolyline::ClassInfo(), &PolylineProperties);
const TSVGPropertiesRegistration Polygon(TSVGPolygon::ClassInfo(), &PolylineProperties);
const TSVGPropertiesRegistration Path(TSVGPath::ClassInfo(), &PathProperties);

} // namespace

} // namespace vx
