#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "structure/VXSVGSymbol.h"
#include "tree/VXSVG.h"

#include <QBuffer>
#include <QImage>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace vx;

namespace {

// Loads Body into a 100 by 100 root and records which elements report OnDrawn when it is drawn.
class Structure : public ::testing::Test
{
protected:
  void Load(const QString &Body)
  {
    Document.SetOptions(Document.GetOptions() - TSVGOptions{soUseLocaleForLanguage});
    Document.SetPreferredLanguage(QStringLiteral("en-GB"));
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 100 100'>%1</svg>")
                              .arg(Body));
  }
  template <typename T = TSVGElement>
  T *Element(const char *ID)
  {
    return dynamic_cast<T *>(Document.AllItems().Elements(QString::fromLatin1(ID)));
  }
  // The ids of the shapes drawn, in order, and the picture in Image.
  QStringList Draw()
  {
    QStringList Drawn;
    Document.OnDrawn = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &) {
      const auto *Shape = dynamic_cast<TSVGElement *>(Sender);
      if (Shape && SVGShapeElements.Contains(Shape->SVGType()))
        Drawn.append(Shape->ID());
    };
    TVXGPBitmap Bitmap(100, 100);
    Document.Draw(VXIdentityMatrix, Bitmap.GetCanvas(), TRectF{0, 0, 100, 100});
    Image = Bitmap.Image().convertToFormat(QImage::Format_ARGB32);
    Document.OnDrawn = nullptr;
    return Drawn;
  }
  bool IsRed(int X, int Y) const { return Image.pixel(X, Y) == 0xFFFF0000u; }

  TSVGDocument Document;
  QImage Image;
};

} // namespace

TEST_F(Structure, SwitchDrawsOnlyTheFirstChildWhoseConditionsHold)
{
  struct Case {
    const char *Children;
    const char *Drawn;
  };
  const Case Cases[] = {
      {"<rect id='a' systemLanguage='fr' width='5' height='5'/><rect id='b' width='5' height='5'/>", "b"},
      {"<rect id='a' width='5' height='5'/><rect id='b' width='5' height='5'/>", "a"},
      {"<rect id='a' requiredExtensions='http://example.org/x' width='5' height='5'/>"
       "<rect id='b' requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape' width='5' height='5'/>"
       "<rect id='c' width='5' height='5'/>",
       "b"},
      {"<title>not graphic</title><rect id='a' systemLanguage='en' width='5' height='5'/>", "a"},
      {"<rect id='a' systemLanguage='fr' width='5' height='5'/><rect id='b' systemLanguage='de' width='5' height='5'/>",
       ""},
      // The chosen group draws all of its children; what follows it is left out.
      {"<g id='g'><rect id='a' width='5' height='5'/><rect id='b' width='5' height='5'/></g>"
       "<rect id='c' width='5' height='5'/>",
       "a,b"},
      // A child hidden by its style is still the one chosen, and then hides itself.
      {"<rect id='a' visibility='hidden' width='5' height='5'/><rect id='b' width='5' height='5'/>", ""},
  };
  for (const Case &C : Cases) {
    Load(QStringLiteral("<switch id='s'>%1</switch>").arg(QString::fromLatin1(C.Children)));
    EXPECT_EQ(Draw().join(QLatin1Char(',')), QString::fromLatin1(C.Drawn)) << C.Children;
  }
}

TEST_F(Structure, SwitchAsksItsOwnConditionsButNotItsVisibility)
{
  Load(QStringLiteral("<switch id='s' visibility='hidden'><rect id='a' visibility='visible' width='5' height='5'/>"
                      "</switch><switch id='t' systemLanguage='fr'><rect id='b' width='5' height='5'/></switch>"));
  EXPECT_TRUE(Element("s")->ShouldDraw());
  EXPECT_FALSE(Element("t")->ShouldDraw());
  EXPECT_EQ(Draw(), QStringList{QStringLiteral("a")});
}

TEST_F(Structure, DefsAreNeverDrawnYetStayReachable)
{
  Load(QStringLiteral("<defs id='d'><rect id='hidden' width='100' height='100' fill='red'/>"
                      "<g><rect id='deep' width='100' height='100' fill='red'/></g></defs>"
                      "<rect id='shown' x='50' width='50' height='100' fill='red'/>"));
  EXPECT_FALSE(Element("d")->ShouldDraw());
  EXPECT_EQ(Draw(), QStringList{QStringLiteral("shown")});
  EXPECT_FALSE(IsRed(10, 50));
  EXPECT_TRUE(IsRed(70, 50));
  EXPECT_NE(Element("hidden"), nullptr);
  EXPECT_NE(Element("deep"), nullptr);
}

TEST_F(Structure, SymbolBoundsFollowTheViewBoxWithSidesSwapped)
{
  struct Case {
    const char *Symbol;
    TRectF Bounds;
    bool SpecifiedAfter;
  };
  const Case Cases[] = {
      {"<symbol id='s' viewBox='0 0 20 10'/>", {0, 0, 10, 20}, true},
      {"<symbol id='s' viewBox='5 6 20 10'/>", {5, 6, 15, 26}, true},
      // Without a view box the rectangle is read, copied into the view box, and swapped back out.
      {"<symbol id='s' width='30' height='10'/>", {0, 0, 10, 30}, false},
      // Without any size the contents decide, and the derived view box counts as specified.
      {"<symbol id='s'><rect x='2' y='3' width='4' height='5'/></symbol>", {2, 3, 6, 8}, true},
  };
  for (const Case &C : Cases) {
    Load(QString::fromLatin1(C.Symbol));
    auto *Symbol = Element<TSVGSymbol>("s");
    ASSERT_NE(Symbol, nullptr) << C.Symbol;
    int Changes = 0;
    Document.OnChange = [&](TObject *) { ++Changes; };
    EXPECT_EQ(Symbol->GetBoundsRect(), C.Bounds) << C.Symbol;
    EXPECT_EQ(Symbol->IsViewBoxSpecified(), C.SpecifiedAfter) << C.Symbol;
    EXPECT_EQ(Changes, 0) << C.Symbol;
    Document.OnChange = nullptr;
  }
}

TEST_F(Structure, SymbolInTheTreeIsDrawnInPlace)
{
  Load(QStringLiteral("<symbol id='s' viewBox='0 0 50 50'><rect id='r' width='50' height='50' fill='red'/></symbol>"));
  EXPECT_EQ(Draw(), QStringList{QStringLiteral("r")});
  EXPECT_TRUE(IsRed(25, 25));
  EXPECT_FALSE(IsRed(75, 75));
}

// A 10 by 10 red square in a nested viewport of 100 by 50 at the origin, under each alignment. Overflow
// is visible so that slices show where they are aligned.
TEST_F(Structure, NestedSvgMapsItsViewBoxByPreserveAspectRatio)
{
  struct Case {
    const char *Aspect;
    int Left, Top, Right, Bottom;
  };
  const Case Cases[] = {
      {"xMinYMin meet", 0, 0, 50, 50},    {"xMidYMin meet", 25, 0, 75, 50},   {"xMaxYMin meet", 50, 0, 100, 50},
      {"xMinYMid meet", 0, 0, 50, 50},    {"xMidYMid", 25, 0, 75, 50},        {"xMaxYMax meet", 50, 0, 100, 50},
      {"xMinYMin slice", 0, 0, 100, 100}, {"xMidYMid slice", 0, -25, 100, 75}, {"xMaxYMax slice", 0, -50, 100, 50},
      {"xMinYMax slice", 0, -50, 100, 50}, {"none", 0, 0, 100, 50},
  };
  for (const Case &C : Cases) {
    Load(QStringLiteral("<svg width='100' height='50' viewBox='0 0 10 10' overflow='visible' "
                        "preserveAspectRatio='%1'><rect width='10' height='10' fill='red'/></svg>")
             .arg(QString::fromLatin1(C.Aspect)));
    Draw();
    for (int X = 2; X < 100; X += 4)
      for (int Y = 2; Y < 100; Y += 4) {
        const bool Inside = X > C.Left && X < C.Right && Y > C.Top && Y < C.Bottom;
        const bool Edge = std::abs(X - C.Left) < 2 || std::abs(X - C.Right) < 2 || std::abs(Y - C.Top) < 2 ||
                          std::abs(Y - C.Bottom) < 2;
        if (!Edge)
          ASSERT_EQ(IsRed(X, Y), Inside) << C.Aspect << " at " << X << "," << Y;
      }
  }
}

TEST_F(Structure, ViewportHidesOverflowOnlyWhenClippingIsOn)
{
  struct Case {
    const char *Overflow;
    bool ApplyClipping;
    bool Clipped;
  };
  const Case Cases[] = {
      {"", true, true},
      {"overflow='hidden'", true, true},
      {"overflow='visible'", true, false},
      {"overflow='auto'", true, false},
      {"", false, false},
      {"overflow='hidden'", false, false},
  };
  for (const Case &C : Cases) {
    Load(QStringLiteral("<svg x='25' y='25' width='50' height='50' viewBox='0 0 50 50' %1>"
                        "<rect x='-25' y='-25' width='100' height='100' fill='red'/></svg>")
             .arg(QString::fromLatin1(C.Overflow)));
    TSVGOptions Options = Document.GetOptions();
    C.ApplyClipping ? Options.Include(soApplyClipping) : Options.Exclude(soApplyClipping);
    Document.SetOptions(Options);
    Draw();
    EXPECT_TRUE(IsRed(50, 50)) << C.Overflow;
    EXPECT_TRUE(IsRed(30, 70)) << C.Overflow;
    // The viewport's clip reaches one unit beyond its rectangle.
    EXPECT_EQ(IsRed(10, 10), !C.Clipped) << C.Overflow << " " << C.ApplyClipping;
    EXPECT_EQ(IsRed(90, 50), !C.Clipped) << C.Overflow << " " << C.ApplyClipping;
  }
}

TEST_F(Structure, ViewBoxOfAtMostOneUnitScalesToOne)
{
  Load(QStringLiteral("<svg width='100' height='100' viewBox='0 0 1 1' preserveAspectRatio='none'>"
                      "<rect width='30' height='30' fill='red'/></svg>"));
  Draw();
  EXPECT_TRUE(IsRed(20, 20));
  EXPECT_FALSE(IsRed(40, 40));
}

TEST_F(Structure, GroupsAndSymbolsWriteTheirRectangle)
{
  Load(QStringLiteral("<g id='g'/><g id='empty'/><symbol id='s' viewBox='1 2 30 40'/>"));
  auto *Group = Element<TSVGGraphicElement>("g");
  Group->SetX(5);
  Group->SetWidth(20);
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Document.SaveToStream(Buffer);
  const QString Text = QString::fromUtf8(Buffer.data());
  EXPECT_TRUE(Text.contains(QStringLiteral("<g id=\"g\" x=\"5\" width=\"20\"/>"))) << Text.toStdString();
  EXPECT_TRUE(Text.contains(QStringLiteral("<g id=\"empty\"/>"))) << Text.toStdString();
  // The symbol writes its view box and the swapped sides it read from it.
  EXPECT_TRUE(Text.contains(QStringLiteral("viewBox=\"1 2 30 40\""))) << Text.toStdString();
  EXPECT_TRUE(Text.contains(QStringLiteral("x=\"1\" y=\"2\" width=\"40\" height=\"30\""))) << Text.toStdString();
}
