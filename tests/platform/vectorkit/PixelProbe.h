#pragma once
// Small renders and pixel probes for the canvas tests.
#include "platform/vectorkit/VXGPCanvas.h"

#include <QColor>
#include <QImage>

#include <functional>

namespace vx::test {

constexpr TVXGPColor Red = 0xFFFF0000;
constexpr TVXGPColor Green = 0xFF00FF00;
constexpr TVXGPColor Blue = 0xFF0000FF;
constexpr TVXGPColor White = 0xFFFFFFFF;

// Draws on a transparent Width x Height image and returns it once the canvas is finished.
inline QImage Render(int Width, int Height, const std::function<void(TVXGPCanvas &)> &Draw)
{
  QImage Image(Width, Height, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&Image);
    Draw(Canvas);
  }
  return Image;
}

inline int Alpha(const QImage &I, int X, int Y) { return I.pixelColor(X, Y).alpha(); }
inline int RedOf(const QImage &I, int X, int Y) { return I.pixelColor(X, Y).red(); }
inline int BlueOf(const QImage &I, int X, int Y) { return I.pixelColor(X, Y).blue(); }
inline bool Painted(const QImage &I, int X, int Y) { return Alpha(I, X, Y) > 200; }
inline bool Empty(const QImage &I, int X, int Y) { return Alpha(I, X, Y) < 30; }

inline TVXGPPath RectPath(float L, float T, float R, float B)
{
  TVXGPPath P;
  P.AddRectangle({L, T, R, B});
  return P;
}

inline void SolidBrush(TVXGPCanvas &C, TVXGPColor Color)
{
  C.Brush().SetKind(bkSolid);
  C.Brush().SetColor(Color);
}

inline void SolidPen(TVXGPCanvas &C, TVXGPColor Color, float Width)
{
  C.Pen().SetKind(bkSolid);
  C.Pen().SetColor(Color);
  C.Pen().SetThickness(Width);
}

} // namespace vx::test
