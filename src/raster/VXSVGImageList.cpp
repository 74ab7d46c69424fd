#include "raster/VXSVGImageList.h"

#include "platform/rtl/VXPropInfo.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGIconEngine.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGException.h"

#include <QPainter>

#include <algorithm>

namespace vx {

// --- TSVGCollectionItem ---------------------------------------------------------------------------

TSVGCollectionItem::TSVGCollectionItem(TSVGCollection *Collection)
  : FCollection(Collection), FSVG(std::make_unique<TSVGDocument>())
{
  FLines.OnChange = [this](TObject *) { LinesChanged(); };
  FSVG->OnChange = [this](TObject *) { SVGChanged(); };
}

TSVGCollectionItem::~TSVGCollectionItem()
{
  FSVG->OnChange = nullptr;
}

int TSVGCollectionItem::Index() const
{
  return FCollection ? FCollection->IndexOf(this) : -1;
}

void TSVGCollectionItem::SetLines(const TStrings &Value)
{
  FLines.Assign(&Value);
}

void TSVGCollectionItem::SetSVG(const TSVGDocument &Value)
{
  FSVG->Assign(&Value);
}

void TSVGCollectionItem::SetProportional(bool Value)
{
  if (Value == FProportional)
    return;
  FProportional = Value;
  SVGChanged();
}

QString TSVGCollectionItem::GetDisplayName() const
{
  return FSVG->ID().isEmpty() ? ClassName() : FSVG->ID();
}

void TSVGCollectionItem::Assign(const TPersistent *Source)
{
  if (auto *Item = dynamic_cast<const TSVGCollectionItem *>(Source)) {
    FProportional = Item->FProportional;
    SetLines(Item->FLines);
    return;
  }
  TPersistent::Assign(Source);
}

void TSVGCollectionItem::LinesChanged()
{
  FSVG->LoadFromText(FLines.Text());
}

// Whatever a loaded file says, Proportional decides: setting the align raises the document's change
// again, and the second round finds it right and tells the collection.
void TSVGCollectionItem::SVGChanged()
{
  const TSVGAlign Wanted = FProportional ? saXMidYMid : saNone;
  if (FSVG->AspectRatio().GetAlign() != Wanted) {
    FSVG->AspectRatio().SetAlign(Wanted);
    return;
  }
  if (FCollection)
    FCollection->Update(this);
}

// --- TSVGCollection -------------------------------------------------------------------------------

TSVGCollection::TSVGCollection(TVXSVGImageList *Owner) : FOwner(Owner) {}

// The owner is going away: the items leave without telling it.
TSVGCollection::~TSVGCollection()
{
  for (auto &Item : FItems)
    Item->FCollection = nullptr;
}

TSVGCollectionItem *TSVGCollection::Items(int Index) const
{
  if (Index < 0 || Index >= Count())
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  return FItems[Index].get();
}

TSVGCollectionItem *TSVGCollection::Add()
{
  return Insert(Count());
}

TSVGCollectionItem *TSVGCollection::Insert(int Index)
{
  if (Index < 0 || Index > Count())
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  auto Item = std::make_unique<TSVGCollectionItem>(this);
  Item->FID = FNextID++;
  TSVGCollectionItem *Result = Item.get();
  FItems.insert(FItems.begin() + Index, std::move(Item));
  Notify(Result, cnAdded);
  return Result;
}

void TSVGCollection::Delete(int Index)
{
  TSVGCollectionItem *Item = Items(Index);
  Notify(Item, cnRemoved);
  FItems.erase(FItems.begin() + Index);
}

void TSVGCollection::Clear()
{
  if (FItems.empty())
    return;
  BeginUpdate();
  while (!FItems.empty())
    Delete(Count() - 1);
  EndUpdate();
}

TSVGCollectionItem *TSVGCollection::FindItemID(int ID) const
{
  for (const auto &Item : FItems)
    if (Item->FID == ID)
      return Item.get();
  return nullptr;
}

int TSVGCollection::IndexOf(const TSVGCollectionItem *Item) const
{
  for (std::size_t I = 0; I < FItems.size(); ++I)
    if (FItems[I].get() == Item)
      return int(I);
  return -1;
}

void TSVGCollection::BeginUpdate()
{
  ++FUpdateCount;
}

void TSVGCollection::EndUpdate()
{
  if (FUpdateCount > 0 && --FUpdateCount == 0 && FChangedInUpdate) {
    FChangedInUpdate = false;
    Update(nullptr);
  }
}

void TSVGCollection::Update(TSVGCollectionItem *Item)
{
  if (FUpdateCount > 0) {
    FChangedInUpdate = true;
    return;
  }
  if (FOwner)
    FOwner->SVGChanged(Item);
}

void TSVGCollection::Assign(const TPersistent *Source)
{
  auto *Other = dynamic_cast<const TSVGCollection *>(Source);
  if (!Other) {
    TPersistent::Assign(Source);
    return;
  }
  if (Other == this)
    return;
  BeginUpdate();
  try {
    Clear();
    for (const auto &Item : Other->FItems)
      Add()->Assign(Item.get());
  } catch (...) {
    EndUpdate();
    throw;
  }
  FChangedInUpdate = true;
  EndUpdate();
}

void TSVGCollection::Notify(TSVGCollectionItem *Item, TCollectionNotification Action)
{
  if (FUpdateCount > 0) {
    FChangedInUpdate = true;
    return;
  }
  if (FOwner)
    FOwner->SVGNotification(*Item, Action);
}

// --- TVXSVGImageList ------------------------------------------------------------------------------

TVXSVGImageList::TVXSVGImageList(int Width, int Height)
  : TVXCustomImageList(Width, Height), FItems(std::make_unique<TSVGCollection>(this))
{
}

TVXSVGImageList::~TVXSVGImageList()
{
  if (FMasterImageList)
    FMasterImageList->RemoveDependent(this);
  FMasterImageList = nullptr;
  // Each dependent leaves this list, which shrinks the list being walked.
  while (!FDependentImageLists.empty())
    FDependentImageLists.back()->SetMasterImageList(nullptr);
}

void TVXSVGImageList::SetItems(const TSVGCollection &Value)
{
  SetMasterImageList(nullptr);
  FItems->Assign(&Value);
}

void TVXSVGImageList::SetQuality(int Value)
{
  Value = std::clamp(Value, 1, 8);
  if (Value == FQuality)
    return;
  FQuality = Value;
  RegenerateBitmaps();
}

void TVXSVGImageList::SetSize(int Width, int Height)
{
  if (Width == this->Width() && Height == this->Height())
    return;
  TVXCustomImageList::SetSize(Width, Height);
  RegenerateBitmaps();
}

// The cycle check comes before the master is stored: a list left pointing at a master that depends
// on it would recurse without end on the next regeneration.
void TVXSVGImageList::SetMasterImageList(TVXSVGImageList *Value)
{
  if (Value == FMasterImageList)
    return;
  if (Value)
    CheckCircular(Value);
  if (FMasterImageList)
    FMasterImageList->RemoveDependent(this);
  else
    FItems->Clear();
  FMasterImageList = Value;
  if (Value)
    Value->AddDependent(this);
  RegenerateBitmaps();
}

void TVXSVGImageList::Assign(const TPersistent *Source)
{
  auto *Other = dynamic_cast<const TVXSVGImageList *>(Source);
  if (!Other) {
    TVXCustomImageList::Assign(Source);
    return;
  }
  if (Other == this)
    return;
  BeginUpdate();
  Clear();
  FQuality = Other->FQuality;
  TVXCustomImageList::SetSize(Other->Width(), Other->Height());
  SetItems(*Other->FItems);
  EndUpdate();
}

QPixmap TVXSVGImageList::GetPixmap(int Index, const QSize &Size)
{
  TSVGCollectionItem &Item = *SourceItems().Items(Index);
  const std::unique_ptr<TVXGPBitmap> Bitmap = GenerateBitmap(Item, Size.width(), Size.height());
  return QPixmap::fromImage(Bitmap->Image());
}

QIcon TVXSVGImageList::GetIcon(int Index)
{
  TSVGCollectionItem &Item = *SourceItems().Items(Index);
  auto *Engine = new TVXSVGIconEngine(Item.SVG().GetOptions());
  Engine->SetKeepAspectRatio(Item.Proportional());
  Engine->AddData(Item.Lines().Text().toUtf8(), QIcon::Normal, QIcon::Off);
  return QIcon(Engine);
}

std::unique_ptr<TVXGPBitmap> TVXSVGImageList::GenerateBitmap(TSVGCollectionItem &Item, int W, int H) const
{
  if (W <= 0)
    W = Width();
  if (H <= 0)
    H = Height();
  auto Result = std::make_unique<TVXGPBitmap>(W, H);
  TSVGDocument &Document = Item.SVG();
  // The picture fills the cell up to the last pixel's left and top edges, as the host's lists draw.
  auto DrawInto = [&Document](TVXGPCanvas &Canvas, int Width, int Height) {
    const TRectF R{0, 0, float(Width - 1), float(Height - 1)};
    Document.Draw(Document.GetViewMatrix(Document.FitToRect(R), R), Canvas, R);
  };
  TVXGPCanvas &Canvas = Result->GetCanvas();
  Canvas.Clear(0);
  if (FQuality == 1) {
    DrawInto(Canvas, W, H);
    return Result;
  }
  TVXGPBitmap Large(W * FQuality, H * FQuality);
  DrawInto(Large.GetCanvas(), Large.GetWidth(), Large.GetHeight());
  Canvas.TrySmoothingMode(VXSmoothingModeHighQuality);
  Canvas.DrawImage(Large, TRectF{0, 0, float(W), float(H)}, 1.0f);
  return Result;
}

void TVXSVGImageList::AddBitmap(TSVGCollectionItem &Item)
{
  Add(GenerateBitmap(Item, 0, 0)->Image());
  for (TVXSVGImageList *Dependent : FDependentImageLists)
    Dependent->AddBitmap(Item);
}

void TVXSVGImageList::SVGChanged(TSVGCollectionItem *Item)
{
  if (Item)
    Replace(Item->Index(), GenerateBitmap(*Item, 0, 0)->Image());
  else
    RegenerateBitmaps();
  for (TVXSVGImageList *Dependent : FDependentImageLists)
    Dependent->SVGChanged(Item);
}

// A list whose own items change leaves its master. Leaving regenerates every image from the own
// items, a new one included, so an addition is then complete.
void TVXSVGImageList::SVGNotification(TSVGCollectionItem &Item, TCollectionNotification Action)
{
  if (FMasterImageList) {
    SetMasterImageList(nullptr);
    if (Action == cnAdded)
      return;
  }
  if (Action == cnAdded)
    AddBitmap(Item);
  else
    DeleteImage(Item.Index());
}

void TVXSVGImageList::DeleteImage(int Index)
{
  Delete(Index);
  for (TVXSVGImageList *Dependent : FDependentImageLists)
    Dependent->DeleteImage(Index);
}

void TVXSVGImageList::AddDependent(TVXSVGImageList *List)
{
  if (std::find(FDependentImageLists.begin(), FDependentImageLists.end(), List) == FDependentImageLists.end())
    FDependentImageLists.push_back(List);
}

void TVXSVGImageList::RemoveDependent(TVXSVGImageList *List)
{
  std::erase(FDependentImageLists, List);
}

void TVXSVGImageList::RegenerateBitmaps()
{
  BeginUpdate();
  try {
    Clear();
    RegenerateBitmaps(*this);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TVXSVGImageList::RegenerateBitmaps(TVXSVGImageList &List)
{
  if (FMasterImageList) {
    FMasterImageList->RegenerateBitmaps(List);
    return;
  }
  for (int I = 0; I < FItems->Count(); ++I)
    List.Add(List.GenerateBitmap(*FItems->Items(I), 0, 0)->Image());
}

void TVXSVGImageList::CheckCircular(const TVXSVGImageList *List) const
{
  if (List == this)
    throw ESVGException(SCircularReference);
  for (const TVXSVGImageList *Dependent : FDependentImageLists)
    Dependent->CheckCircular(List);
}

void TVXSVGImageList::DoDraw(int Index, QPainter &Painter, int X, int Y, bool Enabled)
{
  TSVGDocument &Document = SourceItems().Items(Index)->SVG();
  const qreal Opacity = Painter.opacity();
  if (!Enabled)
    Painter.setOpacity(Opacity * 0.5);
  {
    TVXGPCanvas Canvas(&Painter);
    Document.Draw(Canvas, TRectF{float(X), float(Y), float(X + Width()), float(Y + Height())});
  }
  Painter.setOpacity(Opacity);
}

TSVGCollection &TVXSVGImageList::SourceItems()
{
  return FMasterImageList ? FMasterImageList->SourceItems() : *FItems;
}

// --- stored form ----------------------------------------------------------------------------------

const TPropertyTable *TSVGCollectionItem::PublishedProperties() const
{
  using C = TSVGCollectionItem;
  static const TPropertyTable Table(nullptr, {
    PublishedObject<C>(QStringLiteral("Lines"), QStringLiteral("TStrings"),
                       [](C &Item) -> TStringList & { return Item.FLines; }),
    PublishedValue<C>(QStringLiteral("Proportional"), tkBoolean, QStringLiteral("Boolean"), &C::Proportional,
                      &C::SetProportional, StoredUnless<C>(&C::Proportional, true)),
  });
  return &Table;
}

const TPropertyTable *TVXSVGImageList::PublishedProperties() const
{
  using C = TVXSVGImageList;
  static const TPropertyTable Table(nullptr, {
    PublishedObject<C>(QStringLiteral("Items"), QStringLiteral("TSVGCollection"),
                       [](C &List) -> TSVGCollection & { return List.Items(); },
                       std::function<bool(const C &)>([](const C &List) { return List.Items().Count() > 0; })),
    PublishedValue<C>(QStringLiteral("Quality"), tkInteger, QStringLiteral("Integer"), &C::Quality, &C::SetQuality,
                      StoredUnless<C>(&C::Quality, 1)),
    PublishedValue<C>(QStringLiteral("Height"), tkInteger, QStringLiteral("Integer"), &C::Height, &C::SetHeight),
    PublishedValue<C>(QStringLiteral("Width"), tkInteger, QStringLiteral("Integer"), &C::Width, &C::SetWidth),
  });
  return &Table;
}

} // namespace vx
