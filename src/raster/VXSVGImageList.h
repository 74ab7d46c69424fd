#pragma once
// TVXSVGImageList: an image list whose pictures are SVG documents kept as text in a collection.
// The list's images are derived data, drawn at the list's size (Quality times larger, then scaled
// down, for smoother edges); controls draw the documents themselves in vector form. Lists of other
// sizes can show the same collection through a master list: a dependent keeps no items of its own
// and draws its master's at its own size.
#include "platform/rtl/VXExport.h"
#include "platform/common/VXCollections.h"
#include "platform/common/VXStreamedCollection.h"
#include "platform/rtl/VXStringList.h"
#include "platform/vectorkit/VXGPImageList.h"

#include <memory>
#include <vector>

namespace vx {

class TSVGCollection;
class TSVGDocument;
class TVXGPBitmap;
class TVXSVGImageList;

class VX_EXPORT TSVGCollectionItem : public TPersistent
{
public:
  explicit TSVGCollectionItem(TSVGCollection *Collection);
  ~TSVGCollectionItem() override;
  QString ClassName() const override { return QStringLiteral("TSVGCollectionItem"); }
  // Lines and Proportional: the stored form of an item (no image data).
  const TPropertyTable *PublishedProperties() const override;

  TSVGCollection *Collection() const { return FCollection; }
  int Index() const;
  // Unique within the collection for its lifetime, unlike the index.
  int ID() const { return FID; }

  // The SVG text; setting it loads the document.
  const TStringList &Lines() const { return FLines; }
  void SetLines(const TStrings &Value);
  TSVGDocument &SVG() const { return *FSVG; }
  // Copies Value's tree into the item's document (Lines keep their text).
  void SetSVG(const TSVGDocument &Value);
  // True keeps the picture's proportions in the list's cell (centred), false stretches it to the
  // cell, whatever the SVG's own preserveAspectRatio says.
  bool Proportional() const { return FProportional; }
  void SetProportional(bool Value);
  // The document's id, or the class name when it has none.
  QString GetDisplayName() const;

  // Copies Lines and Proportional of another item.
  void Assign(const TPersistent *Source) override;

private:
  friend class TSVGCollection;
  void LinesChanged();
  void SVGChanged();

  TSVGCollection *FCollection;
  int FID = 0;
  TStringList FLines;
  std::unique_ptr<TSVGDocument> FSVG;
  bool FProportional = true;
};

// The items of one image list. Adding and deleting are told to the list item by item; an update
// (BeginUpdate .. EndUpdate, Assign) is told once, as a change of everything.
class VX_EXPORT TSVGCollection : public TPersistent, public TStreamedCollection
{
public:
  explicit TSVGCollection(TVXSVGImageList *Owner);
  ~TSVGCollection() override;
  QString ClassName() const override { return QStringLiteral("TSVGCollection"); }

  TVXSVGImageList *Owner() const { return FOwner; }
  int Count() const { return int(FItems.size()); }
  TSVGCollectionItem *Items(int Index) const;
  TSVGCollectionItem *Add();
  TSVGCollectionItem *Insert(int Index);
  void Delete(int Index);
  void Clear();
  TSVGCollectionItem *FindItemID(int ID) const;
  int IndexOf(const TSVGCollectionItem *Item) const;

  void BeginUpdate();
  void EndUpdate();
  // Tells the owner that Item (nullptr: everything) has changed; silent while an update is open.
  void Update(TSVGCollectionItem *Item);

  // Copies the items of another collection.
  void Assign(const TPersistent *Source) override;

  int StreamedCount() const override { return Count(); }
  const TPersistent &StreamedItem(int Index) const override { return *Items(Index); }
  void StreamedClear() override { Clear(); }
  TPersistent &StreamedAdd() override { return *Add(); }

private:
  void Notify(TSVGCollectionItem *Item, TCollectionNotification Action);

  TVXSVGImageList *FOwner;
  std::vector<std::unique_ptr<TSVGCollectionItem>> FItems;
  int FNextID = 0;
  int FUpdateCount = 0;
  bool FChangedInUpdate = false;
};

class VX_EXPORT TVXSVGImageList : public TVXCustomImageList
{
public:
  explicit TVXSVGImageList(int Width = 16, int Height = 16);
  ~TVXSVGImageList() override;
  QString ClassName() const override { return QStringLiteral("TVXSVGImageList"); }
  // Width, Height, Quality and the items; the images are not stored but drawn again after a load.
  const TPropertyTable *PublishedProperties() const override;

  TSVGCollection &Items() { return *FItems; }
  const TSVGCollection &Items() const { return *FItems; }
  // Leaves the master first, then copies the items.
  void SetItems(const TSVGCollection &Value);

  int Quality() const { return FQuality; }
  // Clamped to 1 .. 8.
  void SetQuality(int Value);
  void SetSize(int Width, int Height) override;

  TVXSVGImageList *MasterImageList() const { return FMasterImageList; }
  // A dependent shows the master's items at its own size; its own items are cleared when it takes
  // its first master. A master that would end up depending on itself raises ESVGException
  // ("Circular reference detected") and the list keeps its old master.
  void SetMasterImageList(TVXSVGImageList *Value);
  int GetDependentImageListCount() const { return int(FDependentImageLists.size()); }
  TVXSVGImageList *GetDependentImageList(int Index) const { return FDependentImageLists.at(Index); }

  // Copies Quality, size and items of another SVG image list.
  void Assign(const TPersistent *Source) override;

  // The picture of item Index drawn afresh at Size (the list's size when empty), in vector form.
  QPixmap GetPixmap(int Index, const QSize &Size) override;
  // An icon that draws the item's picture at every size and device-pixel ratio it is asked for.
  QIcon GetIcon(int Index) override;

  // A new bitmap of W by H (0 takes the list's side) with Item's picture.
  virtual std::unique_ptr<TVXGPBitmap> GenerateBitmap(TSVGCollectionItem &Item, int W, int H) const;

  // Called by the collection.
  virtual void SVGChanged(TSVGCollectionItem *Item);
  virtual void SVGNotification(TSVGCollectionItem &Item, TCollectionNotification Action);

protected:
  virtual void AddBitmap(TSVGCollectionItem &Item);
  virtual void AddDependent(TVXSVGImageList *List);
  virtual void RemoveDependent(TVXSVGImageList *List);
  // Rebuilds every image from the items (the master's, for a dependent).
  void RegenerateBitmaps();
  virtual void RegenerateBitmaps(TVXSVGImageList &List);
  // Raises ESVGException when List is this list or one of its dependents, near or far.
  virtual void CheckCircular(const TVXSVGImageList *List) const;
  // Draws the item's document into the cell, not the stored image.
  void DoDraw(int Index, QPainter &Painter, int X, int Y, bool Enabled) override;

private:
  // The collection whose items this list shows: the top master's.
  TSVGCollection &SourceItems();
  void DeleteImage(int Index);

  std::unique_ptr<TSVGCollection> FItems;
  std::vector<TVXSVGImageList *> FDependentImageLists;
  TVXSVGImageList *FMasterImageList = nullptr;
  int FQuality = 1;
};

} // namespace vx
