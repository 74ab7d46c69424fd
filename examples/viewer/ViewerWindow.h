#pragma once
// The main window of vxsvg-view: the picture in a screen control, the element tree beside it and
// the attributes of the selected element, which can be edited. Pictures are drawn the way browsers
// draw them (soStandardSVG); a menu switch turns to the classic behaviour. Another switch shows the
// picture through a thread image control, loaded and rendered in the background, with a busy
// indicator in the status bar while it works.
#include "components/VXSVGCtrls.h"

#include <QHash>
#include <QMainWindow>

#include <functional>

#include <vector>

class QActionGroup;
class QLabel;
class QProgressBar;
class QScrollArea;
class QTableWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace vx {

class TViewerWindow : public QMainWindow
{
public:
  explicit TViewerWindow(QWidget *Parent = nullptr);
  ~TViewerWindow() override;

  // Loads FileName; a picture that cannot be loaded shows its error in the window. True on success.
  bool OpenFile(const QString &FileName);
  void SetStandardSVG(bool On);
  void SetZoom(double Zoom);
  void SetFitToWindow(bool On);
  void SetBackgroundRendering(bool On);

  TVXSVGDocument &Document() { return FDocument; }
  TVXSVGScreen &Screen() { return *FScreen; }
  TVXSVGThreadImage &ThreadImage() { return *FThreadImage; }
  bool BusyIndicatorShown() const;
  // The element chosen in the tree or by a click; nil when none.
  TSVGElement *SelectedElement() const;
  void SelectElement(TSVGElement *Element);
  // Sets (or, with an empty Value, removes) an attribute of the selected element and redraws.
  void SetSelectedAttribute(const QString &Name, const QString &Value);
  QString ErrorText() const;

protected:
  void dragEnterEvent(QDragEnterEvent *Event) override;
  void dropEvent(QDropEvent *Event) override;

private:
  void CreateMenus();
  void Open();
  void SaveAs();
  void ExportPNG();
  void ShowError(const QString &Message);
  void RebuildTree();
  void ShowAttributes(TSVGElement *Element);
  void AttributeEdited(int Row, int Column);
  // Saves the document into XML (Edit may change the node of each element as it is written) and
  // loads it again, keeping the file name for relative references and the selection.
  void Reload(const std::function<void(TSVGElement *, const IXMLNode &)> &Edit);
  void UpdateScreenSize();
  void CreateThreadImage();
  // Gives the thread image the document as it stands, edits included.
  void FeedThreadImage();

  TVXSVGDocument FDocument;
  TVXSVGScreen *FScreen;
  TVXSVGThreadImage *FThreadImage = nullptr;
  QProgressBar *FBusy = nullptr;
  bool FBackground = false;
  QScrollArea *FScroll;
  QTreeWidget *FTree;
  QTableWidget *FAttributes;
  QLabel *FError;
  QHash<const TSVGElement *, QTreeWidgetItem *> FTreeItems;
  QActionGroup *FWrapModes = nullptr;
  double FZoom = 1.0;
  bool FFitToWindow = true;
  bool FFillingTable = false;
  // The selection as a path, which survives the reloads that replace every element.
  std::vector<int> FSelectedPath;
  bool FHasSelection = false;
  bool FRebuilding = false;
};

// The element at Path (child indices from the root), or nil.
TSVGElement *ElementAtPath(TSVGElement &Root, const std::vector<int> &Path);
std::vector<int> PathOf(const TSVGElement *Element);

} // namespace vx
