#include "support/PictureTest.h"
#include "text/VXSVGText.h"
#include "text/VXSVGTextVariant.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

using namespace vx;

namespace {

// Text pictures in a 200 by 200 document, one unit per pixel, in DejaVu Sans (registered by the
// test main) so that metrics do not depend on the machine's font configuration.
class TextTest : public TPictureTest
{
protected:
  TextTest() : TPictureTest(200) {}

  void LoadText(const QString &Body)
  {
    Load(QStringLiteral("<g font-family='DejaVu Sans' font-size='20'>%1</g>").arg(Body));
  }
  TSVGTextChunks Chunks(const char *Id)
  {
    TSVGCustomText &Text = Element<TSVGCustomText>(Id);
    TSVGTextChunks Result;
    Text.ChunkText(Canvas, VXIdentityMatrix, Result);
    return Result;
  }
  // The box of the outlines of an element's own characters.
  TRectF Ink(const char *Id) { return Element<TSVGCustomText>(Id).GetShape()->GetBounds(); }
  TRectF TreeBox(const char *Id) { return Element<TSVGCustomText>(Id).GetBoundsRect(); }
  QString Saved()
  {
    QBuffer Buffer;
    Buffer.open(QIODevice::ReadWrite);
    Document.SaveToStream(Buffer);
    return QString::fromUtf8(Buffer.data());
  }
  // The column range that holds ink in Image, or {-1, -1}.
  static std::pair<int, int> InkColumns(const QImage &Image)
  {
    int First = -1, Last = -1;
    for (int X = 0; X < Image.width(); ++X)
      for (int Y = 0; Y < Image.height(); ++Y)
        if (qAlpha(Image.pixel(X, Y)) > 0) {
          if (First < 0)
            First = X;
          Last = X;
          break;
        }
    return {First, Last};
  }

  QImage Scratch{4, 4, QImage::Format_ARGB32_Premultiplied};
  TVXGPCanvas Canvas{&Scratch};
};

std::vector<float> CharXs(const TSVGTextChunk &Chunk)
{
  std::vector<float> Result;
  for (const TSVGCharChunk &Char : Chunk.Chars)
    Result.push_back(Char.XSpecified ? Char.X : -1);
  return Result;
}

// --- model and chunks --------------------------------------------------------------------------

TEST_F(TextTest, EachSpecifiedXStartsAChunk)
{
  LoadText(QStringLiteral("<text id='t' x='1 2 3' y='50'>abcd</text>"));
  const TSVGTextChunks Result = Chunks("t");
  ASSERT_EQ(Result.size(), 3u);
  EXPECT_EQ(Result[0].Text, QStringLiteral("a"));
  EXPECT_EQ(Result[1].Text, QStringLiteral("b"));
  EXPECT_EQ(Result[2].Text, QStringLiteral("cd"));
  EXPECT_EQ(CharXs(Result[2]), (std::vector<float>{3, -1}));
  for (const TSVGTextChunk &Chunk : Result)
    EXPECT_EQ(Chunk.Text.size(), qsizetype(Chunk.Chars.size()));
}

TEST_F(TextTest, SpansTakeTheParentsListsAtItsRunningIndex)
{
  LoadText(QStringLiteral("<text id='t' x='1 2 3 4 5' rotate='10 20 30'>ab<tspan id='s'>cd</tspan>e</text>"));
  const TSVGTextChunks Result = Chunks("t");
  ASSERT_EQ(Result.size(), 5u);
  EXPECT_EQ(Result[2].Chars[0].Owner, &Element<TSVGCustomText>("s"));
  EXPECT_EQ(Result[2].Chars[0].X, 3);
  EXPECT_EQ(Result[3].Chars[0].X, 4);
  EXPECT_EQ(Result[4].Chars[0].X, 5);
  // The last rotate value goes on for the rest of the text, spans included.
  EXPECT_EQ(Result[1].Chars[0].Rotate, 20);
  EXPECT_EQ(Result[2].Chars[0].Rotate, 30);
  EXPECT_EQ(Result[4].Chars[0].Rotate, 30);
}

TEST_F(TextTest, ShortListsLeaveTheRestOfTheTextInOneChunk)
{
  LoadText(QStringLiteral("<text id='t' x='5' dx='1 2' rotate='7'>abc<tspan rotate='1'>de</tspan></text>"));
  const TSVGTextChunks Result = Chunks("t");
  ASSERT_EQ(Result.size(), 1u);
  EXPECT_EQ(Result[0].Text, QStringLiteral("abcde"));
  const TSVGCharChunks &C = Result[0].Chars;
  EXPECT_EQ(C[0].DX, 1);
  EXPECT_EQ(C[1].DX, 2);
  EXPECT_EQ(C[2].DX, 0);
  EXPECT_EQ(C[2].Rotate, 7);
  EXPECT_EQ(C[3].Rotate, 1);
  EXPECT_EQ(C[4].Rotate, 1);
}

TEST_F(TextTest, VerticalTextIsChunkedByY)
{
  LoadText(QStringLiteral("<text id='t' writing-mode='tb' x='1 2 3' y='10 20'>abc</text>"));
  const TSVGTextChunks Result = Chunks("t");
  ASSERT_EQ(Result.size(), 2u);
  EXPECT_EQ(Result[1].Text, QStringLiteral("bc"));
}

TEST_F(TextTest, WhiteSpaceCollapsesAndSeparatesSpans)
{
  LoadText(QStringLiteral("<text id='t'>\n   a   long\n  <tspan>word</tspan> and\n</text>"));
  EXPECT_EQ(Element<TSVGCustomText>("t").GetLineText(), QStringLiteral("a long word and"));
  EXPECT_EQ(Element<TSVGCustomText>("t").Count(), 2);
}

TEST_F(TextTest, EmptyTextStillLaysOutItsChildren)
{
  LoadText(QStringLiteral("<text id='t' x='10' y='50'><tspan id='s'>ab</tspan></text>"));
  const TSVGTextChunks Result = Chunks("t");
  ASSERT_EQ(Result.size(), 1u);
  EXPECT_EQ(Result[0].Chars[0].X, 10);
  EXPECT_FALSE(Ink("s").IsEmpty());
  EXPECT_TRUE(Ink("t").IsEmpty());
}

TEST(TextVariant, TitleCaseCapitalisesAfterWhiteSpaceOnly)
{
  EXPECT_EQ(VariantText(fvTitleCase, QStringLiteral("a-b c")), QStringLiteral("A-b C"));
  EXPECT_EQ(VariantText(fvUpperCase, QStringLiteral("aB")), QStringLiteral("AB"));
  EXPECT_EQ(VariantText(fvSmallCaps, QStringLiteral("aB")), QStringLiteral("aB"));
}

// --- layout ------------------------------------------------------------------------------------

TEST_F(TextTest, AnchorsMoveTheInkByItsWidth)
{
  LoadText(QStringLiteral("<text id='s' x='100' y='50'>Anchor</text>"
                          "<text id='m' x='100' y='100' text-anchor='middle'>Anchor</text>"
                          "<text id='e' x='100' y='150' text-anchor='end'>Anchor</text>"));
  const TRectF Start = Ink("s"), Middle = Ink("m"), End = Ink("e");
  EXPECT_NEAR(Start.Left, 100, 0.01);
  EXPECT_NEAR((Middle.Left + Middle.Right) / 2, 100, 0.01);
  EXPECT_NEAR(End.Right, 100, 0.01);
  EXPECT_NEAR(Middle.Width(), Start.Width(), 0.01);
}

TEST_F(TextTest, RightToLeftSwapsStartAndEnd)
{
  LoadText(QStringLiteral("<text id='t' x='100' y='50' direction='rtl'>ab</text>"));
  EXPECT_NEAR(Ink("t").Right, 100, 0.01);
}

TEST_F(TextTest, SpacingKerningAndBlanksChangeTheAdvance)
{
  LoadText(QStringLiteral("<text id='plain' x='10' y='30'>ab</text>"
                          "<text id='spaced' x='10' y='60' letter-spacing='10'>ab</text>"
                          "<text id='stacked' x='10' y='90' kerning='0'>lll</text>"
                          "<text id='one' x='10' y='120'>l</text>"
                          "<text id='blank' x='10' y='150'>a b</text>"
                          "<text id='hyphen' x='10' y='180'>a-b</text>"));
  EXPECT_NEAR(Ink("spaced").Width() - Ink("plain").Width(), 10, 0.01);
  // A set kerning replaces the advance: with 0 every glyph lands on the first.
  EXPECT_NEAR(Ink("stacked").Width(), Ink("one").Width(), 0.01);
  // A blank advances as far as a hyphen.
  EXPECT_NEAR(Ink("blank").Right, Ink("hyphen").Right, 0.01);
}

TEST_F(TextTest, DxAccumulatesAlongTheLine)
{
  LoadText(QStringLiteral("<text id='plain' x='10' y='30'>abc</text>"
                          "<text id='moved' x='10' y='60' dx='0 5 5'>abc</text>"));
  EXPECT_NEAR(Ink("moved").Right - Ink("plain").Right, 10, 0.01);
}

TEST_F(TextTest, BaselineShiftAndSmallCaps)
{
  LoadText(QStringLiteral("<text id='base' x='10' y='50'>X</text>"
                          "<text id='sub' x='60' y='50' baseline-shift='sub'>X</text>"
                          "<text id='super' x='110' y='50' baseline-shift='super'>X</text>"
                          "<text id='caps' x='10' y='100' font-variant='small-caps'>x</text>"
                          "<text id='capital' x='60' y='100'>X</text>"));
  EXPECT_NEAR(Ink("sub").Top - Ink("base").Top, 0.4 * 20, 0.01);
  EXPECT_NEAR(Ink("base").Top - Ink("super").Top, 0.4 * 20, 0.01);
  EXPECT_NEAR(Ink("caps").Height() / Ink("capital").Height(), 0.66, 0.01);
}

TEST_F(TextTest, RotateTurnsSingleGlyphs)
{
  LoadText(QStringLiteral("<text id='upright' x='50' y='50'>l</text>"
                          "<text id='turned' x='50' y='100' rotate='90'>l</text>"));
  const TRectF Upright = Ink("upright"), Turned = Ink("turned");
  EXPECT_GT(Upright.Height(), Upright.Width());
  EXPECT_GT(Turned.Width(), Turned.Height());
}

TEST_F(TextTest, VerticalTextAdvancesDownwards)
{
  LoadText(QStringLiteral("<text id='side' x='100' y='20' writing-mode='tb'>mmmm</text>"
                          "<text id='upright' x='50' y='20' writing-mode='tb' glyph-orientation-vertical='0'>mmmm</text>"
                          "<text id='row' x='10' y='190'>mmmm</text>"));
  const TRectF Side = Ink("side"), Upright = Ink("upright"), Row = Ink("row");
  EXPECT_GT(Side.Height(), Side.Width());
  // Western glyphs lie on their side and advance by their width; upright ones by their height.
  EXPECT_NEAR(Side.Height(), Row.Width(), 1.0);
  EXPECT_GT(Upright.Height(), Upright.Width());
  EXPECT_LT(Upright.Width(), Row.Width() / 3);
}

TEST_F(TextTest, DecorationRunsUnderTheWholeLine)
{
  LoadText(QStringLiteral("<text id='t' x='10' y='50' text-decoration='underline'>ab <tspan>cd</tspan></text>"
                          "<text id='plain' x='10' y='100'>ab <tspan>cd</tspan></text>"));
  // The line adds ink below the baseline across both spans.
  const TRectF Decorated = TreeBox("t"), Plain = TreeBox("plain");
  EXPECT_GT(Decorated.Bottom - 50, Plain.Bottom - 100);
  // It runs from pen to pen, a little past the ink at both ends.
  EXPECT_GE(Decorated.Width(), Plain.Width());
  EXPECT_LT(Decorated.Width(), Plain.Width() + 6);
}

// --- drawing -----------------------------------------------------------------------------------

TEST_F(TextTest, GradientFillAndStrokeReachTheOutlines)
{
  Load(QStringLiteral("<defs><linearGradient id='g'><stop offset='0' stop-color='red'/>"
                      "<stop offset='1' stop-color='blue'/></linearGradient></defs>"
                      "<text id='t' x='0' y='150' font-family='DejaVu Sans' font-size='190' font-weight='bold' "
                      "fill='url(#g)'>II</text>"
                      "<text x='0' y='190' font-family='DejaVu Sans' font-size='40' fill='none' stroke='lime' "
                      "stroke-width='6'>I</text>"));
  const QImage Image = Render();
  const TRectF Box = TreeBox("t");
  const QRgb Left = Image.pixel(int(Box.Left) + 8, 100), Right = Image.pixel(int(Box.Right) - 8, 100);
  EXPECT_GT(qRed(Left), qBlue(Left));
  EXPECT_GT(qBlue(Right), qRed(Right));
  bool Stroked = false;
  for (int X = 0; X < 40; ++X)
    for (int Y = 150; Y < 200; ++Y)
      Stroked |= Image.pixel(X, Y) == Lime;
  EXPECT_TRUE(Stroked);
}

TEST_F(TextTest, SpansDrawWithTheirOwnPaint)
{
  LoadText(QStringLiteral("<text x='10' y='100' font-size='80' fill='blue'>I<tspan id='s' fill='red'>I</tspan></text>"));
  const QImage Image = Render();
  const TRectF Span = Ink("s");
  EXPECT_EQ(Image.pixel(int((Span.Left + Span.Right) / 2), int((Span.Top + Span.Bottom) / 2)), Red);
}

TEST_F(TextTest, FillRoadAnchorsARunAtOnce)
{
  Document.SetOptions(Document.GetOptions() | TSVGOptions{soUseFillText});
  LoadText(QStringLiteral("<text x='100' y='100' font-size='40' text-anchor='middle' fill='black'>Anchor</text>"));
  const auto [First, Last] = InkColumns(Render());
  ASSERT_GE(First, 0);
  EXPECT_NEAR((First + Last) / 2.0, 100, 3);
}

TEST_F(TextTest, FillRoadDrawsCharacterByCharacterFromThePen)
{
  Document.SetOptions(Document.GetOptions() | TSVGOptions{soUseFillText});
  LoadText(QStringLiteral("<text x='50 150' y='100' font-size='40' text-anchor='middle'>II</text>"));
  const QImage Image = Render();
  // Per-character positions force the second form, where the anchor plays no part.
  const auto [First, Last] = InkColumns(Image);
  EXPECT_GE(First, 50);
  EXPECT_GT(Last, 150);
}

TEST_F(TextTest, TextRefShowsItsTargetsText)
{
  LoadText(QStringLiteral("<defs><text id='source'>Hello</text></defs>"
                          "<text x='10' y='50'><tref id='r' xlink:href='#source'/></text>"
                          "<text x='10' y='100'><tref id='missing' xlink:href='#nothing'/></text>"));
  EXPECT_EQ(Element<TSVGCustomText>("r").GetText(), QStringLiteral("Hello"));
  EXPECT_FALSE(Ink("r").IsEmpty());
  EXPECT_TRUE(Element<TSVGCustomText>("missing").GetText().isEmpty());
  Element<TSVGCustomText>("source").SetText(QStringLiteral("Hi"));
  EXPECT_EQ(Element<TSVGCustomText>("r").GetText(), QStringLiteral("Hi"));
}

TEST_F(TextTest, ChangingASpanRebuildsTheOutlines)
{
  LoadText(QStringLiteral("<text id='t' x='10' y='50'>a<tspan id='s'>b</tspan></text>"));
  const float Before = TreeBox("t").Width();
  Element<TSVGCustomText>("s").SetText(QStringLiteral("bbbb"));
  EXPECT_GT(TreeBox("t").Width(), Before + 20);
  EXPECT_FALSE(Ink("s").IsEmpty());
}

TEST_F(TextTest, HitTestingFindsTheElementThatOwnsTheGlyph)
{
  LoadText(QStringLiteral("<text id='t' x='10' y='100' font-size='80'>I<tspan id='s'>I</tspan></text>"));
  const TRectF Own = Ink("t"), Span = Ink("s");
  auto Hit = [&](float X, float Y) {
    const TSVGGraphicElement *Found = Document.ElementAtPos(Canvas, {X, Y}, {0, 0, 200, 200}, {});
    return Found ? Found->ID() : QString();
  };
  EXPECT_EQ(Hit((Own.Left + Own.Right) / 2, (Own.Top + Own.Bottom) / 2), QStringLiteral("t"));
  EXPECT_EQ(Hit((Span.Left + Span.Right) / 2, (Span.Top + Span.Bottom) / 2), QStringLiteral("s"));
  EXPECT_EQ(Hit(150, 180), QString());
}

TEST_F(TextTest, TextClipsLikeAShape)
{
  Load(QStringLiteral("<clipPath id='c'><text x='10' y='150' font-family='DejaVu Sans' font-size='180' "
                      "font-weight='bold'>I</text></clipPath>"
                      "<rect width='200' height='200' fill='lime' clip-path='url(#c)'/>"));
  const QImage Image = Render();
  int Inside = 0;
  for (int X = 0; X < 200; ++X)
    Inside += Image.pixel(X, 100) == Lime;
  EXPECT_GT(Inside, 10);
  EXPECT_EQ(Image.pixel(190, 100), NoColor);
}

// --- text on a path ----------------------------------------------------------------------------

TEST_F(TextTest, TextPathPlacesGlyphsAlongThePath)
{
  LoadText(QStringLiteral("<path id='h' d='M20 50 H190'/><path id='v' d='M100 20 V190'/>"
                          "<text><textPath id='along' xlink:href='#h' startOffset='10'>mmm</textPath></text>"
                          "<text><textPath id='down' xlink:href='#v'>mmm</textPath></text>"));
  const TRectF Along = Ink("along"), Down = Ink("down");
  EXPECT_GT(Along.Width(), Along.Height());
  EXPECT_NEAR(Along.Bottom, 50, 1.5);
  EXPECT_GE(Along.Left, 30 - 1);
  // On a vertical path the glyphs lie on their side.
  EXPECT_GT(Down.Height(), Down.Width());
  EXPECT_NEAR((Down.Left + Down.Right) / 2, 100, 8);
}

TEST_F(TextTest, TextPathClipsWhatDoesNotFit)
{
  LoadText(QStringLiteral("<path id='p' d='M20 50 H60'/>"
                          "<text><textPath id='long' xlink:href='#p'>mmmmmmmmmm</textPath></text>"
                          "<text><textPath id='missing' xlink:href='#none'>abc</textPath></text>"
                          "<text><textPath id='middle' xlink:href='#p' startOffset='50%' "
                          "text-anchor='middle'>i</textPath></text>"));
  EXPECT_LE(Ink("long").Right, 60 + 10);
  EXPECT_TRUE(Ink("missing").IsEmpty());
  EXPECT_NEAR((Ink("middle").Left + Ink("middle").Right) / 2, 40, 2);
}

// --- saving and copying ------------------------------------------------------------------------

TEST_F(TextTest, RoundTripKeepsContentAndPositions)
{
  LoadText(QStringLiteral("<text id='t' x='10 20 30' y='50' dy='1 2' rotate='5'>ab<tspan fill='red'>cd</tspan> "
                          "e</text><text id='z' x='0' y='0'>z</text>"));
  const QString Text = Saved();
  TSVGDocument Copy;
  Copy.LoadFromText(Text);
  auto *Loaded = dynamic_cast<TSVGCustomText *>(Copy.AllItems().Elements(QStringLiteral("t")));
  ASSERT_NE(Loaded, nullptr) << Text.toStdString();
  EXPECT_EQ(Loaded->GetLineText(), Element<TSVGCustomText>("t").GetLineText());
  EXPECT_EQ(Loaded->GetXStr(), QStringLiteral("10 20 30"));
  EXPECT_EQ(Loaded->GetDYStr(), QStringLiteral("1 2"));
  EXPECT_EQ(Loaded->GetRotateStr(), QStringLiteral("5"));
  // Compact output leaves out a single zero, keeps lists.
  Document.SetOptions(Document.GetOptions() | TSVGOptions{soCompactExport});
  const QString Compact = Saved();
  EXPECT_FALSE(Compact.contains(QStringLiteral("x=\"0\"")));
  EXPECT_TRUE(Compact.contains(QStringLiteral("x=\"10 20 30\"")));
}

TEST_F(TextTest, TextPathSavedAfterDrawingWritesEveryPosition)
{
  LoadText(QStringLiteral("<path id='p' d='M20 50 H190'/>"
                          "<text><textPath id='tp' xlink:href='#p' method='stretch' startOffset='25%'>abc</textPath></text>"));
  Render();
  const QString Text = Saved();
  EXPECT_TRUE(Text.contains(QStringLiteral("method=\"stretch\""))) << Text.toStdString();
  EXPECT_TRUE(Text.contains(QStringLiteral("startOffset=\"25%\""))) << Text.toStdString();
  // Children of a text are written as spans: the placement survives as absolute positions.
  TSVGDocument Copy;
  Copy.LoadFromText(Text);
  auto *Loaded = dynamic_cast<TSVGCustomText *>(Copy.AllItems().Elements(QStringLiteral("tp")));
  ASSERT_NE(Loaded, nullptr);
  EXPECT_EQ(Loaded->XList().Count(), 3);
  EXPECT_EQ(Loaded->RotateList().size(), 3u);
  EXPECT_EQ(Loaded->GetXStr(), Element<TSVGCustomText>("tp").GetXStr());
  EXPECT_EQ(Loaded->GetYStr(), QStringLiteral("50 50 50"));
}

TEST_F(TextTest, CopyOfATextRefKeepsReferenceAndText)
{
  LoadText(QStringLiteral("<text id='source'>Hello</text><text><tref id='r' xlink:href='#source'/></text>"));
  TSVGTextRef Copy(&Document);
  Copy.Assign(&Element<TSVGTextRef>("r"));
  EXPECT_EQ(Copy.Reference(), QStringLiteral("source"));
  Copy.SetReference(QString());
  EXPECT_EQ(Copy.GetText(), QStringLiteral("Hello"));
}

// --- hostile input -----------------------------------------------------------------------------

TEST_F(TextTest, ReferencesToThemselvesEnd)
{
  LoadText(QStringLiteral("<text id='self' x='10' y='50'><tref id='r' xlink:href='#self'/>x</text>"
                          "<text><textPath id='loop' xlink:href='#loop'>abc</textPath></text>"));
  Render();
  EXPECT_TRUE(Ink("loop").IsEmpty());
  EXPECT_TRUE(Element<TSVGCustomText>("r").GetText().isEmpty());
}

TEST_F(TextTest, ReferencesSurviveRenamedClearedAndFreedTargets)
{
  LoadText(QStringLiteral("<text id='a'>x</text><text id='b'>y</text><text id='host'><tref id='r' xlink:href='#a'/>"
                          "<tref id='q' xlink:href='#b'/></text><use id='u' xlink:href='#a'/>"));
  auto &A = Element<TSVGCustomText>("a");
  auto &B = Element<TSVGCustomText>("b");
  Element<TSVGTextRef>("r").SetReference(QStringLiteral("b"));
  Element<TSVGTextRef>("r").SetReference(QStringLiteral("a"));
  // A renamed target and a cleared one no longer know their listeners by id or at all; the
  // listeners going away must neither leave themselves behind nor touch what forgot them.
  A.SetID(QStringLiteral("renamed"));
  B.Clear();
  delete &Element("host");
  delete &Element("u");
  A.SetText(QStringLiteral("changed"));
  EXPECT_EQ(A.Listeners().Count(), 0);
  delete &B;
  Render();
}

TEST_F(TextTest, DeepSpanNestingAndLongTextDraw)
{
  QString Body = QStringLiteral("<text x='0' y='50'>");
  for (int I = 0; I < 200; ++I)
    Body += QStringLiteral("<tspan>a");
  for (int I = 0; I < 200; ++I)
    Body += QStringLiteral("</tspan>");
  Body += QStringLiteral("</text><text id='long' x='0' y='100'>") + QString(20000, QLatin1Char('w')) +
          QStringLiteral("</text>");
  LoadText(Body);
  Render();
  EXPECT_GT(Ink("long").Width(), 1000);
}

} // namespace
