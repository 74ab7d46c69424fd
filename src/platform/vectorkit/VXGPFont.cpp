#include "platform/vectorkit/VXGPFont.h"

#include <QFontDatabase>
#include <QHash>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

// Sizes beyond this are taken as this, so that no outline reaches absurd coordinates.
constexpr float MaxFontSize = 1e6f;

std::shared_ptr<const TVXGPFont::TFace> LoadFace(const QFont &Font)
{
  auto Face = std::make_shared<TVXGPFont::TFace>();
  QRawFont Raw = QRawFont::fromFont(Font);
  if (Raw.isValid()) {
    Raw.setPixelSize(Raw.unitsPerEm());
    Face->Raw = Raw;
    Face->EmHeight = std::max(1, qRound(Raw.unitsPerEm()));
    Face->Ascent = qRound(Raw.ascent());
    Face->Descent = qRound(Raw.descent());
    Face->LineGap = qRound(Raw.leading());
  } else {
    // No face at all: metrics of a common sans serif, and no glyphs.
    Face->EmHeight = 2048;
    Face->Ascent = 1901;
    Face->Descent = 483;
  }
  return Face;
}

// Faces are shared per thread: a QRawFont belongs to the thread that made it.
std::shared_ptr<const TVXGPFont::TFace> CachedFace(const QFont &Font)
{
  thread_local QHash<QString, std::shared_ptr<const TVXGPFont::TFace>> Cache;
  const QString Key = Font.key();
  auto It = Cache.constFind(Key);
  if (It != Cache.constEnd())
    return *It;
  if (Cache.size() > 256)
    Cache.clear();
  auto Face = LoadFace(Font);
  Cache.insert(Key, Face);
  return Face;
}

} // namespace

// --- font --------------------------------------------------------------------------------------

const QPainterPath &TVXGPFont::TFace::GlyphOutline(quint32 Glyph) const
{
  // A face serves one thread; a font of very many glyphs starts its store afresh now and then.
  constexpr qsizetype MaxOutlines = 8192;
  auto It = FOutlines.constFind(Glyph);
  if (It != FOutlines.constEnd())
    return *It;
  if (FOutlines.size() >= MaxOutlines)
    FOutlines.clear();
  return *FOutlines.insert(Glyph, Raw.pathForGlyph(Glyph));
}

TVXGPFont::TVXGPFont(TVXGPCanvas *Canvas)
  : FCanvas(Canvas), FBrush(std::make_unique<TVXGPBrush>(Canvas, bkSolid, 0xFF000000))
{
}

TVXGPFont::~TVXGPFont() = default;

void TVXGPFont::Assign(const TPersistent *Source)
{
  if (auto *F = dynamic_cast<const TVXGPFont *>(Source)) {
    if (FName != F->FName || FStyle != F->FStyle)
      FFace = F->FFace;
    FName = F->FName;
    FSize = F->FSize;
    FStyle = F->FStyle;
    const TNotifyEvent Saved = FBrush->OnChange;
    FBrush->OnChange = nullptr;
    FBrush->Assign(F->FBrush.get());
    FBrush->OnChange = Saved;
    Change();
    return;
  }
  TPersistent::Assign(Source);
}

void TVXGPFont::SetName(const QString &Value)
{
  if (FName == Value)
    return;
  FName = Value;
  FaceChanged();
  Change();
}

void TVXGPFont::SetSize(float Value)
{
  if (FSize == Value)
    return;
  FSize = Value;
  Change();
}

void TVXGPFont::SetStyle(TVXGPFontStyles Value)
{
  if (FStyle == Value)
    return;
  // Underline and strike-out are drawn by the canvas and do not change the face.
  const TVXGPFontStyles FaceBits{fsBold, fsItalic};
  if ((FStyle & FaceBits) != (Value & FaceBits))
    FaceChanged();
  FStyle = Value;
  Change();
}

void TVXGPFont::SetBrush(const TVXGPBrush &Brush)
{
  FBrush->Assign(&Brush);
}

const TVXGPFont::TFace &TVXGPFont::Face() const
{
  if (!FFace)
    FFace = CachedFace(ToQFont());
  return *FFace;
}

int TVXGPFont::GetCellAscent() const
{
  return Face().Ascent;
}

int TVXGPFont::GetCellDescent() const
{
  return Face().Descent;
}

int TVXGPFont::GetEmHeight() const
{
  return Face().EmHeight;
}

float TVXGPFont::GetLineSpacing() const
{
  const TFace &F = Face();
  const float Size = std::isfinite(FSize) ? std::clamp(FSize, 0.0f, MaxFontSize) : 0.0f;
  return Size * float(F.Ascent + F.Descent + F.LineGap) / float(F.EmHeight);
}

const QRawFont &TVXGPFont::RawFont() const
{
  return Face().Raw;
}

QFont TVXGPFont::ToQFont() const
{
  QFont Result(FName);
  Result.setPixelSize(64);
  Result.setBold(FStyle.Contains(fsBold));
  Result.setItalic(FStyle.Contains(fsItalic));
  Result.setHintingPreference(QFont::PreferNoHinting);
  return Result;
}

bool TVXGPFont::IsFontFamilyAvailable(const QString &Family)
{
  const QStringList Families = QFontDatabase::families();
  return std::any_of(Families.begin(), Families.end(),
                     [&](const QString &F) { return F.compare(Family, Qt::CaseInsensitive) == 0; });
}

void TVXGPFont::FaceChanged()
{
  FFace.reset();
}

void TVXGPFont::Change()
{
  if (OnChange)
    OnChange(this);
}

// --- string format -----------------------------------------------------------------------------

std::unique_ptr<TVXGPStringFormat> TVXGPStringFormat::GenericTypographic()
{
  auto Result = std::make_unique<TVXGPStringFormat>();
  Result->SetFlags({sfNoFitBlackBox, sfLineLimit, sfNoClip});
  return Result;
}

// --- shaper ------------------------------------------------------------------------------------

TVXTextShaper::TVXTextShaper(const TVXGPFont &Font) : FFont(Font), FFace(Font.Face())
{
  const float Size = Font.GetSize();
  const double Pixels = std::isfinite(Size) ? std::clamp(Size, 0.0f, MaxFontSize) : 0.0;
  FScale = Pixels / FFace.EmHeight;
}

float TVXTextShaper::Ascent() const
{
  return float(FFace.Ascent * FScale);
}

float TVXTextShaper::Descent() const
{
  return float(FFace.Descent * FScale);
}

float TVXTextShaper::LineSpacing() const
{
  return float((FFace.Ascent + FFace.Descent + FFace.LineGap) * FScale);
}

QList<quint32> TVXTextShaper::Glyphs(const QString &Text) const
{
  if (Text.isEmpty() || !FFace.Raw.isValid())
    return {};
  return FFace.Raw.glyphIndexesForString(Text);
}

QList<QPointF> TVXTextShaper::Advances(const QList<quint32> &Glyphs) const
{
  if (Glyphs.isEmpty())
    return {};
  return FFace.Raw.advancesForGlyphIndexes(
    Glyphs, QRawFont::LayoutFlags(QRawFont::KernedAdvances | QRawFont::UseDesignMetrics));
}

float TVXTextShaper::Advance(const QString &Text) const
{
  double Sum = 0;
  for (const QPointF &A : Advances(Glyphs(Text)))
    Sum += A.x();
  return float(Sum * FScale);
}

TRectF TVXTextShaper::InkBounds(const QString &Text) const
{
  const QList<quint32> G = Glyphs(Text);
  const QList<QPointF> A = Advances(G);
  QRectF Ink;
  double X = 0;
  for (qsizetype I = 0; I < G.size(); ++I) {
    const QRectF B = FFace.Raw.boundingRect(G[I]);
    if (B.width() > 0 && B.height() > 0)
      Ink = Ink.isNull() ? B.translated(X, 0) : Ink.united(B.translated(X, 0));
    X += A[I].x();
  }
  if (Ink.isNull())
    return {};
  return {float(Ink.left() * FScale), float(Ink.top() * FScale), float(Ink.right() * FScale),
          float(Ink.bottom() * FScale)};
}

QPainterPath TVXTextShaper::Outline(const QString &Text, const TPointF &Origin) const
{
  QPainterPath Result;
  Result.setFillRule(Qt::WindingFill);
  if (!(FScale > 0))
    return Result;
  const QList<quint32> G = Glyphs(Text);
  const QList<QPointF> A = Advances(G);
  QPainterPath Design;
  Design.setFillRule(Qt::WindingFill);
  double X = 0;
  for (qsizetype I = 0; I < G.size(); ++I) {
    const QPainterPath &Glyph = FFace.GlyphOutline(G[I]);
    if (!Glyph.isEmpty())
      Design.addPath(Glyph.translated(X, 0));
    X += A[I].x();
  }
  const TVXGPFontStyles Style = FFont.GetStyle();
  if (FFace.Raw.isValid() && X > 0 && (Style.Contains(fsUnderline) || Style.Contains(fsStrikeOut))) {
    const double Thickness = std::max(1.0, FFace.Raw.lineThickness());
    if (Style.Contains(fsUnderline))
      Design.addRect(QRectF(0, FFace.Raw.underlinePosition(), X, Thickness));
    if (Style.Contains(fsStrikeOut))
      Design.addRect(QRectF(0, -FFace.Raw.xHeight() / 2 - Thickness / 2, X, Thickness));
  }
  Result.addPath(QTransform(FScale, 0, 0, FScale, Origin.X, Origin.Y).map(Design));
  return Result;
}

float TVXTextShaper::LineWidth(const QString &Text, int Start, int Length, bool CountTrailing) const
{
  if (!CountTrailing)
    while (Length > 0 && Text.at(Start + Length - 1) == QLatin1Char(' '))
      --Length;
  return Advance(Text.mid(Start, Length));
}

std::vector<TVXTextLine> TVXTextShaper::Layout(const QString &Text, const TRectF &Rect,
                                               const TVXGPStringFormat &Format, bool WordWrap) const
{
  const bool CountTrailing = Format.GetFlags().Contains(sfMeasureTrailingSpaces);
  const float MaxWidth = Rect.Width();
  const bool Wrap = WordWrap && MaxWidth > 0 && !Format.GetFlags().Contains(sfNoWrap);
  std::vector<TVXTextLine> Lines;
  const int N = int(Text.size());
  int ParagraphStart = 0;
  while (ParagraphStart <= N) {
    int ParagraphEnd = int(Text.indexOf(QLatin1Char('\n'), ParagraphStart));
    if (ParagraphEnd < 0)
      ParagraphEnd = N;
    int LineStart = ParagraphStart;
    // Greedy wrapping at blanks: a line takes words while they fit, and at least one word.
    while (Wrap && LineStart < ParagraphEnd) {
      int Break = -1;
      int Measured = LineStart;
      float Width = 0;
      for (int I = LineStart; I <= ParagraphEnd; ++I) {
        if (I < ParagraphEnd && Text.at(I) != QLatin1Char(' '))
          continue;
        // Words are measured once each, so long texts wrap in linear time.
        Width += Advance(Text.mid(Measured, I - Measured));
        Measured = I;
        if (Break >= 0 && Width > MaxWidth)
          break;
        Break = I;
        if (I == ParagraphEnd)
          break;
      }
      if (Break < 0 || Break >= ParagraphEnd)
        break;
      Lines.push_back({LineStart, Break - LineStart + 1, 0, {}});
      LineStart = Break + 1;
    }
    Lines.push_back({LineStart, ParagraphEnd - LineStart, 0, {}});
    ParagraphStart = ParagraphEnd + 1;
  }

  const float Spacing = LineSpacing();
  const float Total = Spacing * float(Lines.size());
  float Top = Rect.Top;
  if (Format.GetLineAlignment() == saCenter)
    Top = Rect.Top + (Rect.Height() - Total) / 2;
  else if (Format.GetLineAlignment() == saFar)
    Top = Rect.Bottom - Total;
  for (TVXTextLine &L : Lines) {
    L.Width = LineWidth(Text, L.Start, L.Length, CountTrailing);
    float Left = Rect.Left;
    if (Format.GetAlignment() == saCenter)
      Left = Rect.Left + (MaxWidth - L.Width) / 2;
    else if (Format.GetAlignment() == saFar)
      Left = Rect.Right - L.Width;
    L.Origin = {Left, Top};
    Top += Spacing;
  }
  return Lines;
}

} // namespace vx
