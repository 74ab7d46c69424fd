#pragma once
// The viewer's icon browser: every SVG file of a folder as an icon with its name, drawn through an
// SVG image list, so each icon is the picture drawn afresh at the grid's size.
#include "raster/VXSVGImageList.h"

#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QListWidget;

namespace vx {

class TIconGrid : public QWidget
{
public:
  explicit TIconGrid(QWidget *Parent = nullptr);

  // Shows the .svg and .svgz files of Folder, by name; files that do not load are left out and
  // counted. The number of icons shown.
  int OpenFolder(const QString &Folder);
  // Icon sides in pixels; the pictures are drawn again at the new size.
  void SetIconSide(int Side);
  int IconSide() const { return FSide; }

  TVXSVGImageList &ImageList() { return FImageList; }
  QListWidget &List() { return *FList; }
  // Told the file of an icon that is activated (double click or Enter).
  std::function<void(const QString &FileName)> OnOpenFile;

private:
  TVXSVGImageList FImageList;
  QListWidget *FList;
  QComboBox *FSides;
  QLabel *FStatus;
  int FSide = 64;
};

// A window of its own over Owner with the icons of Folder; it goes away when closed.
TIconGrid *ShowIconGrid(QWidget *Owner, const QString &Folder);

} // namespace vx
