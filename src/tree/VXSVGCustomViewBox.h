#pragma once
// TSVGCustomViewBox: a group that establishes a view box of its own (the document, symbols,
// markers, patterns and images). The tree needs the box itself; its aspect-ratio arithmetic builds
// on it.
#include "tree/VXSVGCustomGroup.h"

namespace vx {

class TSVGCustomViewBox : public TSVGCustomGroup
{
public:
  using TSVGCustomGroup::TSVGCustomGroup;

  const TRectF &ViewBox() const { return FViewBox; }
  // A box set by the document or by its author; Specified tells whether the author gave it.
  void SetViewBox(const TRectF &Value, bool Specified);
  bool IsViewBoxSpecified() const { return FViewBoxSpecified; }

  const TSVGCustomViewBox *GetNearestViewBox() const override;
  void AssignProperties(const TSVGElement *Source) override;

protected:
  TRectF FViewBox;
  bool FViewBoxSpecified = false;
};

} // namespace vx
