#pragma once
// TSVGElement: the base of every node of a loaded document. It owns its children, knows its parent
// and its owner document, carries the attributes common to all elements and is the channel through
// which every change reaches the document.
#include "platform/common/VXAssignList.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXStringList.h"
#include "platform/xml/VXXmlDom.h"
#include "tree/VXSVGClasses.h"
#include "tree/VXSVGControlClasses.h"
#include "values/VXSVGVocabulary.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vx {

class TSVGDocument;
class TSVGElement;
class TSVGCustomViewBox;

// The children of an element: owning, so removal frees and extraction hands the child back.
using TSVGElementList = TVXAssignList<TSVGElement>;

class TSVGElement : public TPersistent
{
public:
  explicit TSVGElement(TSVGDocument *Owner);
  ~TSVGElement() override;

  // The class-info record of the element's own class (its virtual constructor).
  virtual const TSVGElementClass &GetClass() const = 0;

  // --- identity and attributes ---
  const QString &ID() const { return FID; }
  // Registers Value in the owner's element table; a taken id gets the " Copy" suffix unless the
  // owner enforces unique ids, in which case the table's duplicate error is raised.
  void SetID(const QString &Value);
  TSVGDocument *GetOwner() const { return FOwner; }
  TSVGElement *Parent() const { return FParent; }
  const TSVGElementList &Items() const { return FItems; }
  TSVGElementList &Items() { return FItems; }
  int Count() const { return FItems.Count(); }
  TSVGElement *operator[](int Index) const { return FItems[Index]; }

  const QString &Title() const { return FTitle; }
  void SetTitle(const QString &Value);
  const TStringList &Description() const { return FDescription; }
  void SetDescription(const TStrings &Value) { FDescription.Assign(&Value); }
  const TStringList &Classes() const { return FClasses; }
  void SetClasses(const TStrings &Value) { FClasses.Assign(&Value); }
  const QString &Language() const { return FLanguage; }
  void SetLanguage(const QString &Value);
  const TStringList &SystemLanguages() const { return FSystemLanguages; }
  void SetSystemLanguages(const TStrings &Value) { FSystemLanguages.Assign(&Value); }
  const TStringList &RequiredFeatures() const { return FRequiredFeatures; }
  void SetRequiredFeatures(const TStrings &Value) { FRequiredFeatures.Assign(&Value); }
  const TStringList &RequiredExtensions() const { return FRequiredExtensions; }
  void SetRequiredExtensions(const TStrings &Value) { FRequiredExtensions.Assign(&Value); }
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool Value);
  std::intptr_t Tag() const { return FTag; }
  void SetTag(std::intptr_t Value) { FTag = Value; }
  TSVGStyleProperties Attributes() const { return FAttributes; }
  TSVGElementState ElementState() const { return FElementState; }

  // --- type ---
  virtual TSVGElementType SVGType() const { return etNone; }
  // The tag name of SVGType; the class name for etNone.
  QString SVGTypeName() const;
  // The element types admitted as children; the base admits all.
  virtual TSVGElementTypes ChildSVGTypes() const;

  // --- tree ---
  // Only the notification of the parent's child list calls this. Overrides call the base.
  virtual void SetParent(TSVGElement *Parent);
  virtual bool IsEnabled() const;
  virtual TSVGOptions GetOptions() const;
  bool IsCompactXML() const { return GetOptions().Contains(soCompactExport); }
  // True under soStandardSVG. Callers do not test it directly: each behaviour that differs between
  // the classic and the standard road has one small decision function named after what it decides,
  // and that function asks this.
  bool FollowsStandardSVG() const { return GetOptions().Contains(soStandardSVG); }
  // Whether systemLanguage is evaluated as browsers do: lang takes no part, and a language is met by
  // a preference with the same primary subtag ("en-GB" by "en-US").
  bool EvaluatesLanguageAsBrowsers() const { return FollowsStandardSVG(); }
  virtual TSVGUnitFactors GetUnitFactors() const;
  QString GetFormatStr() const;

  // The relation tests used by selector matching; HasSibling and HasFollowing keep their historic
  // meaning (see the definitions).
  bool HasChild(const TSVGElement *E) const;
  bool HasDescendant(const TSVGElement *E) const;
  bool HasAncestor(const TSVGElement *E) const;
  bool HasSibling(const TSVGElement *E) const;
  bool HasPreceding(const TSVGElement *E) const;
  bool HasFollowing(const TSVGElement *E) const;

  // --- conditional processing ---
  // Whether the element takes part in drawing: its own conditions, then the owner's last word.
  bool ShouldDraw() const;
  virtual bool DoShouldDraw() const;
  virtual bool HasFeatures() const;
  // No extension is supported, so any required extension hides the element.
  virtual bool HasExtensions() const;
  virtual bool HasLanguages() const;
  // What language selectors ask. The argument is not consulted: the test is whether lang is a
  // single token that starts with itself, which keeps old style sheets matching the same way.
  virtual bool HasLanguage(const QString &Language) const;

  // --- listeners and changes ---
  void ChangeNotification(TSVGElement *Element);
  void RemoveChangeNotification(TSVGElement *Element);
  const TSVGElementList &Listeners() const { return FListeners; }
  // Whether this element is among Element's listeners. Element is only compared, never touched, so
  // a pointer to an element that has gone away may be asked about.
  bool IsListeningTo(const TSVGElement *Element) const;
  virtual void NotifyListener(TSVGElement *Element);
  void NotifyListeners();
  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();
  int UpdateCount() const { return FUpdateCount; }
  // Tells the owner document that Element (or, with nil, the document as a whole) changed.
  virtual void Change(TSVGElement *Element);
  virtual void EnableChange() { Change(this); }
  void ObjectPropChange(TObject *Sender);
  // A changed inherited paint: this element and every descendant hear of it.
  virtual void PropagateObjectPropChange(TObject *Sender);
  // Drops caches; the base resets the children in order.
  virtual void Reset();

  // --- copying ---
  void Assign(const TPersistent *Source) override;
  // Copies this element's own properties from Source; children are not touched. Overrides copy
  // their fields and then call the base.
  virtual void AssignProperties(const TSVGElement *Source);
  // A deep copy made through the virtual constructor; the caller owns it until it is added.
  virtual TSVGElement *Clone(TSVGDocument *Owner) const;
  // A deep copy for the same document.
  std::unique_ptr<TSVGElement> Clone() const { return std::unique_ptr<TSVGElement>(Clone(FOwner)); }
  // Adds Child as the last child and answers it. A child of a type this element does not take is
  // freed and the refusal raised, so nothing leaks either way.
  template <class T>
  T &AddChild(std::unique_ptr<T> Child)
  {
    return static_cast<T &>(AddOwnedChild(std::unique_ptr<TSVGElement>(std::move(Child))));
  }
  // Empties the element: children, listeners and attributes; the id stays.
  virtual void Clear();

  // --- geometry ---
  virtual TRectF GetBoundsRect() const { return TRectF{}; }
  virtual void SetBoundsRect(const TRectF &) {}
  // The bounds transformed by Matrix (the bounding box of the four transformed corners).
  virtual TRectF GetBoundsRect(const TMatrix &Matrix) const;
  TMatrix FitToRect(const TRectF &Rect) const;
  static TMatrix FitToRect(const TRectF &Dest, const TRectF &Source);
  TMatrix GetViewMatrix(const TRectF &Rect) const { return GetViewMatrix(VXIdentityMatrix, Rect); }
  virtual TMatrix GetViewMatrix(const TMatrix &Matrix, const TRectF &Rect) const;
  // Self when it is a view-box element with a specified view box, else the parent's answer.
  virtual const TSVGCustomViewBox *GetNearestViewBox() const;
  TPointF ScreenToLocal(const TPointF &Point, const TRectF &Rect) const;

  // --- generated controls (tree/VXSVGControlGeneration.cpp) ---
  // A new control for this element, nil when its type makes none: ControlConstructor's when that is
  // set, else one of the class SVGControlClasses names, inside Parent when Parent is windowed and
  // beside it (in Parent's parent, owned by Parent's owner) when not.
  virtual IVXHostControl *CreateControl(IVXHostControl *Parent);
  // Makes this element's control in Parent, copies the element into it (AssignTo), lets
  // DoModifyControl place it, tells Callback, then makes the children's controls. Matrix takes the
  // parent's user space to the pixels of the top control. Nil when the element makes no control,
  // and then its children make none either.
  virtual IVXHostControl *GenerateControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                           const TSVGControlElementEvent &Callback);
  // The form above under the view matrix for Rect.
  IVXHostControl *GenerateControls(IVXHostControl *Parent, const TRectF &Rect, const TSVGControlElementEvent &Callback);
  // GenerateControls of each graphic child in order.
  virtual void GenerateChildControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                     const TSVGControlElementEvent &Callback);
  // Shared by all element classes; empty by default.
  static TSVGCreateControlEvent ControlConstructor;

  // --- XML ---
  // Reads Node into this element: events around DoLoadFromXML. Graphic elements read children too.
  virtual void LoadFromXML(const IXMLNode &Node);
  virtual void ApplyStyles();
  // Writes the element into Node, which its parent made for it: events around DoSaveToXML.
  virtual void SaveToXML(const IXMLNode &Node);
  // Whether Element is written: a disabled one is not (without soExportDisabled), and the owner's
  // OnSavingElement may refuse. A refused element keeps its empty node.
  virtual bool DoOnSavingElement(TSVGElement *Element, const IXMLNode &Node);
  virtual void DoOnSavedElement(TSVGElement *Element, const IXMLNode &Node);

  // The document-wide notification of child lists; the document overrides it to fire its events.
  virtual void ElementNotification(TObject *Sender, TSVGElement *Item, TCollectionNotification Action);

protected:
  // Places Control for the element and may change Matrix and Rect for what the children generate.
  // The base does nothing; overrides call the inherited step first.
  virtual void DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                               const TSVGControlElementEvent &Callback);
  // Into a control: its published SVGID takes the id, its Tag this element (outside design) and its
  // hint the description, or the title without one. Other destinations as the base.
  void AssignTo(TPersistent *Dest) const override;

  // Reads the common attributes (id, lang, title, desc, class, conditional lists). Overrides call
  // the base first.
  virtual void DoLoadFromXML(const IXMLNode &Node);
  // Reads the DOM children after the element's own attributes; the base reads none.
  virtual void ReadChildren(const IXMLNode &) {}
  virtual void DoOnParsingNode(TSVGElement *Element, const IXMLNode &Node);
  virtual void DoOnParsedNode(TSVGElement *Element);
  // Writes the common attributes; generated ids are not written. Overrides call the base first.
  virtual void DoSaveToXML(const IXMLNode &Node);

  void IncludeState(TSVGElementStateValue Value) { FElementState.Include(Value); }
  void ExcludeState(TSVGElementStateValue Value) { FElementState.Exclude(Value); }
  void SetAttributes(TSVGStyleProperties Value) { FAttributes = Value; }
  // Marks the element as going away, so that nothing it triggers is reported to the user.
  void BeforeDestruction() { FElementState.Include(esDestroying); }
  void ClearChildren() { FItems.Clear(); }
  // Drops every listener (and their record of listening here), or every element listened to.
  void ForgetListeners();
  void StopListeningToAll();
  TSVGElement &AddOwnedChild(std::unique_ptr<TSVGElement> Child);
  // Adds a new element of the class registered for Type, owned by Owner, and answers its index;
  // -1 when no class reads Type. A child the list refuses is freed.
  int AddChildOfType(TSVGElementType Type, TSVGDocument *Owner);
  // The element type child Node makes: its tag's type, except that the classic road knows no mask
  // element and passes "mask" over like any unknown name.
  TSVGElementType ChildNodeType(const IXMLNode &Node) const;
  // The owner given to copies of children made by Assign and Clone: the owner document, or the
  // document itself when this element is one.
  virtual TSVGDocument *OwnerOfCopies();

  QString FID;
  TSVGDocument *const FOwner;
  TSVGElementList FItems{true};
  QString FTitle;
  TStringList FDescription;
  TSVGElement *FParent = nullptr;
  TStringList FClasses;
  int FUpdateCount = 0;
  QString FLanguage;
  TStringList FSystemLanguages;
  TStringList FRequiredFeatures;
  TStringList FRequiredExtensions;
  bool FEnabled = true;
  TSVGElementList FListeners{false};
  // The elements this one listens to: the other side of their FListeners, kept so that neither side
  // is left pointing at the other once it goes away.
  std::vector<TSVGElement *> FListening;
  std::intptr_t FTag = 0;
  TSVGStyleProperties FAttributes;
  TSVGElementState FElementState;
};

// BeginUpdate/EndUpdate for a scope, also on the way out by an exception.
class TSVGUpdateGuard
{
public:
  explicit TSVGUpdateGuard(TSVGElement &Element);
  // A change handler may fail on the normal way out; while another failure unwinds it is dropped.
  ~TSVGUpdateGuard() noexcept(false);
  TSVGUpdateGuard(const TSVGUpdateGuard &) = delete;
  TSVGUpdateGuard &operator=(const TSVGUpdateGuard &) = delete;

private:
  TSVGElement &FElement;
  int FUncaught;
};

} // namespace vx
