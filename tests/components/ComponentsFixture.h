#pragma once
// Shared pieces of the component tests: a picture with a red left half and a blue right half, and
// a counter of the times a document is rendered.
#include "components/VXSVGCtrls.h"

#include <QImage>
#include <QString>
#include <QWidget>

namespace vx {

constexpr QRgb Transparent = 0x00000000;
constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;
constexpr QRgb Lime = 0xFF00FF00;

inline QString HalvesPicture()
{
  return QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20' viewBox='0 0 20 20' "
                        "preserveAspectRatio='none'>"
                        "<rect id='left' width='10' height='20' fill='#f00'/>"
                        "<rect id='right' x='10' width='10' height='20' fill='#00f'/>"
                        "<metadata id='nothing'/></svg>");
}

// Counts complete renderings of Document: its root's drawn event comes once per drawing.
inline void CountRenderings(TVXSVGDocument &Document, int &Count)
{
  Document.SVG().OnDrawn = [&Document, &Count](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &) {
    if (Sender == &Document.SVG())
      ++Count;
  };
}

// What the widget paints, over transparency rather than a window background.
inline QImage Shot(QWidget &Widget)
{
  QImage Image(Widget.size(), QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  Widget.render(&Image, QPoint(), QRegion(), QWidget::DrawChildren);
  return Image;
}

inline void LoadText(TVXSVGDocument &Document, const QString &Text)
{
  TStringList Lines;
  Lines.SetText(Text);
  Document.SetLines(Lines);
}

} // namespace vx
