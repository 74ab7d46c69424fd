#pragma once
// The viewBox and preserveAspectRatio values of viewport elements. The view box keeps its four
// numbers as lengths, so each keeps the unit it was written in, and tells its owner of a change once
// per batch. How the two become a matrix is the viewport element's business.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXClasses.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

#include <memory>

namespace vx {

class VX_EXPORT TSVGViewBox : public TPersistent
{
public:
  TSVGViewBox();
  explicit TSVGViewBox(const TRectF &Rect);
  TSVGViewBox(float Left, float Top, float Right, float Bottom);
  ~TSVGViewBox() override;
  QString ClassName() const override { return QStringLiteral("TSVGViewBox"); }
  // Published for the binary component stream (values/VXSVGValueProperties.cpp).
  const TPropertyTable *PublishedProperties() const override;

  // Changes of the lengths inside a batch are told once, by the outermost EndUpdate.
  void BeginUpdate();
  void EndUpdate();

  // Zero lengths. Outside a batch the closing notification marks the box specified again; only a
  // Clear inside an open batch leaves it unspecified until the next change.
  virtual void Clear();
  // Copies the four lengths and the specified flag in one batch.
  void Assign(const TPersistent *Source) override;

  // True once the box has been given a value: every notified change sets it.
  bool Specified() const { return FSpecified; }
  // For owners that derive a box (which is then not the author's) or read one from an attribute.
  void SetSpecified(bool Value) { FSpecified = Value; }

  TSVGLength *X() const { return FX.get(); }
  TSVGLength *Y() const { return FY.get(); }
  TSVGLength *Width() const { return FWidth.get(); }
  TSVGLength *Height() const { return FHeight.get(); }
  void SetX(const TSVGLength *Value) { FX->Assign(Value); }
  void SetY(const TSVGLength *Value) { FY->Assign(Value); }
  void SetWidth(const TSVGLength *Value) { FWidth->Assign(Value); }
  void SetHeight(const TSVGLength *Value) { FHeight->Assign(Value); }

  // The box in user units; percentages resolve through the lengths' range events.
  TRectF GetRect() const;
  void SetRect(const TRectF &Rect);
  float GetLeft() const;
  float GetTop() const;
  float GetRight() const;
  float GetBottom() const;
  void SetLeft(float Value);
  void SetTop(float Value);
  // The size becomes the distance from the start, so an edge before the start still gives a
  // positive size and never moves the start.
  void SetRight(float Value);
  void SetBottom(float Value);

  // One unit-factor event for all four lengths.
  TSVGUnitFactorsEvent GetOnUnitFactors() const;
  void SetOnUnitFactors(const TSVGUnitFactorsEvent &Event);
  TSVGUnitFactors GetUnitFactors() const;

  // "x y width height", each by the length's own ToString.
  virtual QString ToString(const QString &Format, float Min, float Max) const;

  TNotifyEvent OnChange;

protected:
  void Change();

private:
  void Changed(TObject *Sender);

  std::unique_ptr<TSVGLength> FWidth;
  std::unique_ptr<TSVGLength> FHeight;
  std::unique_ptr<TSVGLength> FY;
  std::unique_ptr<TSVGLength> FX;
  bool FSpecified = false;
  int FUpdateCount = 0;
};

class VX_EXPORT TSVGPreserveAspectRatio : public TPersistent
{
public:
  // The values given here are also the defaults that Clear restores and streaming compares with.
  TSVGPreserveAspectRatio(TSVGAlign Align, bool Defer, bool Slice);
  QString ClassName() const override { return QStringLiteral("TSVGPreserveAspectRatio"); }
  const TPropertyTable *PublishedProperties() const override;

  virtual void Clear();
  void Assign(const TPersistent *Source) override;

  TSVGAlign GetAlign() const { return FAlign; }
  void SetAlign(TSVGAlign Value);
  bool GetDefer() const { return FDefer; }
  void SetDefer(bool Value);
  bool GetSlice() const { return FSlice; }
  void SetSlice(bool Value);
  bool IsAlignStored() const { return FAlign != FDefaultAlign; }
  bool IsDeferStored() const { return FDefer != FDefaultDefer; }
  bool IsSliceStored() const { return FSlice != FDefaultSlice; }

  // "[defer ]align slice|meet"; OmitMeet leaves out the " meet" that SVG assumes anyway.
  virtual QString ToString(bool OmitMeet) const;

  TNotifyEvent OnChange;

protected:
  void Change();

private:
  TSVGAlign FAlign;
  bool FDefer;
  bool FSlice;
  bool FDefaultSlice;
  TSVGAlign FDefaultAlign;
  bool FDefaultDefer;
};

// Reads "[defer] <align> [meet|slice]" into AspectRatio; a blank text leaves it as it is. Words are
// exact: an unknown align word gives saNone, and any last word but "slice" means meet.
VX_EXPORT void ParseAspectRatio(const QString &S, TSVGPreserveAspectRatio &AspectRatio);

} // namespace vx
