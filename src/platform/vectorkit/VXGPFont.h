#pragma once
// Fonts, string formats and text measurement of the canvas. Text is laid out and drawn as glyph
// outlines of a QRawFont at the font's exact (fractional) pixel size, so measuring, outlines and
// drawing agree and do not depend on the resolution of the device.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXClasses.h"
#include "platform/rtl/VXSet.h"
#include "platform/vectorkit/VXGPPaint.h"

#include <QFont>
#include <QHash>
#include <QPainterPath>
#include <QRawFont>

#include <cstdint>
#include <memory>
#include <vector>

namespace vx {

class TVXGPCanvas;

enum TVXGPFontStyle : std::uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TVXGPFontStyles = TSet<TVXGPFontStyle, std::uint8_t>;

// Font state: family name, size in pixels (the em height) and style. The text fill is the font's
// own brush (SetBrush copies one in).
class VX_EXPORT TVXGPFont : public TPersistent
{
public:
  explicit TVXGPFont(TVXGPCanvas *Canvas = nullptr);
  ~TVXGPFont() override;
  QString ClassName() const override { return QStringLiteral("TVXGPFont"); }
  // Copies name, size, style and brush from another font.
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  TVXGPCanvas *GetCanvas() const { return FCanvas; }
  const QString &GetName() const { return FName; }
  virtual void SetName(const QString &Value);
  float GetSize() const { return FSize; }
  virtual void SetSize(float Value);
  TVXGPFontStyles GetStyle() const { return FStyle; }
  virtual void SetStyle(TVXGPFontStyles Value);
  TVXGPBrush &GetBrush() { return *FBrush; }
  const TVXGPBrush &GetBrush() const { return *FBrush; }
  void SetBrush(const TVXGPBrush &Brush);

  // Design metrics in font units (whole numbers), of the face that the name and style resolve to.
  int GetCellAscent() const;
  int GetCellDescent() const;
  int GetEmHeight() const;
  // Line spacing in pixels at the present size.
  float GetLineSpacing() const;

  // The face at its design size (one pixel per font unit); shared by fonts of the same name and
  // style on one thread.
  const QRawFont &RawFont() const;
  QFont ToQFont() const;

  // True when the font database knows Family (exactly, without regard to case).
  static bool IsFontFamilyAvailable(const QString &Family);

protected:
  virtual void Change();

private:
  TVXGPCanvas *FCanvas;
  QString FName = QStringLiteral("Tahoma");
  float FSize = 11;
  TVXGPFontStyles FStyle;
  std::unique_ptr<TVXGPBrush> FBrush;
public:
  // The face and its design metrics in font units.
  struct TFace
  {
    QRawFont Raw;
    int Ascent = 0, Descent = 0, EmHeight = 1, LineGap = 0;
    // The outline of a glyph in font units. Loading an outline runs the font's hinting program,
    // which costs far more than drawing it, so outlines are kept once loaded.
    const QPainterPath &GlyphOutline(quint32 Glyph) const;

  private:
    mutable QHash<quint32, QPainterPath> FOutlines;
  };
  const TFace &Face() const;

private:
  mutable std::shared_ptr<const TFace> FFace;

  void FaceChanged();
};

enum TVXGPStringFormatFlag : std::uint8_t {
  sfDirectionRightToLeft, sfDirectionVertical, sfNoFitBlackBox, sfDisplayFormatControl,
  sfNoFontFallback, sfMeasureTrailingSpaces, sfNoWrap, sfLineLimit, sfNoClip
};
using TVXGPStringFormatFlags = TSet<TVXGPStringFormatFlag, std::uint16_t>;

// Alignment in either axis: near (left/top), centre, far.
enum TVXGPStringAlignment : std::uint8_t { saNear, saCenter, saFar };

// How text is placed in its layout rectangle. Without sfMeasureTrailingSpaces trailing blanks do not
// count in measuring and alignment; without sfNoClip text is clipped to a non-empty rectangle;
// without sfNoWrap a rectangle with a width wraps at blanks.
class VX_EXPORT TVXGPStringFormat
{
public:
  TVXGPStringFormat() = default;
  // The typographic format: no padding, flags sfNoFitBlackBox, sfLineLimit and sfNoClip. The caller
  // owns the result.
  static std::unique_ptr<TVXGPStringFormat> GenericTypographic();

  TVXGPStringFormatFlags GetFlags() const { return FFlags; }
  void SetFlags(TVXGPStringFormatFlags Value) { FFlags = Value; }
  TVXGPStringAlignment GetAlignment() const { return FAlignment; }
  void SetAlignment(TVXGPStringAlignment Value) { FAlignment = Value; }
  TVXGPStringAlignment GetLineAlignment() const { return FLineAlignment; }
  void SetLineAlignment(TVXGPStringAlignment Value) { FLineAlignment = Value; }

private:
  TVXGPStringFormatFlags FFlags;
  TVXGPStringAlignment FAlignment = saNear;
  TVXGPStringAlignment FLineAlignment = saNear;
};

// One laid-out line: its text range, its advance and its top-left corner.
struct VX_EXPORT TVXTextLine
{
  int Start = 0, Length = 0;
  float Width = 0;
  TPointF Origin;
};

// Text measurement and outlines in one face. Advances are kerned design advances at the font size.
class VX_EXPORT TVXTextShaper
{
public:
  explicit TVXTextShaper(const TVXGPFont &Font);

  float Ascent() const;
  float Descent() const;
  float LineSpacing() const;
  // Advance width of Text, every blank counted.
  float Advance(const QString &Text) const;
  // Bounds of the ink of Text drawn with its origin (left end of the baseline) at (0, 0).
  TRectF InkBounds(const QString &Text) const;
  // Outlines of Text with the left end of its baseline at Origin; underline and strike-out of the
  // font's style are added as rectangles.
  QPainterPath Outline(const QString &Text, const TPointF &Origin) const;

  // Breaks Text into lines for a layout rectangle of width MaxWidth (0: no wrapping) and places them
  // in Rect by the format's alignments. Measured widths leave out trailing blanks unless the format
  // counts them.
  std::vector<TVXTextLine> Layout(const QString &Text, const TRectF &Rect, const TVXGPStringFormat &Format,
                                  bool WordWrap) const;

private:
  const TVXGPFont &FFont;
  const TVXGPFont::TFace &FFace;
  // Pixels per font unit.
  double FScale;

  QList<quint32> Glyphs(const QString &Text) const;
  QList<QPointF> Advances(const QList<quint32> &Glyphs) const;

  float LineWidth(const QString &Text, int Start, int Length, bool CountTrailing) const;
};

} // namespace vx
