#pragma once
// Scoped changes that paint servers and markers make while they draw their contents out of place:
// each one is undone on the way out, also by an exception.
#include "platform/rtl/VXExport.h"
#include "tree/VXSVGElement.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vx {

// Enters Element into Stack (the elements at work on this thread, innermost last) unless it is
// there already or Stack is Limit deep; Entered is false then, and the caller does nothing, which
// ends reference cycles and runaway nesting.
class VX_EXPORT TStackScope
{
public:
  TStackScope(std::vector<const TSVGElement *> &Stack, const TSVGElement &Element, std::size_t Limit)
    : FStack(Stack),
      FEntered(Stack.size() < Limit && std::find(Stack.begin(), Stack.end(), &Element) == Stack.end())
  {
    if (FEntered)
      FStack.push_back(&Element);
  }
  ~TStackScope()
  {
    if (FEntered)
      FStack.pop_back();
  }
  TStackScope(const TStackScope &) = delete;
  TStackScope &operator=(const TStackScope &) = delete;
  bool Entered() const { return FEntered; }

private:
  std::vector<const TSVGElement *> &FStack;
  bool FEntered;
};

// Sets Element's enabled state to Value and puts the old one back.
class VX_EXPORT TEnabledScope
{
public:
  TEnabledScope(TSVGElement &Element, bool Value) : FElement(Element), FSaved(Element.Enabled())
  {
    Element.SetEnabled(Value);
  }
  ~TEnabledScope() { FElement.SetEnabled(FSaved); }
  TEnabledScope(const TEnabledScope &) = delete;
  TEnabledScope &operator=(const TEnabledScope &) = delete;

private:
  TSVGElement &FElement;
  bool FSaved;
};

// Lends Target to Borrower as its parent, so that it draws and inherits there.
class VX_EXPORT TParentLoan
{
public:
  TParentLoan(TSVGElement &Target, TSVGElement &Borrower) : FTarget(Target), FSaved(Target.Parent())
  {
    Target.SetParent(&Borrower);
  }
  ~TParentLoan() { FTarget.SetParent(FSaved); }
  TParentLoan(const TParentLoan &) = delete;
  TParentLoan &operator=(const TParentLoan &) = delete;

private:
  TSVGElement &FTarget;
  TSVGElement *FSaved;
};

} // namespace vx
