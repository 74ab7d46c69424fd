#pragma once
// TVXCustomImageList: the host's image list, a row of equal-sized images that controls draw by
// index. Descendants that keep their pictures in another form override DoDraw and GetIcon; the
// stored images then serve those who read the pixels.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"

#include <QIcon>
#include <QImage>
#include <QPixmap>

#include <vector>

class QPainter;

namespace vx {

class VX_EXPORT TVXCustomImageList : public TPersistent
{
public:
  explicit TVXCustomImageList(int Width = 16, int Height = 16);
  QString ClassName() const override { return QStringLiteral("TVXCustomImageList"); }

  int Count() const { return int(FImages.size()); }
  int Width() const { return FWidth; }
  int Height() const { return FHeight; }
  virtual void SetWidth(int Value);
  virtual void SetHeight(int Value);
  virtual void SetSize(int Width, int Height);

  // Images of another size are scaled to the list's size. Add returns the new index.
  int Add(const QImage &Image);
  void Replace(int Index, const QImage &Image);
  void Delete(int Index);
  void Clear();
  // Nested; OnChange is heard once, when the outermost update ends with something changed.
  void BeginUpdate();
  void EndUpdate();

  // The stored image at the list's size (premultiplied ARGB).
  QImage GetImage(int Index) const;
  // Draws image Index with its top left at X, Y; a disabled image is drawn at half opacity.
  void Draw(QPainter &Painter, int X, int Y, int Index, bool Enabled = true);
  // The image at Size (the list's size when empty) and as an icon for every size a view asks for.
  virtual QPixmap GetPixmap(int Index, const QSize &Size);
  virtual QIcon GetIcon(int Index);

  TNotifyEvent OnChange;

protected:
  virtual void DoDraw(int Index, QPainter &Painter, int X, int Y, bool Enabled);
  void Change();
  // Raises EArgumentOutOfRangeException for an index outside the list.
  void CheckIndex(int Index) const;

private:
  QImage Fitted(const QImage &Image) const;

  std::vector<QImage> FImages;
  int FWidth;
  int FHeight;
  int FUpdateCount = 0;
  bool FChanged = false;
};

} // namespace vx
