#include "platform/rtl/VXStringList.h"
#include "values/VXSVGException.h"
#include "values/VXSVGTransforms.h"
#include "values/VXSVGViewBox.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

TPointF Map(const QString &Transform, TPointF P)
{
  return VXMatrixTransformPoint(P, ParseTransformation(Transform));
}

QString FailureOf(const QString &Transform)
{
  try {
    ParseTransformation(Transform);
  } catch (const ESVGException &E) {
    return E.Message();
  }
  return QStringLiteral("<no failure>");
}

QString Joined(const TStrings &Strings)
{
  QString Result;
  for (int I = 0; I < Strings.Count(); ++I)
    Result += Strings[I];
  return Result;
}

} // namespace

TEST(Transforms, ListsApplyTheRightmostTransformFirst)
{
  const struct
  {
    const char *Text;
    TPointF In, Out;
  } Cases[] = {
      {"", {1, 1}, {1, 1}},
      {"translate(10) scale(2)", {1, 1}, {12, 2}},
      {"scale(2) translate(10)", {1, 1}, {22, 2}},
      {"scale(2),translate(10)", {1, 1}, {22, 2}}, // commas may separate the functions
      {" translate(1 ,2)\n\trotate(90) ", {1, 0}, {1, 3}},
      {"rotate(90 10 10)", {11, 10}, {10, 11}},
      {"rotate(90 10 10)", {10, 10}, {10, 10}},
      {"skewX(45)", {0, 1}, {1, 1}},
      {"skewY(45)", {1, 0}, {1, 1}},
      {"skewX()", {3, 4}, {3, 4}},
      {"matrix(1 2 3 4 5 6)", {1, 1}, {9, 12}},
      {"matrix(1,0,0,1,5-6)", {0, 0}, {5, -6}},
      {"translate(10,20", {0, 0}, {0, 0}},              // an unclosed function is dropped
      {"translate(10)scale(2", {1, 1}, {11, 1}},        // ...and what came before it stays
      {"translate(5) garbage", {0, 0}, {5, 0}},         // text behind the last bracket is ignored
  };
  for (const auto &Case : Cases) {
    const TPointF P = Map(QString::fromUtf8(Case.Text), Case.In);
    EXPECT_NEAR(P.X, Case.Out.X, 1e-4) << Case.Text;
    EXPECT_NEAR(P.Y, Case.Out.Y, 1e-4) << Case.Text;
  }
}

TEST(Transforms, FailuresCarryTheirMessages)
{
  const struct
  {
    const char *Text;
    const char *Message;
  } Cases[] = {
      {"Translate(1)", "Invalid transformation: Translate"},
      {"scale,(2)", "Invalid transformation: scale,"},
      {"(1)", "Invalid transformation: "},
      {"translate(1) foo(2)", "Invalid transformation: foo"},
      {"matrix(1 2 3)", "Invalid matrix: 1 2 3"},
      {"matrix( 1 2 3 )", "Invalid matrix:  1 2 3 "}, // the text as written
      {"scale()", "Invalid scale transformation matrix: "},
      {"scale(1 2 3)", "Invalid scale transformation matrix: 1 2 3"},
      {"translate()", "Invalid translate transformation matrix: "},
      {"rotate(1 2)", "Invalid rotation transformation matrix: 1 2"},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(FailureOf(QString::fromUtf8(Case.Text)), QString::fromUtf8(Case.Message)) << Case.Text;
  EXPECT_THROW(ParseTransformation(QStringLiteral("scale(x)")), EConvertError);
  EXPECT_THROW(ParseTransformation(QStringLiteral("skewX(1-2-3)")), EConvertError);
  EXPECT_THROW(ParseTransformation(QStringLiteral("translate(1e99)")), EConvertError);
}

TEST(Transforms, PrintingPicksTheShortestExactForm)
{
  TMatrix NearIdentity = VXIdentityMatrix;
  NearIdentity.m11 = 1.000001f;
  NearIdentity.m32 = 0.000001f;
  const struct
  {
    TMatrix M;
    const char *Text;
  } Cases[] = {
      {VXIdentityMatrix, ""},
      {NearIdentity, ""},
      {ParseTransformation(QStringLiteral("scale(2)")), "scale(2 2)"},
      {ParseTransformation(QStringLiteral("translate(10 -20)")), "translate(10 -20)"},
      {ParseTransformation(QStringLiteral("translate(0.1)")), "translate(0.100000001490116 0)"},
      {ParseTransformation(QStringLiteral("matrix(1 2 3 4 5 6)")), "matrix(1 2 3 4 5 6)"},
      {ParseTransformation(QStringLiteral("scale(2) translate(1)")), "matrix(2 0 0 2 2 0)"},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(SVGTransformationToString(Case.M), QString::fromUtf8(Case.Text)) << Case.Text;
  EXPECT_TRUE(SVGTransformationToString(ParseTransformation(QStringLiteral("rotate(90)")))
                  .startsWith(QLatin1String("matrix(")));
}

TEST(Transforms, PrintedMatricesReadBackExactly)
{
  const char *Texts[] = {"rotate(33.3)", "skewX(10) scale(0.1 3)", "translate(0.1 0.2)", "scale(1e-7)",
                         "matrix(1.5 -2.25 1e6 4 0.3 -7)", "rotate(-45 3 4) translate(7)"};
  for (const char *Text : Texts) {
    const TMatrix M = ParseTransformation(QString::fromUtf8(Text));
    EXPECT_EQ(ParseTransformation(SVGTransformationToString(M)), M) << Text;
  }
}

TEST(Transforms, PointLists)
{
  const struct
  {
    const char *Text;
    TVXPoints Points;
  } Cases[] = {
      {"1,2 3", {{1, 2}}},                // an odd last number is dropped
      {"1-2", {{1, -2}}},
      {" 0,0\n10,5e-1 -3-4 ", {{0, 0}, {10, 0.5f}, {-3, -4}}},
      {"", {}},
  };
  for (const auto &Case : Cases) {
    const TVXPoints Points = ParsePoints(QString::fromUtf8(Case.Text));
    ASSERT_EQ(Points.size(), Case.Points.size()) << Case.Text;
    for (std::size_t I = 0; I < Points.size(); ++I) {
      EXPECT_EQ(Points[I].X, Case.Points[I].X) << Case.Text;
      EXPECT_EQ(Points[I].Y, Case.Points[I].Y) << Case.Text;
    }
  }
  EXPECT_THROW(ParsePoints(QStringLiteral("1,x")), EConvertError);

  const TVXPoints Points = {{1.5f, -2}, {3, 4.25f}, {0, 0}};
  const QString F = QStringLiteral("0.###");
  EXPECT_EQ(SVGPointsToString(Points, 2, suNone, F), QStringLiteral("1.5,-2 3,4.25 0,0"));
  EXPECT_EQ(SVGPointsToString(Points, 0, suNone, F), QStringLiteral("1.5,-2"));
  EXPECT_EQ(SVGPointsToString(Points, 9, suNone, F), SVGPointsToString(Points, 2, suNone, F));
  EXPECT_EQ(SVGPointToString({1, 2}, suMillimeters, F), QStringLiteral("1mm,2mm"));
  const TVXPoints Back = ParsePoints(SVGPointsToString(Points, 2, suNone, F));
  ASSERT_EQ(Back.size(), Points.size());
  for (std::size_t I = 0; I < Points.size(); ++I)
    EXPECT_TRUE(Back[I].X == Points[I].X && Back[I].Y == Points[I].Y) << I;

  TSVGPointList List;
  List.SetPoints(Points);
  List.Insert(3, {7, 8});
  List.Delete(0);
  EXPECT_EQ(List.Count(), 3);
  EXPECT_EQ(List.Items(2).X, 7.0f);
  EXPECT_THROW(List.Items(3), EListError);
  EXPECT_THROW(List.Insert(5, {}), EListError);
}

TEST(Transforms, Rectangles)
{
  const struct
  {
    const char *Text;
    TRectF Rect;
  } Cases[] = {
      {"0 0 100 50", {0, 0, 100, 50}},
      {"1,2,3,4", {1, 2, 4, 6}},
      {"1in 0 1in 1in", {96, 0, 192, 96}},
      {"1 2 3", {}},
      {"1-2 3 4", {}}, // no sign splitting here: three tokens
      {"1 2 3 4 5", {}},
      {"x 2 3 4", {0, 2, 3, 6}},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(ParseRect(QString::fromUtf8(Case.Text), SVGUnitFactors), Case.Rect) << Case.Text;
  EXPECT_EQ(SVGRectToString({1, 2, 4, 6}, suNone, QStringLiteral("0.###")), QStringLiteral("1 2 3 4"));
  EXPECT_EQ(ParseRect(SVGRectToString({-1.5f, 2, 4, 6.25f}, suNone, QStringLiteral("0.###")), SVGUnitFactors),
            TRectF({-1.5f, 2, 4, 6.25f}));

  TSVGViewBox Box;
  ParseRect(QStringLiteral("1 2 10mm"), &Box);
  EXPECT_EQ(Box.Width()->Unit(), suMillimeters);
  EXPECT_EQ(Box.Width()->Raw(), 10.0f);
  EXPECT_EQ(Box.Y()->Raw(), 2.0f);
  EXPECT_TRUE(Box.Specified());
  ParseRect(QStringLiteral("  "), &Box);
  EXPECT_EQ(Box.X()->Raw(), 0.0f) << "no numbers clear the box";
}

TEST(Transforms, ClipRectangles)
{
  const TRectF Default{9, 9, 9, 9};
  const struct
  {
    const char *Text;
    TRectF Rect;
  } Cases[] = {
      {"rect(1 2 3 4)", {4, 1, 2, 3}},
      {"RECT( 1  2 3 4 )", {4, 1, 2, 3}},
      {"rect(1,2,3,4)", {}},          // commas do not split; the one token fails
      {"rect(1in 0)", {0, 96, 0, 0}},
      {"auto", {}},
      {"inherit", Default},
      {"rect(1 2 3 4", Default},
      {"bogus", Default},
  };
  for (const auto &Case : Cases) {
    bool IsInherited = false;
    EXPECT_EQ(ParseClipRect(QString::fromUtf8(Case.Text), Default, IsInherited, SVGUnitFactors), Case.Rect)
        << Case.Text;
  }
}

TEST(Transforms, SplitLinesBreaksPathDataWithoutLosingText)
{
  QString Data;
  for (int I = 0; I < 60; ++I)
    Data += QStringLiteral("L %1,%2 ").arg(I * 10).arg(I * 7);
  const QString Path = QStringLiteral("  <path id=\"p d=x\" d=\"M 0 0 %1Z\" fill=\"red\"/>").arg(Data);
  const QString Other = QStringLiteral("<rect width=\"%1\"/>").arg(QString(300, u'9'));
  const QString NoData = QStringLiteral("<path id=\"%1\"/>").arg(QString(300, u'x'));
  TStringList Strings;
  Strings.Add(QStringLiteral("<svg>"));
  Strings.Add(Path);
  Strings.Add(Other);
  Strings.Add(NoData);
  Strings.Add(QStringLiteral("</svg>"));

  SVGSplitLines(Strings, 80);
  EXPECT_EQ(Joined(Strings), QStringLiteral("<svg>") + Path + Other + NoData + QStringLiteral("</svg>"));
  EXPECT_GT(Strings.Count(), 8);
  EXPECT_TRUE(Strings[1].startsWith(QLatin1String("  <path id=\"p d=x\" d=\"M")))
      << "the quoted \" d\" is not the attribute";
  const int OtherAt = Strings.IndexOf(Other);
  ASSERT_GT(OtherAt, 0) << "lines without path data stay whole";
  EXPECT_EQ(Strings[OtherAt + 1], NoData);
  for (int I = 1; I < OtherAt; ++I)
    EXPECT_LE(Strings[I].size(), 80 + 20) << "pieces end at the first blank or comma past the limit";

  // The attribute starting past the limit moves to a line of its own.
  const QString Late = QStringLiteral("<path class=\"%1\" d=\"M 0 0 L 1 1\"/>").arg(QString(100, u'c'));
  TStringList LateStrings;
  LateStrings.Add(Late);
  SVGSplitLines(LateStrings, 60);
  ASSERT_EQ(LateStrings.Count(), 2);
  EXPECT_TRUE(LateStrings[1].startsWith(QLatin1String("d=\"M")));
  EXPECT_EQ(Joined(LateStrings), Late);

  // A value without its closing quote keeps all its text.
  const QString Broken = QStringLiteral("<path d=\"M 0 0 %1").arg(Data);
  TStringList BrokenStrings;
  BrokenStrings.Add(Broken);
  SVGSplitLines(BrokenStrings, 50);
  EXPECT_EQ(Joined(BrokenStrings), Broken);
}
