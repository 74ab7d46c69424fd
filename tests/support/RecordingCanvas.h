#pragma once
// A canvas that logs every drawing call with its arguments, for tests that check the order of canvas
// calls. It still paints (into its own small image unless a device is given), so that state-dependent
// behaviour of the real canvas is kept; set Forward to false to record only.
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"

#include <QImage>
#include <QPainter>
#include <QString>
#include <QStringList>

namespace vx {

class TRecordingCanvas : public TVXGPCanvas
{
public:
  explicit TRecordingCanvas(int Width = 64, int Height = 64)
    : TRecordingCanvas(Blank(Width, Height), true)
  {
  }
  explicit TRecordingCanvas(QImage *Device) : TRecordingCanvas(Device, false) {}
  ~TRecordingCanvas() override
  {
    if (FOwnsDevice) {
      Painter()->end();
      delete FDevice;
    }
  }

  // The short overloads of the base stay visible next to the overrides.
  using TVXGPCanvas::DrawRect;
  using TVXGPCanvas::FillRect;

  // One entry per call: "Name(arguments)", numbers in shortest form.
  QStringList Log;
  // When false, calls are logged and not drawn.
  bool Forward = true;

  QImage &Image() { return *FDevice; }
  // The entries whose name (the text before the parenthesis) is one of Names, in order.
  QStringList Calls(const QStringList &Names) const
  {
    QStringList Result;
    for (const QString &Entry : Log)
      if (Names.contains(Entry.section(QLatin1Char('('), 0, 0)))
        Result.append(Entry);
    return Result;
  }
  // The names of all calls in order.
  QStringList Names() const
  {
    QStringList Result;
    for (const QString &Entry : Log)
      Result.append(Entry.section(QLatin1Char('('), 0, 0));
    return Result;
  }

  static QString Num(double V) { return QString::number(V, 'g', 6); }
  static QString Rect(const TRectF &R)
  {
    return Num(R.Left) + QLatin1Char(',') + Num(R.Top) + QLatin1Char(',') + Num(R.Right) + QLatin1Char(',')
           + Num(R.Bottom);
  }
  static QString Point(const TPointF &P) { return Num(P.X) + QLatin1Char(',') + Num(P.Y); }
  static QString Color(TVXGPColor C) { return QStringLiteral("#%1").arg(C, 8, 16, QLatin1Char('0')).toUpper(); }
  static QString Matrix(const TMatrix &M)
  {
    return QStringList{Num(M.m11), Num(M.m12), Num(M.m21), Num(M.m22), Num(M.m31), Num(M.m32)}.join(QLatin1Char(','));
  }

  int SaveState() override
  {
    const int Token = TVXGPCanvas::SaveState();
    Add(QStringLiteral("SaveState"), QString::number(Token));
    return Token;
  }
  void RestoreState(int Token) override
  {
    Add(QStringLiteral("RestoreState"), QString::number(Token));
    TVXGPCanvas::RestoreState(Token);
  }
  void SetMatrix(const TMatrix &M) override
  {
    Add(QStringLiteral("SetMatrix"), Matrix(M));
    TVXGPCanvas::SetMatrix(M);
  }
  void SetPen(const TVXGPPen &Pen) override
  {
    Add(QStringLiteral("SetPen"), QStringLiteral("kind=%1 color=%2 width=%3 dash=%4")
                                    .arg(int(Pen.GetKind()))
                                    .arg(Color(Pen.GetColor()), Num(Pen.GetThickness()))
                                    .arg(int(Pen.GetDash())));
    TVXGPCanvas::SetPen(Pen);
  }
  void SetBrush(const TVXGPBrush &Brush) override
  {
    Add(QStringLiteral("SetBrush"),
        QStringLiteral("kind=%1 color=%2").arg(int(Brush.GetKind())).arg(Color(Brush.GetColor())));
    TVXGPCanvas::SetBrush(Brush);
  }
  void SetFont(const TVXGPFont &Font) override
  {
    Add(QStringLiteral("SetFont"), QStringLiteral("%1 size=%2 style=%3")
                                     .arg(Font.GetName(), Num(Font.GetSize()))
                                     .arg(int(Font.GetStyle().Bits())));
    TVXGPCanvas::SetFont(Font);
  }
  void CombineClip(const TRectF &R, TVXGPCombineMode Mode) override
  {
    Add(QStringLiteral("CombineClip"), QStringLiteral("rect=%1 mode=%2").arg(Rect(R)).arg(int(Mode)));
    if (Forward)
      TVXGPCanvas::CombineClip(R, Mode);
  }
  void CombineClip(const TVXGPRegion &Region, TVXGPCombineMode Mode) override
  {
    Add(QStringLiteral("CombineClip"),
        QStringLiteral("region=%1 mode=%2").arg(Region.IsInfinite() ? QStringLiteral("infinite") : Rect(Region.GetBounds()))
          .arg(int(Mode)));
    if (Forward)
      TVXGPCanvas::CombineClip(Region, Mode);
  }
  void ResetClip() override
  {
    Add(QStringLiteral("ResetClip"), QString());
    if (Forward)
      TVXGPCanvas::ResetClip();
  }
  void FillPath(const TVXGPPath &Path, float Opacity) override
  {
    Add(QStringLiteral("FillPath"), QStringLiteral("points=%1 bounds=%2 opacity=%3 brush=%4 %5")
                                      .arg(Path.Count())
                                      .arg(Rect(Path.GetBounds()), Num(Opacity))
                                      .arg(int(Brush().GetKind()))
                                      .arg(Color(Brush().GetColor())));
    if (Forward)
      TVXGPCanvas::FillPath(Path, Opacity);
  }
  void DrawPath(const TVXGPPath &Path, float Opacity) override
  {
    Add(QStringLiteral("DrawPath"), QStringLiteral("points=%1 bounds=%2 opacity=%3 pen=%4 %5 %6")
                                      .arg(Path.Count())
                                      .arg(Rect(Path.GetBounds()), Num(Opacity))
                                      .arg(int(Pen().GetKind()))
                                      .arg(Color(Pen().GetColor()), Num(Pen().GetThickness())));
    if (Forward)
      TVXGPCanvas::DrawPath(Path, Opacity);
  }
  void FillRect(const TRectF &R, float Rx, float Ry, int Corners, float Opacity, int CornerType) override
  {
    Add(QStringLiteral("FillRect"),
        QStringLiteral("%1 r=%2,%3 corners=%4 opacity=%5 type=%6")
          .arg(Rect(R), Num(Rx), Num(Ry)).arg(Corners).arg(Num(Opacity)).arg(CornerType));
    if (Forward)
      TVXGPCanvas::FillRect(R, Rx, Ry, Corners, Opacity, CornerType);
  }
  void DrawRect(const TRectF &R, float Rx, float Ry, int Corners, float Opacity, int CornerType) override
  {
    Add(QStringLiteral("DrawRect"),
        QStringLiteral("%1 r=%2,%3 corners=%4 opacity=%5 type=%6")
          .arg(Rect(R), Num(Rx), Num(Ry)).arg(Corners).arg(Num(Opacity)).arg(CornerType));
    if (Forward)
      TVXGPCanvas::DrawRect(R, Rx, Ry, Corners, Opacity, CornerType);
  }
  void DrawDashRect(const TRectF &R, TVXGPColor C) override
  {
    Add(QStringLiteral("DrawDashRect"), Rect(R) + QLatin1Char(' ') + Color(C));
    if (Forward)
      TVXGPCanvas::DrawDashRect(R, C);
  }
  void DrawLine(const TPointF &P1, const TPointF &P2, float Opacity) override
  {
    Add(QStringLiteral("DrawLine"), QStringLiteral("%1 %2 opacity=%3").arg(Point(P1), Point(P2), Num(Opacity)));
    if (Forward)
      TVXGPCanvas::DrawLine(P1, P2, Opacity);
  }
  void DrawImage(const TVXGPImage &Image, const TRectF &Dest, float Opacity) override
  {
    Add(QStringLiteral("DrawImage"), QStringLiteral("%1x%2 dest=%3 opacity=%4")
                                       .arg(Image.GetWidth())
                                       .arg(Image.GetHeight())
                                       .arg(Rect(Dest), Num(Opacity)));
    if (Forward)
      TVXGPCanvas::DrawImage(Image, Dest, Opacity);
  }
  void DrawImage(const TVXGPImage &Image, const TRectF &Dest, const TRectF &Source, float Alpha,
                 TVXGPUnit Unit) override
  {
    Add(QStringLiteral("DrawImage"), QStringLiteral("%1x%2 dest=%3 source=%4 alpha=%5 unit=%6")
                                       .arg(Image.GetWidth())
                                       .arg(Image.GetHeight())
                                       .arg(Rect(Dest), Rect(Source), Num(Alpha))
                                       .arg(int(Unit)));
    if (Forward)
      TVXGPCanvas::DrawImage(Image, Dest, Source, Alpha, Unit);
  }
  void FillText(const TRectF &R, const QString &Text, const TVXGPStringFormat *Format, float Opacity) override
  {
    Add(QStringLiteral("FillText"), QStringLiteral("%1 \"%2\" flags=%3 opacity=%4")
                                      .arg(Rect(R), Text)
                                      .arg(Format ? int(Format->GetFlags().Bits()) : -1)
                                      .arg(Num(Opacity)));
    if (Forward)
      TVXGPCanvas::FillText(R, Text, Format, Opacity);
  }
  void FillText(const TRectF &R, const QString &Text, bool WordWrap, float Opacity, TVXGPStringFormatFlags Flags,
                TVXGPStringAlignment HorizontalAlign, TVXGPStringAlignment VerticalAlign) override
  {
    Add(QStringLiteral("FillText"), QStringLiteral("%1 \"%2\" wrap=%3 opacity=%4 flags=%5 align=%6,%7")
                                      .arg(Rect(R), Text)
                                      .arg(int(WordWrap))
                                      .arg(Num(Opacity))
                                      .arg(int(Flags.Bits()))
                                      .arg(int(HorizontalAlign))
                                      .arg(int(VerticalAlign)));
    if (Forward)
      TVXGPCanvas::FillText(R, Text, WordWrap, Opacity, Flags, HorizontalAlign, VerticalAlign);
  }
  void Clear(TVXGPColor C) override
  {
    Add(QStringLiteral("Clear"), Color(C));
    if (Forward)
      TVXGPCanvas::Clear(C);
  }
  bool TrySmoothingMode(int Mode) override
  {
    Add(QStringLiteral("TrySmoothingMode"), QString::number(Mode));
    return TVXGPCanvas::TrySmoothingMode(Mode);
  }
  void SetInterpolationMode(int Mode) override
  {
    Add(QStringLiteral("SetInterpolationMode"), QString::number(Mode));
    TVXGPCanvas::SetInterpolationMode(Mode);
  }
  void SetCompositingQuality(int Mode) override
  {
    Add(QStringLiteral("SetCompositingQuality"), QString::number(Mode));
    TVXGPCanvas::SetCompositingQuality(Mode);
  }
  void SetTextRenderingHint(int Hint) override
  {
    Add(QStringLiteral("SetTextRenderingHint"), QString::number(Hint));
    TVXGPCanvas::SetTextRenderingHint(Hint);
  }

private:
  TRecordingCanvas(QImage *Device, bool Owns) : TVXGPCanvas(Device), FDevice(Device), FOwnsDevice(Owns) {}

  static QImage *Blank(int Width, int Height)
  {
    auto *Device = new QImage(Width, Height, QImage::Format_ARGB32_Premultiplied);
    Device->fill(Qt::transparent);
    return Device;
  }

  void Add(const QString &Name, const QString &Arguments) { Log.append(Name + QLatin1Char('(') + Arguments + QLatin1Char(')')); }

  QImage *FDevice;
  bool FOwnsDevice;
};

} // namespace vx
