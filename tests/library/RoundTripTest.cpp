#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVG.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QImage>

using namespace vx;

namespace {

// Pictures that exercise what saving writes: shapes of every kind, units, styles and transforms.
const char *const Pictures[] = {
    "<svg xmlns='http://www.w3.org/2000/svg' width='60' height='40' viewBox='0 0 120 80'>"
    "<rect x='10' y='10' width='50' height='30' rx='6' fill='#336699' stroke='red' stroke-width='3'/>"
    "<circle cx='90' cy='25' r='15' style='fill:lime; fill-opacity:0.5'/>"
    "<ellipse cx='90' cy='60' rx='20' ry='8' fill='none' stroke='navy' stroke-dasharray='4 2'/>"
    "<line x1='0' y1='79' x2='120' y2='70' stroke='black'/>"
    "<polyline points='5,75 20,50 35,75' fill='none' stroke='purple' stroke-linejoin='round'/>"
    "<polygon points='50,75 60,55 70,75' fill='orange' fill-rule='evenodd'/></svg>",
    "<svg xmlns='http://www.w3.org/2000/svg' width='50' height='50'>"
    "<g transform='translate(25 25) rotate(30)' opacity='0.8' fill='teal'>"
    "<path d='M-20-20 h40 v40 h-40 z M-10-10 v20 h20 v-20 z' fill-rule='evenodd'/>"
    "<path d='M-20 10 a10 10 0 0 1 20 0' stroke='maroon' stroke-width='2' fill='none'/></g></svg>",
    "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
    "<style>.a { fill: gold } #b { stroke: black; stroke-width: 4 }</style>"
    "<rect class='a' width='20' height='20'/><rect id='b' x='20' y='20' width='15' height='15'/></svg>",
};

QImage Render(TSVGDocument &Document)
{
  const TRectF Box = Document.ViewBox().Specified() ? Document.ViewBox().GetRect() : Document.GetBoundsRect();
  const int Width = qBound(1, int(Document.GetWidth() > 0 ? Document.GetWidth() : Box.Width()), 512);
  const int Height = qBound(1, int(Document.GetHeight() > 0 ? Document.GetHeight() : Box.Height()), 512);
  QImage Image(Width, Height, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&Image);
    Document.Draw(Canvas, TRectF{0, 0, float(Width), float(Height)});
  }
  return Image;
}

QString SaveText(TSVGDocument &Document)
{
  QBuffer Buffer;
  Buffer.open(QIODevice::ReadWrite);
  Document.SaveToStream(Buffer);
  return QString::fromUtf8(Buffer.data());
}

// Load, save and load again must draw the same pixels as the first load.
void ExpectSameAfterRoundTrip(const QString &Text, const std::string &Name)
{
  TSVGDocument Original;
  Original.LoadFromText(Text);
  const QString Saved = SaveText(Original);
  TSVGDocument Copy;
  Copy.LoadFromText(Saved);
  const QImage Before = Render(Original);
  const QImage After = Render(Copy);
  ASSERT_EQ(Before.size(), After.size()) << Name;
  int Differ = 0;
  for (int Y = 0; Y < Before.height(); ++Y)
    for (int X = 0; X < Before.width(); ++X)
      Differ += Before.pixel(X, Y) != After.pixel(X, Y);
  EXPECT_EQ(Differ, 0) << Name << "\n" << Saved.toStdString();
}

} // namespace

TEST(RoundTrip, SavedPicturesDrawTheSamePixels)
{
  int Index = 0;
  for (const char *Picture : Pictures)
    ExpectSameAfterRoundTrip(QString::fromUtf8(Picture), "picture " + std::to_string(Index++));
}

TEST(RoundTrip, ExamplesDrawTheSamePixels)
{
  const QDir Examples(qEnvironmentVariable("VXSVG_EXAMPLES"));
  const QStringList Files = Examples.entryList({QStringLiteral("*.svg")}, QDir::Files);
  ASSERT_FALSE(Files.isEmpty()) << Examples.path().toStdString();
  for (const QString &File : Files) {
    QFile Input(Examples.filePath(File));
    ASSERT_TRUE(Input.open(QIODevice::ReadOnly));
    const QString Text = QString::fromUtf8(Input.readAll());
    // Children of a text are written as spans: text on a path comes back as positioned glyphs,
    // which TextTest checks on its own.
    if (!Text.contains(QLatin1String("<textPath")))
      ExpectSameAfterRoundTrip(Text, File.toStdString());
  }
}

TEST(RoundTrip, LongPathDataIsWrappedAndReadsBackTheSame)
{
  QString Data = QStringLiteral("M0 0");
  for (int I = 1; I <= 200; ++I)
    Data += QStringLiteral(" L%1 %2").arg(I).arg(I % 7);
  TSVGDocument Original;
  Original.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='200' height='10'>"
                                       "<path id='p' fill='none' stroke='black' d='%1'/></svg>")
                            .arg(Data));
  QBuffer Buffer;
  Buffer.open(QIODevice::ReadWrite);
  Original.SaveToStream(Buffer, 60);
  const QString Saved = QString::fromUtf8(Buffer.data());
  // Only path data is wrapped, at the first blank past the length.
  for (const QString &Line : Saved.split(QLatin1Char('\n')))
    if (!Line.startsWith(QLatin1String("<svg")))
      EXPECT_LE(Line.size(), 70) << Line.toStdString();
  TSVGDocument Copy;
  Copy.LoadFromText(Saved);
  EXPECT_EQ(Render(Copy), Render(Original));
  EXPECT_GT(Saved.count(QLatin1Char('\n')), 20) << "the path data spans many lines";
}
