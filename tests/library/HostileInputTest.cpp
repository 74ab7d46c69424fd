// Pictures that strangers may send: every one must end quickly with an exception or a picture that
// draws, hit-tests and saves, never with a crash, a hang or an exhausted memory.
#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "support/HostilePictures.h"
#include "tree/VXSVG.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUrl>

#include <ctime>
#include <functional>
#include <random>

using namespace vx;

namespace {

// Time one hostile picture may take, generous enough for sanitizer builds.
constexpr qint64 TimeLimitMs = 5000;

const char Root[] = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                    "width='100' height='100'>";

QString Svg(const QString &Body)
{
  return QString::fromLatin1(Root) + Body + QStringLiteral("</svg>");
}

// What became of one picture: the exception's message when loading or using it failed, and the
// saved text when it did not.
struct TOutcome
{
  bool Failed = false;
  QString Message;
  QString Saved;
  qint64 Elapsed = 0;
};

// Loads a picture through Load, then draws it into a small bitmap, hit-tests a few points, measures
// and saves it.
TOutcome ExerciseLoaded(const std::function<void(TSVGDocument &)> &Load)
{
  TOutcome Result;
  QElapsedTimer Timer;
  Timer.start();
  try {
    TSVGDocument Document;
    Load(Document);
    TVXGPBitmap Bitmap(48, 48);
    DrawSVGToBitmap(Bitmap, &Document, 1, true);
    DrawSVGToBitmap(Bitmap, &Document, 1, false);
    for (const TPointF Point : {TPointF{1, 1}, TPointF{24, 24}, TPointF{47, 40}})
      Document.ElementAtPos(Bitmap.GetCanvas(), Point, TRectF{0, 0, 48, 48}, {});
    Document.GetBoundsRect();
    QBuffer Buffer;
    Buffer.open(QIODevice::WriteOnly);
    Document.SaveToStream(Buffer);
    Result.Saved = QString::fromUtf8(Buffer.data());
  } catch (const Exception &E) {
    Result.Failed = true;
    Result.Message = E.Message();
  }
  Result.Elapsed = Timer.elapsed();
  return Result;
}

TOutcome Exercise(const QString &Text, TSVGOptions Options = DefaultSVGOptions)
{
  return ExerciseLoaded([&Text, Options](TSVGDocument &Document) {
    Document.SetOptions(Options);
    Document.LoadFromText(Text);
  });
}

QString Nested(const QString &Open, const QString &Close, int Depth, const QString &Inner = QString())
{
  return Svg(Open.repeated(Depth) + Inner + Close.repeated(Depth));
}

// --- the XML layer -------------------------------------------------------------------------------

TEST(HostileXml, EntityBombsFailOrStaySmall)
{
  struct TCase
  {
    const char *Name;
    QString Text;
  };
  // Ten references per level over nine levels: 10^9 copies of the innermost text or element.
  const auto Bomb = [](const QString &Innermost, const QString &Use) {
    QString Text = QStringLiteral("<?xml version='1.0'?>\n<!DOCTYPE svg [\n<!ENTITY e0 \"%1\">\n").arg(Innermost);
    for (int Level = 1; Level <= 9; ++Level)
      Text += QStringLiteral("<!ENTITY e%1 \"%2\">\n").arg(Level).arg(QStringLiteral("&e%1;").arg(Level - 1).repeated(10));
    return Text + QStringLiteral("]>\n") + Svg(Use);
  };
  const TCase Cases[] = {
    {"text in a title", Bomb(QStringLiteral("lol"), QStringLiteral("<title>&e9;</title>"))},
    {"text in a style element", Bomb(QStringLiteral("lol"), QStringLiteral("<style>&e9;</style>"))},
    {"text in an attribute", Bomb(QStringLiteral("lol"), QStringLiteral("<rect id='&e9;' width='5' height='5'/>"))},
    {"elements between elements", Bomb(QStringLiteral("&lt;rect width='1' height='1'/&gt;"), QStringLiteral("&e9;"))},
    {"elements inside a group", Bomb(QStringLiteral("&lt;g/&gt;"), QStringLiteral("<g>&e9;</g>"))},
  };
  for (const TCase &Case : Cases) {
    SCOPED_TRACE(Case.Name);
    const TOutcome Outcome = Exercise(Case.Text);
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
    EXPECT_LT(Outcome.Saved.size(), 1 << 20) << "the expansion must not be written out";
  }
}

TEST(HostileXml, ExternalEntitiesAreNeverRead)
{
  QTemporaryDir Dir;
  ASSERT_TRUE(Dir.isValid());
  const QString Secret = Dir.filePath(QStringLiteral("secret.txt"));
  {
    QFile File(Secret);
    ASSERT_TRUE(File.open(QIODevice::WriteOnly));
    File.write("TOPSECRET");
  }
  const QString Url = QUrl::fromLocalFile(Secret).toString();
  const QString Uses[] = {
    QStringLiteral("<title>&x;</title>"),
    QStringLiteral("<g>&x;</g>"),
    QStringLiteral("<rect id='r' width='5' height='5'><desc>&x;</desc></rect>"),
  };
  for (const QString &PathForm : {Url, Secret}) {
    for (const QString &Use : Uses) {
      SCOPED_TRACE((PathForm + QLatin1Char(' ') + Use).toStdString());
      const QString Text = QStringLiteral("<?xml version='1.0'?>\n<!DOCTYPE svg [<!ENTITY x SYSTEM \"%1\">]>\n")
                               .arg(PathForm) +
                           Svg(Use);
      const TOutcome Outcome = Exercise(Text);
      EXPECT_FALSE(Outcome.Saved.contains(QStringLiteral("TOPSECRET")));
      EXPECT_FALSE(Outcome.Message.contains(QStringLiteral("TOPSECRET")));
    }
  }
  // An external DTD naming the file is not read either.
  const TOutcome Outcome =
      Exercise(QStringLiteral("<!DOCTYPE svg SYSTEM \"%1\">\n").arg(Url) + Svg(QStringLiteral("<g/>")));
  EXPECT_FALSE(Outcome.Saved.contains(QStringLiteral("TOPSECRET")));
}

TEST(HostileXml, NestingBeyondTheParserLimitFailsClearly)
{
  for (const int Depth : {300, 100000}) {
    SCOPED_TRACE(Depth);
    const TOutcome Outcome = Exercise(Nested(QStringLiteral("<g>"), QStringLiteral("</g>"), Depth));
    EXPECT_TRUE(Outcome.Failed);
    EXPECT_TRUE(Outcome.Message.contains(QStringLiteral("depth"), Qt::CaseInsensitive)) << Outcome.Message.toStdString();
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
  // Just inside the limit the whole chain loads and draws.
  const TOutcome Deep = Exercise(Nested(QStringLiteral("<g transform='translate(0.01)'>"), QStringLiteral("</g>"),
                                        250, QStringLiteral("<rect id='leaf' width='50' height='50'/>")));
  EXPECT_FALSE(Deep.Failed) << Deep.Message.toStdString();
  EXPECT_TRUE(Deep.Saved.contains(QStringLiteral("leaf")));
}

TEST(HostileXml, TruncatedAndGarbageInputFailsAndKeepsTheOldDocument)
{
  QByteArray Example;
  {
    QFile File(QDir(QString::fromLocal8Bit(qgetenv("VXSVG_EXAMPLES"))).filePath(QStringLiteral("groups.svg")));
    ASSERT_TRUE(File.open(QIODevice::ReadOnly)) << "VXSVG_EXAMPLES must name the examples folder";
    Example = File.readAll();
  }
  std::vector<QByteArray> Inputs;
  for (qsizetype Cut = 1; Cut < Example.size() - 10; Cut += 97)
    Inputs.push_back(Example.left(Cut));
  std::mt19937 Random(12);
  for (int Size : {1, 16, 4096, 65536}) {
    QByteArray Garbage(Size, '\0');
    for (char &C : Garbage)
      C = char(Random());
    Inputs.push_back(Garbage);
  }
  Inputs.push_back(QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
  Inputs.push_back(QByteArray("\xff\xfe<\0s\0v\0g\0", 10));
  Inputs.push_back(QByteArray("<svg\0xmlns='http://www.w3.org/2000/svg'/>", 41));
  Inputs.push_back(QByteArray(1 << 20, '<'));

  TSVGDocument Document;
  Document.LoadFromText(Svg(QStringLiteral("<rect id='kept' width='5' height='5'/>")));
  QElapsedTimer Timer;
  Timer.start();
  int Index = 0;
  for (const QByteArray &Input : Inputs) {
    SCOPED_TRACE(Index++);
    QBuffer Buffer;
    Buffer.setData(Input);
    Buffer.open(QIODevice::ReadOnly);
    EXPECT_THROW(Document.LoadFromStream(Buffer), Exception);
    EXPECT_NE(Document.AllItems().Elements(QStringLiteral("kept")), nullptr);
  }
  EXPECT_LT(Timer.elapsed(), TimeLimitMs);
}

// --- references ----------------------------------------------------------------------------------

TEST(HostileReferences, CyclesAndFanOutsEnd)
{
  struct TCase
  {
    const char *Name;
    QString Body;
  };
  // Each level shows the previous one ten times: drawn in full that would be 10^8 rectangles.
  QString FanOut = QStringLiteral("<defs><rect id='l0' width='1' height='1'/>");
  for (int Level = 1; Level <= 8; ++Level) {
    FanOut += QStringLiteral("<g id='l%1'>").arg(Level);
    for (int Copy = 0; Copy < 10; ++Copy)
      FanOut += QStringLiteral("<use xlink:href='#l%1' x='%2'/>").arg(Level - 1).arg(Copy);
    FanOut += QStringLiteral("</g>");
  }
  FanOut += QStringLiteral("</defs><use xlink:href='#l8'/>");
  const TCase Cases[] = {
    {"a use of itself", QStringLiteral("<use id='u' xlink:href='#u'/>")},
    {"a use of its own group", QStringLiteral("<g id='g'><rect width='5' height='5'/><use xlink:href='#g' x='5'/></g>")},
    {"two uses of each other", QStringLiteral("<use id='a' xlink:href='#b'/><use id='b' xlink:href='#a'/>")},
    {"a ring of groups through uses",
     QStringLiteral("<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#c'/></g>"
                    "<g id='c'><circle r='3'/><use xlink:href='#a'/></g>")},
    {"a use of the root", QStringLiteral("<g id='g'><use xlink:href='#root'/></g>")},
    {"gradients naming each other, drawn through a use",
     QStringLiteral("<linearGradient id='a' xlink:href='#b'/><radialGradient id='b' xlink:href='#a'/>"
                    "<rect id='r' width='9' height='9' fill='url(#a)' stroke='url(#b)'/><use xlink:href='#r'/>")},
    {"a clip path using an element clipped by it",
     QStringLiteral("<clipPath id='c'><use xlink:href='#r'/></clipPath>"
                    "<rect id='r' width='9' height='9' clip-path='url(#c)'/>")},
    {"a fan-out of uses", FanOut},
  };
  for (const TCase &Case : Cases) {
    SCOPED_TRACE(Case.Name);
    QString Text = Svg(Case.Body);
    Text.replace(QStringLiteral("<svg "), QStringLiteral("<svg id='root' "));
    const TOutcome Outcome = Exercise(Text);
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
    if (Outcome.Failed) {
      EXPECT_TRUE(Outcome.Message.contains(QStringLiteral("Circular reference detected")))
          << Outcome.Message.toStdString();
    }
  }
}

TEST(HostileReferences, UsesOfUsesWithinReasonAreAllDrawn)
{
  // A 20 by 20 grid: rows of uses of one square, the rows again shown by uses.
  QString Body = QStringLiteral("<defs><rect id='r' width='1' height='1' fill='red'/><g id='row'>");
  for (int X = 0; X < 20; ++X)
    Body += QStringLiteral("<use xlink:href='#r' x='%1'/>").arg(X);
  Body += QStringLiteral("</g></defs>");
  for (int Y = 0; Y < 20; ++Y)
    Body += QStringLiteral("<use xlink:href='#row' y='%1'/>").arg(Y);
  TSVGDocument Document;
  Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' "
                                       "xmlns:xlink='http://www.w3.org/1999/xlink' width='20' height='20' "
                                       "viewBox='0 0 20 20'>%1</svg>")
                            .arg(Body));
  TVXGPBitmap Bitmap(21, 21);
  DrawSVGToBitmap(Bitmap, &Document, 0, true);
  for (const int At : {0, 10, 19})
    EXPECT_EQ(Bitmap.Image().pixel(At, At), 0xFFFF0000u) << At;
}

// --- absurd values -------------------------------------------------------------------------------

TEST(HostileValues, AbsurdSizesAndNumbersDrawOrFail)
{
  // Root attributes, each with a plain picture inside.
  const char *const Roots[] = {
    "width='1e30' height='1e30'",
    "width='-100' height='-5'",
    "width='NaN' height='nan'",
    "width='inf' height='-inf'",
    "width='1e400' height='1e-400'",
    "width='100' height='100' viewBox='0 0 1e30 1e30'",
    "width='100' height='100' viewBox='0 0 1e-30 1e-30'",
    "width='100' height='100' viewBox='-3e38 -3e38 3e38 3e38'",
    "width='100' height='100' viewBox='0 0 -10 -10'",
    "width='100' height='100' viewBox='NaN NaN NaN NaN'",
    "width='100' height='100' viewBox='0 0 0 0'",
    "width='100%' height='1e30%'",
    "width='1e-30' height='1e-30' viewBox='0 0 10 10' preserveAspectRatio='xMidYMid slice'",
  };
  for (const char *RootAttributes : Roots) {
    SCOPED_TRACE(RootAttributes);
    const TOutcome Outcome = Exercise(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' %1>"
                                                     "<rect width='50' height='50' stroke='black'/></svg>")
                                          .arg(QString::fromLatin1(RootAttributes)));
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
  // Elements, each in a plain root.
  const char *const Bodies[] = {
    "<rect width='1e30' height='1e30' stroke='black' stroke-width='1e30'/>",
    "<rect width='3e38' height='3e38' x='-3e38' y='-3e38' rx='3e38'/>",
    "<circle cx='NaN' cy='5' r='1e38'/>",
    "<circle r='1e38' stroke='red' stroke-width='1e38'/>",
    "<ellipse rx='-5' ry='1e-45'/>",
    "<rect x='5' y='5' width='10' height='10' transform='scale(1e30) rotate(1e30)'/>",
    "<rect width='10' height='10' transform='scale(1e-30)' stroke='black'/>",
    "<path d='M0 0 L3e38 3e38 L-3e38 3e38 A1e30 1e30 0 1 1 3e38 0 Z' stroke='red' stroke-width='1e30'/>",
    "<path d='M0 0 A1e-30 1e-30 0 1 1 50 50 A0 0 0 0 0 NaN 5 C1e38 1e38 -1e38 -1e38 9 9'/>",
    "<line x2='1e30' y2='1e30' stroke='blue' stroke-dasharray='1e-30' stroke-miterlimit='1e30'/>",
    "<g transform='matrix(0 0 0 0 0 0)'><rect width='5' height='5'/></g>",
    "<g transform='matrix(1e38 0 0 1e38 1e38 1e38)' opacity='-1'><rect width='5' height='5'/></g>",
    "<linearGradient id='g' x2='1e30' gradientTransform='scale(0)'><stop offset='-5'/><stop offset='1e30'/>"
    "</linearGradient><rect width='50' height='50' fill='url(#g)' stroke='url(#g)'/>",
    "<radialGradient id='g' r='1e-30' fx='1e30' spreadMethod='repeat'><stop offset='0.5' stop-color='red'/>"
    "</radialGradient><rect width='50' height='50' fill='url(#g)'/>",
    "<linearGradient id='g' x2='1e-7' spreadMethod='reflect'><stop offset='0.5' stop-color='red'/>"
    "<stop offset='0.5' stop-color='blue'/></linearGradient><rect width='50' height='50' fill='url(#g)'/>",
    "<svg width='1e30' height='-1' viewBox='0 0 1e-30 1e30'><rect width='5' height='5'/></svg>",
    "<clipPath id='c'><rect width='1e38' height='1e-38'/></clipPath><rect width='9' height='9' clip-path='url(#c)'/>",
    "<rect width='9' height='9' font-size='1e30' stroke-width='1e30em'/>",
  };
  for (const char *Body : Bodies) {
    SCOPED_TRACE(Body);
    const TOutcome Outcome = Exercise(Svg(QString::fromLatin1(Body)));
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
}

TEST(HostileValues, HugeDashListsAndTinyDashesEnd)
{
  const QString Long = QStringLiteral("1 ").repeated(100000);
  const QString Bodies[] = {
    QStringLiteral("<line x2='100' y2='100' stroke='black' stroke-dasharray='%1'/>").arg(Long),
    QStringLiteral("<rect width='100' height='100' fill='none' stroke='black' stroke-dasharray='%1 0.5'/>").arg(Long),
    QStringLiteral("<line x2='1e6' y2='1e6' stroke='black' stroke-width='1' stroke-dasharray='0.0001'/>"),
    QStringLiteral("<circle r='1e5' cx='50' cy='50' fill='none' stroke='black' stroke-dasharray='1e-6 1e-6'/>"),
    QStringLiteral("<line x2='100' y2='100' stroke='black' stroke-dasharray='-1 2 NaN'/>"),
  };
  for (const QString &Body : Bodies) {
    SCOPED_TRACE(Body.left(120).toStdString());
    const TOutcome Outcome = Exercise(Svg(Body));
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
}

TEST(HostileValues, AMillionSegmentPathDraws)
{
  QString Data;
  Data.reserve(8 * 1000000 + 16);
  Data += QStringLiteral("M0 0");
  for (int I = 0; I < 500000; ++I)
    Data += QStringLiteral("l1 1l-1 0");
  TSVGDocument Document;
  QElapsedTimer Timer;
  Timer.start();
  Document.LoadFromText(Svg(QStringLiteral("<path id='p' fill='red' d='%1'/>").arg(Data)));
  TVXGPBitmap Bitmap(32, 32);
  DrawSVGToBitmap(Bitmap, &Document, 1, true);
  EXPECT_LT(Timer.elapsed(), TimeLimitMs);
}

TEST(HostileValues, ATextOfManySpansLaysOutInLinearTime)
{
  // Layout once walked the whole text for every span it placed.
  const QString Text = Svg(QStringLiteral("<text x='1' y='20' text-decoration='underline'>%1</text>")
                             .arg(QStringLiteral("<tspan>a</tspan>").repeated(10000)));
  for (const TSVGOptions Options : {DefaultSVGOptions, DefaultSVGOptions | soStandardSVG}) {
    const TOutcome Outcome = Exercise(Text, Options);
    EXPECT_FALSE(Outcome.Failed) << Outcome.Message.toStdString();
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
}

TEST(HostileValues, RastersBeyondTheSizeLimitAreRefused)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg(QStringLiteral("<rect width='5' height='5'/>")));
  const struct
  {
    int Width, Height;
  } Sizes[] = {{16385, 16}, {16, 16385}, {16384, 16384}, {100000, 100000}, {-5, 10}};
  for (const auto &Size : Sizes) {
    SCOPED_TRACE(testing::Message() << Size.Width << "x" << Size.Height);
    EXPECT_THROW(
        {
          TVXGPBitmap Bitmap(Size.Width, Size.Height);
          DrawSVGToBitmap(Bitmap, &Document, 1, true);
        },
        EInvalidGraphicOperation);
  }
}


// --- files, raster memory, saves -----------------------------------------------------------------

struct TFileOutcome
{
  QImage Drawn;
  QByteArray Saved;
  QByteArray SavedAgain;
};

QByteArray SaveOf(TSVGDocument &Document)
{
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Document.SaveToStream(Buffer);
  return Buffer.data();
}

// Loads FileName, draws it into a 100-pixel square, saves it, and saves again what the save loads as.
TFileOutcome ExerciseFile(const QString &FileName, bool Standard)
{
  TFileOutcome Result;
  const TSVGOptions Options = Standard ? DefaultSVGOptions | soStandardSVG : DefaultSVGOptions;
  TSVGDocument Document;
  Document.SetOptions(Options);
  Document.LoadFromFile(FileName);
  TVXGPBitmap Bitmap(100, 100);
  DrawSVGToBitmap(Bitmap, &Document, 1, true);
  Result.Drawn = Bitmap.Image();
  Result.Saved = SaveOf(Document);
  QBuffer Buffer(&Result.Saved);
  Buffer.open(QIODevice::ReadOnly);
  TSVGDocument Again;
  Again.SetOptions(Options);
  Again.LoadFromStream(Buffer, FileName);
  Result.SavedAgain = SaveOf(Again);
  return Result;
}

TEST(HostileFiles, NothingFromOutsideTheFolderShowsAndEverySaveLoadsAgain)
{
  const char *const Names[] = {
    "image: ../ out of the folder", "image: absolute path", "image: file: URLs",
    "image: symbolic links out of the folder", "image: /proc, devices, FIFO", "pictures that show themselves",
    "PNG bombs", "six embedded 11,500-pixel pictures", "transforms that overflow", "200,000-segment path with arcs",
  };
  // A number that does not read again, where attribute values put numbers.
  const QRegularExpression NotFinite(QStringLiteral("[\\s(,\"']-?(inf|nan)(?![a-z])"),
                                     QRegularExpression::CaseInsensitiveOption);
  for (const char *Name : Names) {
    for (const bool Standard : {false, true}) {
      SCOPED_TRACE(testing::Message() << Name << (Standard ? ", standard" : ", classic"));
      QTemporaryDir Folder;
      const QString File = vxtest::HostilePicture(Name).Make(QDir(Folder.path()));
      const std::clock_t Start = std::clock();
      const TFileOutcome Outcome = ExerciseFile(File, Standard);
      // Processor time, as the machine may be shared.
      EXPECT_LT(double(std::clock() - Start) / CLOCKS_PER_SEC * 1000, TimeLimitMs);
      EXPECT_FALSE(vxtest::ShowsSecret(Outcome.Drawn));
      EXPECT_TRUE(Outcome.Saved == Outcome.SavedAgain) << Outcome.Saved.left(2000).toStdString();
      EXPECT_FALSE(QString::fromUtf8(Outcome.Saved).contains(NotFinite));
      // Arcs are not multiplied into curves past what the XML parser reads.
      EXPECT_LT(Outcome.Saved.size(), 2 * QFileInfo(File).size() + 4096);
    }
  }
}

// --- costs that could grow faster than the input ---------------------------------------------------

// Writes Text to Name in Dir.
void WriteFile(const QTemporaryDir &Dir, const QString &Name, const QString &Text)
{
  QFile File(Dir.filePath(Name));
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(Text.toUtf8());
}

TEST(HostileCosts, FanOutsAndLongListsStayWithinTime)
{
  const auto Repeat = [](int Count, const auto &Make) {
    QString Result;
    for (int I = 0; I < Count; ++I)
      Result += Make(I);
    return Result;
  };
  // Eleven levels of patterns, each tile holding nine squares filled with the level below.
  QString Patterns = QStringLiteral("<defs><pattern id='p0' width='1' height='1' patternUnits='userSpaceOnUse'>"
                                    "<rect width='1' height='1' fill='red'/></pattern>");
  for (int Level = 1; Level <= 10; ++Level)
    Patterns += QStringLiteral("<pattern id='p%1' width='3' height='3' patternUnits='userSpaceOnUse'>%2</pattern>")
                    .arg(Level)
                    .arg(Repeat(9, [Level](int I) {
                      return QStringLiteral("<rect x='%1' y='%2' width='1' height='1' fill='url(#p%3)'/>")
                          .arg(I % 3)
                          .arg(I / 3)
                          .arg(Level - 1);
                    }));
  Patterns += QStringLiteral("</defs><rect width='48' height='48' fill='url(#p10)'/>");
  // Translucent groups of two shapes, each needing a layer, multiplied by uses of uses.
  QString Layers = QStringLiteral("<defs><g id='l0' opacity='0.5'><rect width='40' height='40'/><circle r='9'/></g>");
  for (int Level = 1; Level <= 5; ++Level)
    Layers += QStringLiteral("<g id='l%1' opacity='0.9'>%2</g>")
                  .arg(Level)
                  .arg(Repeat(10, [Level](int) { return QStringLiteral("<use xlink:href='#l%1'/>").arg(Level - 1); }));
  Layers += QStringLiteral("</defs>") + Repeat(10, [](int) { return QStringLiteral("<use xlink:href='#l5'/>"); });
  const QString Cases[] = {
    Repeat(5000, [](int) { return QStringLiteral("<rect id='a' width='1' height='1'/>"); }),
    QStringLiteral("<style>") + Repeat(10000, [](int I) { return QStringLiteral(".c%1 { fill: red }").arg(I); }) +
        QStringLiteral("</style>") +
        Repeat(3000, [](int I) { return QStringLiteral("<rect class='c%1' width='1' height='1'/>").arg(I * 3); }),
    QStringLiteral("<path d='M0 0%1' fill='none' stroke='black' stroke-dasharray='%2'/>")
        .arg(Repeat(1000, [](int I) { return QStringLiteral(" L48 %1 L0 %2").arg(I * 0.048).arg(I * 0.048 + 0.024); }))
        .arg(QStringLiteral("1 ").repeated(10001)),
    Patterns,
    Layers,
    QStringLiteral("<linearGradient id='g'>") + QStringLiteral("<stop/>").repeated(1000000) +
        QStringLiteral("</linearGradient><rect width='48' height='48' fill='url(#g)'/>"),
  };
  for (const QString &Body : Cases) {
    SCOPED_TRACE(Body.left(120).toStdString());
    const TOutcome Outcome = Exercise(Svg(Body));
    EXPECT_FALSE(Outcome.Failed) << Outcome.Message.toStdString();
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
}

TEST(HostileCosts, PicturesShowingPicturesShareOneBudget)
{
  // Six files, each showing the next one six times: 7776 pictures at the bottom.
  QTemporaryDir Dir;
  ASSERT_TRUE(Dir.isValid());
  for (int Level = 0; Level < 6; ++Level) {
    QString Body = QStringLiteral("<rect width='100' height='100' fill='blue' opacity='0.5'/>");
    for (int Copy = 0; Level < 5 && Copy < 6; ++Copy)
      Body += QStringLiteral("<image xlink:href='n%1.svg' width='100' height='100'/>").arg(Level + 1);
    WriteFile(Dir, QStringLiteral("n%1.svg").arg(Level), Svg(Body));
  }
  const QString First = Dir.filePath(QStringLiteral("n0.svg"));
  for (const bool Standard : {false, true}) {
    SCOPED_TRACE(Standard);
    const TOutcome Outcome = ExerciseLoaded([&](TSVGDocument &Document) {
      Document.SetOptions(Standard ? DefaultSVGOptions | soStandardSVG : DefaultSVGOptions);
      Document.LoadFromFile(First);
    });
    EXPECT_FALSE(Outcome.Failed) << Outcome.Message.toStdString();
    EXPECT_LT(Outcome.Elapsed, TimeLimitMs);
  }
}

} // namespace
