#pragma once
// The "image" element: one bitmap, loaded from a data URI, from a bitmap file, or rendered from an
// SVG file, drawn into the element's rectangle by its preserveAspectRatio. The bitmap is the only
// cache; it is filled when the reference is set or read and is not tied to any drawing. Nothing
// that goes wrong while loading escapes: a missing or broken picture leaves no bitmap (or what the
// bitmap already held) and the element draws nothing.
//
// Files are found and read by the owner document's file policy (tree/VXSVGResources.h): by default
// only files inside the folder of the document's own file; a refused file draws nothing. Bitmaps are
// charged to the document's raster budget; a picture over it is skipped the same way. An SVG file
// is loaded into a private document and rendered at its view box size; a picture that would repeat
// itself inside itself, directly or through other files, is skipped where the repetition is first
// met (that image draws nothing), and nesting deeper than MaxImageNesting is cut off the same way.
#include "tree/VXSVGCustomViewBox.h"

#include <memory>

namespace vx {

class TVXGPBitmap;
class TSVGDocument;
class TSVGRasterBudget;

class TSVGImage : public TSVGCustomViewBox
{
  VX_SVG_ELEMENT_CLASS(TSVGImage)

public:
  // No real picture nests SVG images this deep; deeper ones are skipped like a self-inclusion.
  static constexpr int MaxImageNesting = 16;
  // Pictures that show pictures multiply (six files each showing the next six times make 7776), so
  // the pictures loaded inside one outermost picture are counted; past this many an image is
  // skipped like a self-inclusion, and each picture a document names costs at most this much.
  static constexpr int MaxNestedPictures = 256;

  explicit TSVGImage(TSVGDocument *Owner);
  ~TSVGImage() override;

  TSVGElementType SVGType() const override { return etImage; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }

  // The text of xlink:href: a data URI or a file name.
  const QString &Reference() const { return FReference; }
  // Stores the reference and loads the picture it names.
  void SetReference(const QString &Value);
  // The loaded picture; nil when there is none.
  TVXGPBitmap *Bitmap() const { return FBitmap.get(); }
  // Loads the picture that the reference names; called by reading and by SetReference.
  virtual void LoadImage();
  // The rectangle within Rect in which the bitmap is drawn. Only one side of Rect changes, by the
  // larger of the bitmap's two side ratios, and the result is placed by the align; saNone stretches.
  TRectF Align(const TRectF &Rect) const;

  // Whether pictures are placed as browsers place them: an SVG picture is kept as a document and
  // drawn as vectors at the size it is shown, a missing width or height comes from the picture,
  // preserveAspectRatio fits the picture by the standard arithmetic, data URIs and files are
  // recognised by their content whatever their media type or extension, and svgz is inflated.
  bool PicturesFollowStandard() const { return FollowsStandardSVG(); }
  // The SVG picture drawn as vectors in standard mode; nil otherwise.
  TSVGDocument *Picture() const { return FPicture.get(); }
  // The rectangle the picture is shown in: width and height that were not given come from the
  // picture's size (one from the other by its proportions when only one is missing).
  TRectF StandardImageRect() const;

  // The frame of a graphic element: the picture maps into the element's own rectangle, so no view
  // box mapping and no overflow clipping of the viewport apply.
  void Draw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  using TSVGCustomViewBox::Draw;

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  // An image control shows the bitmap; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  // The control covers the element's rectangle under Matrix.
  void DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                       const TSVGControlElementEvent &Callback) override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  // The view box when one was given, else the aspect ratio; the rectangle; the reference as read.
  void DoSaveToXML(const IXMLNode &Node) override;
  // Draws the bitmap, aligned in the element's rectangle and clipped to it, at the fill opacity
  // times the absolute opacity. False when there is no bitmap or the rectangle has no area.
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;

private:
  // The file the reference names, if the owner's file policy lets it be read, and its content.
  bool ReadReferencedFile(QString &FileName, QByteArray &Data) const;
  void LoadDataURI();
  void LoadFile(const QString &FileName, const QByteArray &Data);
  // Decodes a raster picture into Target, unless its size is over the raster budget.
  void LoadRaster(const QByteArray &Data, TVXGPBitmap &Target);
  // Renders an SVG document (of the file FileName, or of a data URI when the name is empty) into the
  // bitmap at its view box size, unless that is over the raster budget.
  void LoadSVG(const QString &FileName, const QByteArray &Data);
  // The owner's raster budget, which the bitmap is charged to; nil without an owner.
  TSVGRasterBudget *Budget() const;
  bool RasterFits(int Width, int Height) const;
  // Charges the bitmap held to the budget, or drops it when the budget is spent.
  void ChargeRaster();
  void ReleaseRaster();
  TVXGPBitmap &EnsureBitmap();
  // Standard mode: Data (of the file Name, or of a data URI when Name is empty) is an SVG picture,
  // compressed or not, or a raster picture of any format.
  void LoadPicture(const QString &Name, const QByteArray &Data, bool DeclaredSVG);
  // The picture's own size: a raster's pixels, an SVG's width and height or view box.
  TSizeF NaturalSize() const;
  bool DrawStandardPicture(const TMatrix &Matrix, TVXGPCanvas &Canvas);
  // Whether image-rendering (inherited) asks for a raster scaled without smoothing.
  bool ScalesWithoutSmoothing() const;

  QString FReference;
  std::unique_ptr<TVXGPBitmap> FBitmap;
  std::unique_ptr<TSVGDocument> FPicture;
  // The bytes of the bitmap that are charged to the budget.
  qint64 FCharged = 0;
};

} // namespace vx
