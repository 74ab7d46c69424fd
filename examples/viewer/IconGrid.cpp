#include "IconGrid.h"

#include "platform/rtl/VXStringList.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGCompressed.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <exception>

namespace vx {

namespace {

constexpr int IconSides[] = {16, 24, 32, 48, 64, 96, 128, 256};
// The full name of the file an icon shows.
constexpr int FileNameRole = Qt::UserRole;

} // namespace

TIconGrid::TIconGrid(QWidget *Parent)
  : QWidget(Parent), FList(new QListWidget(this)), FSides(new QComboBox(this)), FStatus(new QLabel(this))
{
  FList->setViewMode(QListView::IconMode);
  FList->setResizeMode(QListView::Adjust);
  FList->setMovement(QListView::Static);
  FList->setUniformItemSizes(true);
  FList->setWordWrap(true);
  for (const int Side : IconSides)
    FSides->addItem(QStringLiteral("%1 px").arg(Side), Side);
  FSides->setCurrentIndex(FSides->findData(FSide));
  connect(FSides, &QComboBox::currentIndexChanged, this, [this](int Index) { SetIconSide(FSides->itemData(Index).toInt()); });
  connect(FList, &QListWidget::itemActivated, this, [this](QListWidgetItem *Item) {
    if (OnOpenFile)
      OnOpenFile(Item->data(FileNameRole).toString());
  });

  auto *Bar = new QHBoxLayout;
  Bar->addWidget(FStatus, 1);
  Bar->addWidget(FSides);
  auto *Layout = new QVBoxLayout(this);
  Layout->addLayout(Bar);
  Layout->addWidget(FList);
  SetIconSide(FSide);
}

int TIconGrid::OpenFolder(const QString &Folder)
{
  FList->clear();
  FImageList.Items().Clear();
  const QFileInfoList Files =
      QDir(Folder).entryInfoList({QStringLiteral("*.svg"), QStringLiteral("*.svgz")}, QDir::Files, QDir::Name);
  int Broken = 0;
  for (const QFileInfo &File : Files) {
    QFile Source(File.absoluteFilePath());
    if (!Source.open(QIODevice::ReadOnly)) {
      ++Broken;
      continue;
    }
    TSVGCollectionItem *Item = FImageList.Items().Add();
    // Icons are drawn as browsers draw them, like the viewer's pictures.
    Item->SVG().SetOptions(Item->SVG().GetOptions() | TSVGOptions{soStandardSVG});
    try {
      const QByteArray Data = Source.readAll();
      TStringList Lines;
      Lines.SetText(QString::fromUtf8(IsGzipData(Data) ? InflateGzip(Data) : Data));
      Item->SetLines(Lines);
    } catch (const std::exception &) {
      FImageList.Items().Delete(Item->Index());
      ++Broken;
      continue;
    }
    auto *Icon = new QListWidgetItem(FImageList.GetIcon(Item->Index()), File.completeBaseName(), FList);
    Icon->setData(FileNameRole, File.absoluteFilePath());
    Icon->setToolTip(File.fileName());
  }
  const int Shown = FImageList.Items().Count();
  FStatus->setText(Broken ? QStringLiteral("%1: %2 icons, %3 files not shown").arg(Folder).arg(Shown).arg(Broken)
                          : QStringLiteral("%1: %2 icons").arg(Folder).arg(Shown));
  return Shown;
}

void TIconGrid::SetIconSide(int Side)
{
  FSide = Side;
  FImageList.SetSize(Side, Side);
  FList->setIconSize(QSize(Side, Side));
  // Room for the name under the icon: at least a short word wide, two lines high.
  const int CellWidth = std::max(Side, 72) + 16;
  FList->setGridSize(QSize(CellWidth, Side + 2 * FList->fontMetrics().height() + 12));
  const int Index = FSides->findData(Side);
  if (Index >= 0 && Index != FSides->currentIndex())
    FSides->setCurrentIndex(Index);
}

TIconGrid *ShowIconGrid(QWidget *Owner, const QString &Folder)
{
  auto *Grid = new TIconGrid(Owner);
  Grid->setWindowFlag(Qt::Window);
  Grid->setAttribute(Qt::WA_DeleteOnClose);
  Grid->setWindowTitle(QStringLiteral("Icons of %1").arg(Folder));
  Grid->resize(720, 520);
  Grid->OpenFolder(Folder);
  Grid->show();
  return Grid;
}

} // namespace vx
