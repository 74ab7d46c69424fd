#pragma once
// A fixture for tests that draw small pictures: a square document of Size user units drawn into an
// image of the same size, one unit per pixel, and its elements looked up by id.
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVG.h"

#include <gtest/gtest.h>

#include <QImage>

#include <stdexcept>
#include <string>

namespace vx {

// Colours as QImage::pixel gives them back.
constexpr QRgb NoColor = 0x00000000;
constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;
constexpr QRgb Green = 0xFF008000;
constexpr QRgb Lime = 0xFF00FF00;

class TPictureTest : public ::testing::Test
{
protected:
  explicit TPictureTest(int Size = 20) : FSize(Size) {}

  // Body inside a root whose view box spans Size by Size units.
  void Load(const QString &Body)
  {
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' "
                                         "xmlns:xlink='http://www.w3.org/1999/xlink' width='%1' height='%1' "
                                         "viewBox='0 0 %1 %1'>%2</svg>")
                              .arg(FSize)
                              .arg(Body));
  }
  // Body loaded with the classic rules, or under soStandardSVG.
  void LoadIn(bool Standard, const QString &Body)
  {
    Document.SetOptions(Standard ? DefaultSVGOptions | soStandardSVG : DefaultSVGOptions);
    Load(Body);
  }
  QImage RenderIn(bool Standard, const QString &Body)
  {
    LoadIn(Standard, Body);
    return Render();
  }
  QImage Render()
  {
    QImage Image(FSize, FSize, QImage::Format_ARGB32_Premultiplied);
    Image.fill(Qt::transparent);
    {
      TVXGPCanvas Canvas(&Image);
      Document.Draw(Canvas, TRectF{0, 0, float(FSize), float(FSize)});
    }
    return Image;
  }
  template <typename T = TSVGGraphicElement>
  T &Element(const char *Id)
  {
    auto *Found = dynamic_cast<T *>(Document.AllItems().Elements(QString::fromUtf8(Id)));
    if (!Found)
      throw std::runtime_error(std::string("no element of that class: ") + Id);
    return *Found;
  }

  TSVGDocument Document;
  const int FSize;
};

} // namespace vx
