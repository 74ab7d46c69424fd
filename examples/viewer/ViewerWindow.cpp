#include "ViewerWindow.h"

#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "platform/xml/VXXmlDom.h"
#include "raster/VXSVGRaster.h"

#include <QActionGroup>
#include <QBuffer>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QScrollArea>
#include <QStatusBar>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <exception>

namespace vx {

namespace {

constexpr double MinZoom = 0.05, MaxZoom = 32;

QString ItemText(const TSVGElement &Element)
{
  const QString Tag = Element.SVGTypeName();
  return Element.ID().isEmpty() ? Tag : QStringLiteral("%1  #%2").arg(Tag, Element.ID());
}

TSVGElement *ElementOf(const QTreeWidgetItem *Item)
{
  return Item ? reinterpret_cast<TSVGElement *>(Item->data(0, Qt::UserRole).value<quintptr>()) : nullptr;
}

} // namespace

TSVGElement *ElementAtPath(TSVGElement &Root, const std::vector<int> &Path)
{
  TSVGElement *Element = &Root;
  for (const int Index : Path) {
    if (Index < 0 || Index >= Element->Count())
      return nullptr;
    Element = (*Element)[Index];
  }
  return Element;
}

std::vector<int> PathOf(const TSVGElement *Element)
{
  std::vector<int> Path;
  for (; Element && Element->Parent(); Element = Element->Parent())
    Path.insert(Path.begin(), Element->Parent()->Items().IndexOf(Element));
  return Path;
}

TViewerWindow::TViewerWindow(QWidget *Parent) : QMainWindow(Parent)
{
  setWindowTitle(QStringLiteral("vxsvg-view"));
  setAcceptDrops(true);

  auto *Central = new QWidget;
  auto *Layout = new QVBoxLayout(Central);
  Layout->setContentsMargins(0, 0, 0, 0);
  FError = new QLabel;
  FError->setStyleSheet(QStringLiteral("QLabel { background: #fde2e1; color: #8a1c1c; padding: 6px; }"));
  FError->setWordWrap(true);
  FError->hide();
  Layout->addWidget(FError);
  FScroll = new QScrollArea;
  FScroll->setAlignment(Qt::AlignCenter);
  FScreen = new TVXSVGScreen;
  FScreen->SetColor(0xFFFFFFFF);
  FScreen->SetSVGDocument(&FDocument);
  FScreen->SetCursorTracking(true);
  FScreen->OnClickElement = [this](TObject *, TSVGGraphicElement *Element) {
    if (Element)
      SelectElement(Element);
  };
  FScroll->setWidget(FScreen);
  Layout->addWidget(FScroll);
  setCentralWidget(Central);

  FTree = new QTreeWidget;
  FTree->setHeaderHidden(true);
  connect(FTree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *Current) {
    if (!FRebuilding) {
      FHasSelection = Current != nullptr;
      FSelectedPath = PathOf(ElementOf(Current));
    }
    ShowAttributes(ElementOf(Current));
  });
  auto *TreeDock = new QDockWidget(QStringLiteral("Elements"));
  TreeDock->setObjectName(QStringLiteral("elements"));
  TreeDock->setWidget(FTree);
  addDockWidget(Qt::LeftDockWidgetArea, TreeDock);

  FAttributes = new QTableWidget(0, 2);
  FAttributes->setHorizontalHeaderLabels({QStringLiteral("Attribute"), QStringLiteral("Value")});
  FAttributes->horizontalHeader()->setStretchLastSection(true);
  FAttributes->verticalHeader()->hide();
  connect(FAttributes, &QTableWidget::cellChanged, this, &TViewerWindow::AttributeEdited);
  auto *AttributeDock = new QDockWidget(QStringLiteral("Attributes"));
  AttributeDock->setObjectName(QStringLiteral("attributes"));
  AttributeDock->setWidget(FAttributes);
  addDockWidget(Qt::RightDockWidgetArea, AttributeDock);

  FDocument.OnChange = [this](TObject *) { RebuildTree(); };
  CreateThreadImage();
  CreateMenus();
  SetStandardSVG(true);
  SetFitToWindow(true);
  statusBar()->showMessage(QStringLiteral("Open an SVG file, or drop one here"));
}

TViewerWindow::~TViewerWindow()
{
  FDocument.OnChange = nullptr;
}

void TViewerWindow::CreateMenus()
{
  QMenu *File = menuBar()->addMenu(QStringLiteral("&File"));
  File->addAction(QStringLiteral("&Open..."), QKeySequence::Open, this, &TViewerWindow::Open);
  File->addAction(QStringLiteral("Save as &SVG..."), QKeySequence::SaveAs, this, &TViewerWindow::SaveAs);
  File->addAction(QStringLiteral("Export &PNG..."), this, &TViewerWindow::ExportPNG);
  File->addSeparator();
  File->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, &QWidget::close);

  QMenu *View = menuBar()->addMenu(QStringLiteral("&View"));
  View->addAction(QStringLiteral("Zoom &in"), QKeySequence::ZoomIn, this, [this] { SetZoom(FZoom * 1.25); });
  View->addAction(QStringLiteral("Zoom &out"), QKeySequence::ZoomOut, this, [this] { SetZoom(FZoom / 1.25); });
  View->addAction(QStringLiteral("&Actual size"), QKeySequence(Qt::CTRL | Qt::Key_0), this, [this] { SetZoom(1); });
  QAction *Fit = View->addAction(QStringLiteral("&Fit to window"));
  Fit->setCheckable(true);
  Fit->setChecked(FFitToWindow);
  connect(Fit, &QAction::toggled, this, &TViewerWindow::SetFitToWindow);

  QMenu *Wrap = View->addMenu(QStringLiteral("&Wrap mode"));
  FWrapModes = new QActionGroup(this);
  const std::pair<const char *, TSVGImageWrapMode> Modes[] = {
    {"Original", iwOriginal}, {"Fit", iwFit}, {"Stretch", iwStretch}, {"Tile", iwTile}, {"Center", iwCenter}};
  for (const auto &[Name, Mode] : Modes) {
    QAction *Action = Wrap->addAction(QString::fromLatin1(Name));
    Action->setCheckable(true);
    Action->setChecked(Mode == FScreen->WrapMode());
    FWrapModes->addAction(Action);
    connect(Action, &QAction::triggered, this, [this, M = Mode] { FScreen->SetWrapMode(M); });
  }
  View->addSeparator();
  QAction *Standard = View->addAction(QStringLiteral("&Standard SVG (as browsers draw)"));
  Standard->setCheckable(true);
  Standard->setChecked(true);
  connect(Standard, &QAction::toggled, this, &TViewerWindow::SetStandardSVG);
  QAction *Background = View->addAction(QStringLiteral("Render in the &background"));
  Background->setCheckable(true);
  connect(Background, &QAction::toggled, this, &TViewerWindow::SetBackgroundRendering);
}

void TViewerWindow::CreateThreadImage()
{
  FThreadImage = new TVXSVGThreadImage(this);
  FThreadImage->hide();
  FThreadImage->SetCursorTracking(true);
  // The control holds a copy of the picture: a click selects the element at the same place in the
  // window's document.
  FThreadImage->OnClickElement = [this](TObject *, TSVGGraphicElement *Element) {
    if (Element)
      SelectElement(ElementAtPath(FDocument.SVG(), PathOf(Element)));
  };
  FBusy = new QProgressBar;
  FBusy->setRange(0, 0);
  FBusy->setMaximumWidth(120);
  FBusy->hide();
  statusBar()->addPermanentWidget(FBusy);
  FThreadImage->OnBusyChange = [this](TObject *) { FBusy->setVisible(FThreadImage->Busy()); };
}

bool TViewerWindow::BusyIndicatorShown() const
{
  return !FBusy->isHidden();
}

void TViewerWindow::SetBackgroundRendering(bool On)
{
  if (On == FBackground)
    return;
  FBackground = On;
  QWidget *Shown = FScroll->takeWidget();
  Shown->hide();
  Shown->setParent(this);
  FScroll->setWidget(On ? static_cast<QWidget *>(FThreadImage) : FScreen);
  FScroll->widget()->show();
  if (On)
    FeedThreadImage();
  UpdateScreenSize();
}

void TViewerWindow::FeedThreadImage()
{
  FThreadImage->SetOptions(FDocument.Options());
  QBuffer Text;
  Text.open(QIODevice::WriteOnly);
  try {
    FDocument.SVG().SaveToStream(Text);
  } catch (const std::exception &Error) {
    ShowError(QString::fromUtf8(Error.what()));
  }
  TStringList Lines;
  Lines.SetText(QString::fromUtf8(Text.data()));
  FThreadImage->SetLines(Lines);
}

bool TViewerWindow::OpenFile(const QString &FileName)
{
  FError->hide();
  FHasSelection = false;
  try {
    // Set twice: lines that held text empty the name as they are cleared.
    FDocument.Lines().Clear();
    FDocument.SetFilename(QString());
    FDocument.SetFilename(QFileInfo(FileName).absoluteFilePath());
    if (FBackground) {
      // By name, so that the pictures it links to are found beside it.
      FThreadImage->SetOptions(FDocument.Options());
      FThreadImage->SetFilename(QString());
      FThreadImage->SetFilename(QFileInfo(FileName).absoluteFilePath());
    }
  } catch (const std::exception &Error) {
    ShowError(QStringLiteral("%1: %2").arg(FileName, QString::fromUtf8(Error.what())));
    RebuildTree();
    return false;
  }
  setWindowTitle(QStringLiteral("%1 - vxsvg-view").arg(QFileInfo(FileName).fileName()));
  const TSizeF Natural = SVGNaturalSize(FDocument.SVG());
  statusBar()->showMessage(QStringLiteral("%1, %2 by %3, %4 elements")
                               .arg(QFileInfo(FileName).fileName())
                               .arg(double(Natural.cx))
                               .arg(double(Natural.cy))
                               .arg(FTreeItems.size()));
  UpdateScreenSize();
  return true;
}

void TViewerWindow::ShowError(const QString &Message)
{
  FError->setText(Message);
  FError->show();
  statusBar()->showMessage(QStringLiteral("Load failed"));
}

QString TViewerWindow::ErrorText() const
{
  return FError->isHidden() ? QString() : FError->text();
}

void TViewerWindow::Open()
{
  const QString FileName = QFileDialog::getOpenFileName(this, QStringLiteral("Open SVG"), QString(),
                                                        QStringLiteral("SVG pictures (*.svg);;All files (*)"));
  if (!FileName.isEmpty())
    OpenFile(FileName);
}

void TViewerWindow::SaveAs()
{
  const QString FileName =
      QFileDialog::getSaveFileName(this, QStringLiteral("Save as SVG"), QString(), QStringLiteral("SVG (*.svg)"));
  if (FileName.isEmpty())
    return;
  try {
    FDocument.SVG().SaveToFile(FileName);
  } catch (const std::exception &Error) {
    ShowError(QString::fromUtf8(Error.what()));
  }
}

void TViewerWindow::ExportPNG()
{
  const QString FileName =
      QFileDialog::getSaveFileName(this, QStringLiteral("Export PNG"), QString(), QStringLiteral("PNG (*.png)"));
  if (FileName.isEmpty())
    return;
  try {
    const TSizeF Natural = SVGNaturalSize(FDocument.SVG());
    TVXGPBitmap Bitmap(std::max(1, int(std::lround(Natural.cx * FZoom))), std::max(1, int(std::lround(Natural.cy * FZoom))));
    DrawSVGToBitmap(Bitmap, &FDocument.SVG(), VXSmoothingModeHighQuality, true);
    Bitmap.SaveToFile(FileName);
  } catch (const std::exception &Error) {
    ShowError(QString::fromUtf8(Error.what()));
  }
}

void TViewerWindow::SetStandardSVG(bool On)
{
  TSVGOptions Options = FDocument.Options();
  if (On)
    Options.Include(soStandardSVG);
  else
    Options.Exclude(soStandardSVG);
  if (Options == FDocument.Options())
    return;
  FDocument.SetOptions(Options);
  // Loading and the cascade follow the mode too: the picture is read again.
  if (FDocument.SVG().Count() > 0)
    Reload(nullptr);
}

void TViewerWindow::SetZoom(double Zoom)
{
  FZoom = std::clamp(Zoom, MinZoom, MaxZoom);
  if (FFitToWindow) {
    SetFitToWindow(false);
    return;
  }
  UpdateScreenSize();
}

void TViewerWindow::SetFitToWindow(bool On)
{
  FFitToWindow = On;
  FScroll->setWidgetResizable(On);
  UpdateScreenSize();
}

void TViewerWindow::UpdateScreenSize()
{
  if (FFitToWindow)
    return;
  const TSizeF Natural = SVGNaturalSize(FDocument.SVG());
  const int W = Natural.cx > 0 ? int(std::lround(Natural.cx * FZoom)) : 300;
  const int H = Natural.cy > 0 ? int(std::lround(Natural.cy * FZoom)) : 150;
  FScreen->resize(std::clamp(W, 1, VXMaxBitmapSide), std::clamp(H, 1, VXMaxBitmapSide));
  FThreadImage->resize(FScreen->size());
}

void TViewerWindow::RebuildTree()
{
  // The items point at elements that may be gone: none of them is read before they are replaced.
  FRebuilding = true;
  FTree->clear();
  FTreeItems.clear();
  std::function<void(TSVGElement &, QTreeWidgetItem *)> Add = [&](TSVGElement &Element, QTreeWidgetItem *Parent) {
    auto *Item = Parent ? new QTreeWidgetItem(Parent) : new QTreeWidgetItem(FTree);
    Item->setText(0, ItemText(Element));
    Item->setData(0, Qt::UserRole, QVariant::fromValue(reinterpret_cast<quintptr>(&Element)));
    FTreeItems.insert(&Element, Item);
    for (TSVGElement *Child : Element.Items())
      Add(*Child, Item);
  };
  if (FDocument.SVG().Count() > 0 || !FDocument.SVG().ID().isEmpty())
    Add(FDocument.SVG(), nullptr);
  FTree->expandToDepth(1);
  TSVGElement *Selected = FHasSelection ? ElementAtPath(FDocument.SVG(), FSelectedPath) : nullptr;
  SelectElement(Selected);
  FRebuilding = false;
  ShowAttributes(Selected);
}

TSVGElement *TViewerWindow::SelectedElement() const
{
  return ElementOf(FTree->currentItem());
}

void TViewerWindow::SelectElement(TSVGElement *Element)
{
  QTreeWidgetItem *Item = FTreeItems.value(Element);
  FTree->setCurrentItem(Item);
  if (Item)
    FTree->scrollToItem(Item);
}

void TViewerWindow::ShowAttributes(TSVGElement *Element)
{
  FFillingTable = true;
  FAttributes->setRowCount(0);
  if (Element) {
    // The attributes as saving writes them: what the element holds, in the form it was read.
    IXMLDocument Scratch = NewXMLDocument();
    TSVGDocument &SVG = FDocument.SVG();
    SVG.OnSavedElement = [&](TObject *, TSVGElement *Saved, const IXMLNode &Node) {
      if (Saved != Element)
        return;
      const IXMLNodeList Attributes = Node.AttributeNodes();
      for (int I = 0; I < Attributes.Count(); ++I) {
        const int Row = FAttributes->rowCount();
        FAttributes->insertRow(Row);
        auto *Name = new QTableWidgetItem(Attributes[I].NodeName());
        Name->setFlags(Name->flags() & ~Qt::ItemIsEditable);
        FAttributes->setItem(Row, 0, Name);
        FAttributes->setItem(Row, 1, new QTableWidgetItem(Attributes[I].NodeValue()));
      }
    };
    try {
      SVG.SaveToXML(Scratch);
    } catch (const std::exception &Error) {
      statusBar()->showMessage(QString::fromUtf8(Error.what()));
    }
    SVG.OnSavedElement = nullptr;
    // A new row where a user can add an attribute.
    const int Row = FAttributes->rowCount();
    FAttributes->insertRow(Row);
    FAttributes->setItem(Row, 0, new QTableWidgetItem(QString()));
    FAttributes->setItem(Row, 1, new QTableWidgetItem(QString()));
  }
  FFillingTable = false;
}

void TViewerWindow::AttributeEdited(int Row, int Column)
{
  if (FFillingTable)
    return;
  const QString Name = FAttributes->item(Row, 0) ? FAttributes->item(Row, 0)->text().trimmed() : QString();
  const QString Value = FAttributes->item(Row, 1) ? FAttributes->item(Row, 1)->text() : QString();
  if (Name.isEmpty() || (Column == 0 && Value.isEmpty()))
    return;
  SetSelectedAttribute(Name, Value);
}

void TViewerWindow::SetSelectedAttribute(const QString &Name, const QString &Value)
{
  TSVGElement *Target = SelectedElement();
  if (!Target)
    return;
  Reload([&](TSVGElement *Element, const IXMLNode &Node) {
    if (Element != Target)
      return;
    if (Value.isEmpty())
      Node.RemoveAttribute(Name);
    else
      Node.SetAttribute(Name, Value);
  });
}

void TViewerWindow::Reload(const std::function<void(TSVGElement *, const IXMLNode &)> &Edit)
{
  TSVGDocument &SVG = FDocument.SVG();
  const QString FileName = SVG.FileName();
  IXMLDocument Saved = NewXMLDocument();
  if (Edit)
    SVG.OnSavedElement = [&Edit](TObject *, TSVGElement *Element, const IXMLNode &Node) { Edit(Element, Node); };
  try {
    SVG.SaveToXML(Saved);
    SVG.OnSavedElement = nullptr;
    SVG.LoadFromXML(Saved);
    FError->hide();
    if (FBackground)
      FeedThreadImage();
  } catch (const std::exception &Error) {
    SVG.OnSavedElement = nullptr;
    ShowError(QString::fromUtf8(Error.what()));
  }
  SVG.SetFileName(FileName);
}

void TViewerWindow::dragEnterEvent(QDragEnterEvent *Event)
{
  if (Event->mimeData()->hasUrls())
    Event->acceptProposedAction();
}

void TViewerWindow::dropEvent(QDropEvent *Event)
{
  for (const QUrl &Url : Event->mimeData()->urls())
    if (Url.isLocalFile()) {
      OpenFile(Url.toLocalFile());
      Event->acceptProposedAction();
      return;
    }
}

} // namespace vx
