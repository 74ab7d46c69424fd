#include "structure/VXSVGUse.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>

#include <map>

using namespace vx;

namespace {

class UseElement : public TPictureTest
{
protected:
  // Every element's parent, to see that lending gave each one back.
  std::map<const TSVGElement *, const TSVGElement *> Parents() const
  {
    std::map<const TSVGElement *, const TSVGElement *> Result;
    for (const QString &Id : Document.AllItems().Keys())
      if (const TSVGElement *E = Document.AllItems().Elements(Id))
        Result[E] = E->Parent();
    return Result;
  }
};

TEST_F(UseElement, DrawsTheTargetMovedByXAndY)
{
  Load(QStringLiteral("<defs><rect id='t' width='5' height='5' fill='red'/></defs>"
                      "<use id='u' xlink:href='#t' x='10' y='2'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(12, 4), Red);
  EXPECT_EQ(Image.pixel(2, 4), NoColor);
  const TRectF Bounds = Element("u").GetBoundsRect();
  EXPECT_FLOAT_EQ(Bounds.Left, 10);
  EXPECT_FLOAT_EQ(Bounds.Top, 2);
  EXPECT_FLOAT_EQ(Bounds.Right, 15);
  EXPECT_FLOAT_EQ(Bounds.Bottom, 7);
}

TEST_F(UseElement, TargetInheritsFromTheUseAndGetsItsStateBack)
{
  Load(QStringLiteral("<defs id='d' fill='green'><rect id='t' width='10' height='10'/></defs>"
                      "<use xlink:href='#t' fill='red'/><use xlink:href='#t' x='10' fill='blue'/>"));
  const auto Before = Parents();
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(5, 5), Red);
  EXPECT_EQ(Image.pixel(15, 5), Blue);
  EXPECT_EQ(Parents(), Before);
  EXPECT_EQ(Element("t").Parent(), &Element("d"));
  // Resolved again under its own parent.
  EXPECT_EQ(Element("t").GetBrush().GetColor(), Green);
}

TEST_F(UseElement, TargetsOwnFillIsKept)
{
  Load(QStringLiteral("<defs><rect id='t' width='10' height='10' fill='blue'/></defs>"
                      "<use xlink:href='#t' fill='red'/>"));
  EXPECT_EQ(Render().pixel(5, 5), Blue);
}

TEST_F(UseElement, SymbolViewBoxMapsIntoTheUseRectangle)
{
  Load(QStringLiteral("<defs><symbol id='s' viewBox='0 0 10 10'>"
                      "<rect width='10' height='10' fill='green'/></symbol></defs>"
                      "<use id='u' xlink:href='#s' x='10' y='0' width='10' height='10'/>"));
  QImage Image = Render();
  EXPECT_EQ(Image.pixel(15, 5), Green);
  EXPECT_EQ(Image.pixel(5, 5), NoColor);
  EXPECT_EQ(Image.pixel(15, 15), NoColor);

  // Twice the size: the symbol scales with the viewport.
  Load(QStringLiteral("<defs><symbol id='s' viewBox='0 0 10 10'>"
                      "<rect width='5' height='5' fill='green'/></symbol></defs>"
                      "<use xlink:href='#s' width='20' height='20'/>"));
  Image = Render();
  EXPECT_EQ(Image.pixel(8, 8), Green);
  EXPECT_EQ(Image.pixel(12, 12), NoColor);
}

TEST_F(UseElement, SymbolFollowsTheTransformOfTheUseOnce)
{
  Load(QStringLiteral("<defs><symbol id='s' viewBox='0 0 10 10'>"
                      "<rect width='10' height='10' fill='green'/></symbol></defs>"
                      "<use xlink:href='#s' width='10' height='10' transform='translate(5,0)'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(3, 5), NoColor);
  EXPECT_EQ(Image.pixel(12, 5), Green);
  EXPECT_EQ(Image.pixel(17, 5), NoColor);
}

TEST_F(UseElement, NestedDocumentTarget)
{
  Load(QStringLiteral("<defs><svg id='n' width='10' height='10' viewBox='0 0 10 10'>"
                      "<rect width='10' height='10' fill='red'/></svg></defs>"
                      "<use xlink:href='#n' x='10' y='10' width='10' height='10'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(15, 15), Red);
  EXPECT_EQ(Image.pixel(5, 5), NoColor);
}

TEST_F(UseElement, MissingOrUnsuitableTargetDrawsNothing)
{
  for (const char *Body : {"<use xlink:href='#nowhere'/>", "<use/>", "<use id='u' xlink:href='#u' display='none'/>"}) {
    SCOPED_TRACE(Body);
    Load(QString::fromLatin1(Body));
    QImage Image;
    EXPECT_NO_THROW(Image = Render());
    EXPECT_EQ(Image.pixel(10, 10), NoColor);
  }
}

TEST_F(UseElement, TargetFoundWhenItAppearsLater)
{
  Load(QStringLiteral("<use id='u' xlink:href='#later'/>"
                      "<defs><rect id='t' width='10' height='10' fill='red'/></defs>"));
  EXPECT_EQ(Render().pixel(5, 5), NoColor);
  Element("t").SetID(QStringLiteral("later"));
  EXPECT_EQ(Render().pixel(5, 5), Red);
}

TEST_F(UseElement, DeletingTheTargetEmptiesAJoinedReference)
{
  Load(QStringLiteral("<defs id='d'><rect id='t' width='10' height='10' fill='red'/></defs>"
                      "<use id='u' xlink:href='#t'/>"));
  auto &Use = Element<TSVGUse>("u");
  // Loading does not join the target's listeners; setting the reference does.
  EXPECT_EQ(Element("t").Listeners().Count(), 0);
  Use.SetReference(QString());
  Use.SetReference(QStringLiteral("t"));
  EXPECT_EQ(Element("t").Listeners().Count(), 1);
  EXPECT_EQ(Render().pixel(5, 5), Red);

  TSVGElement &Defs = Element("d");
  Defs.Items().Remove(Defs.Items()[0]);
  EXPECT_EQ(Use.Reference(), QString());
  EXPECT_EQ(Render().pixel(5, 5), NoColor);

  QBuffer Saved;
  Saved.open(QIODevice::WriteOnly);
  Document.SaveToStream(Saved);
  EXPECT_FALSE(Saved.data().contains("href")) << Saved.data().constData();
}

TEST_F(UseElement, DeletingTheUseLeavesTheTargetsListeners)
{
  Load(QStringLiteral("<rect id='t' width='10' height='10'/><use id='u' xlink:href='#t'/>"));
  Element<TSVGUse>("u").SetReference(QString());
  Element<TSVGUse>("u").SetReference(QStringLiteral("t"));
  ASSERT_EQ(Element("t").Listeners().Count(), 1);
  Document.Items().Remove(&Element("u"));
  EXPECT_EQ(Element("t").Listeners().Count(), 0);
}

TEST_F(UseElement, TargetThatForgotItsListenersGoesQuietly)
{
  Load(QStringLiteral("<g id='t'><rect width='10' height='10'/></g><use id='u' xlink:href='#t'/>"));
  Element<TSVGUse>("u").SetReference(QString());
  Element<TSVGUse>("u").SetReference(QStringLiteral("t"));
  // Clearing empties the listeners without telling them; the target then goes.
  Element("t").Clear();
  Document.Items().Remove(&Element("t"));
  Document.Items().Remove(&Element("u"));
  EXPECT_EQ(Document.Count(), 0);
}

TEST_F(UseElement, CopiesJoinTheListeners)
{
  Load(QStringLiteral("<rect id='t' width='10' height='10'/><use id='u' xlink:href='#t'/>"));
  std::unique_ptr<TSVGElement> Copy(Element("u").Clone(&Document));
  EXPECT_EQ(static_cast<TSVGUse &>(*Copy).Reference(), QStringLiteral("t"));
  EXPECT_EQ(Element("t").Listeners().Count(), 1);
  Copy.reset();
  EXPECT_EQ(Element("t").Listeners().Count(), 0);
}

TEST_F(UseElement, SavesItsReferenceAndRectangle)
{
  Load(QStringLiteral("<rect id='t' width='10' height='10'/><use id='u' xlink:href='#t' x='3'/>"));
  QBuffer Saved;
  Saved.open(QIODevice::WriteOnly);
  Document.SaveToStream(Saved);
  TSVGDocument Reloaded;
  Reloaded.LoadFromText(QString::fromUtf8(Saved.data()));
  auto *Use = dynamic_cast<TSVGUse *>(Reloaded.AllItems().Elements(QStringLiteral("u")));
  ASSERT_NE(Use, nullptr);
  EXPECT_EQ(Use->Reference(), QStringLiteral("t"));
  EXPECT_FLOAT_EQ(Use->GetX(), 3);
}

// Each document names an element from inside itself. Drawing, hit testing and measuring must end
// quickly, skip the repetition, draw the rest (the red square at the bottom right) and leave every
// parent as it was.
const char *const CycleCases[] = {
  "<use id='u' xlink:href='#u'/>",
  "<g id='g'><use xlink:href='#g' x='5'/></g>",
  "<use id='a' xlink:href='#b'/><use id='b' xlink:href='#a'/>",
  "<g id='g1'><use xlink:href='#g2'/></g><g id='g2'><use xlink:href='#g1'/></g>",
  "<defs><g id='g'><use xlink:href='#g'/><use xlink:href='#g'/><use xlink:href='#g'/><use xlink:href='#g'/>"
  "<use xlink:href='#g'/><use xlink:href='#g'/><use xlink:href='#g'/><use xlink:href='#g'/></g></defs>"
  "<use xlink:href='#g'/>",
  "<defs><symbol id='s' viewBox='0 0 10 10'><use xlink:href='#s' width='10' height='10'/></symbol></defs>"
  "<use xlink:href='#s' width='10' height='10'/>",
};

TEST_F(UseElement, CyclesAreSkippedWithinASecond)
{
  QImage Image(20, 20, QImage::Format_ARGB32_Premultiplied);
  for (const char *Body : CycleCases) {
    SCOPED_TRACE(Body);
    Load(QString::fromLatin1(Body) + QStringLiteral("<rect x='15' y='15' width='5' height='5' fill='red'/>"));
    const auto Before = Parents();
    QElapsedTimer Timer;
    Timer.start();
    Image.fill(Qt::transparent);
    {
      TVXGPCanvas Canvas(&Image);
      Document.Draw(Canvas, TRectF{0, 0, 20, 20});
      EXPECT_EQ(Document.ElementAtPos(Canvas, TPointF{2, 2}, TRectF{0, 0, 20, 20}, {foFindHiddenElements}), nullptr);
    }
    Document.GetBoundsRect(VXIdentityMatrix);
    EXPECT_LT(Timer.elapsed(), 1000);
    EXPECT_EQ(Image.pixel(17, 17), Red);
    EXPECT_EQ(Image.pixel(2, 2), NoColor);
    EXPECT_EQ(Parents(), Before);
  }
}

TEST_F(UseElement, RepetitionIsSkippedButTheRestOfTheTargetDrawn)
{
  Load(QStringLiteral("<g id='g'><use id='u' xlink:href='#g' x='10'/><rect width='5' height='5' fill='red'/></g>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(2, 2), Red);
  EXPECT_EQ(Image.pixel(12, 2), NoColor);
  // Measuring does not count the skipped repetition either.
  const TRectF Bounds = Element("g").GetBoundsRect();
  EXPECT_FLOAT_EQ(Bounds.Right, 5);
}

// A chain of uses, each naming the next, ending at a rect.
QString UseChain(int Length)
{
  QString Body = QStringLiteral("<defs><rect id='u%1' width='10' height='10' fill='red'/>").arg(Length);
  for (int I = Length - 1; I > 0; --I)
    Body += QStringLiteral("<use id='u%1' xlink:href='#u%2'/>").arg(I).arg(I + 1);
  return Body + QStringLiteral("</defs><use xlink:href='#u1'/>");
}

TEST_F(UseElement, ChainsOfUsesDrawUpToTheNestingLimit)
{
  Load(UseChain(50));
  EXPECT_EQ(Render().pixel(5, 5), Red);
  Load(UseChain(TSVGUse::MaxUseNesting + 10));
  EXPECT_EQ(Render().pixel(5, 5), NoColor);
}

} // namespace
