#include "tree/VXSVGDrawBudget.h"

#include <algorithm>

namespace vx {

namespace {

// How many draws are open on this thread, and what the outermost one has spent.
thread_local int OpenDraws = 0;
thread_local std::int64_t SpentPixels = 0;

} // namespace

TSVGDrawScope::TSVGDrawScope()
{
  if (OpenDraws++ == 0)
    SpentPixels = 0;
}

TSVGDrawScope::~TSVGDrawScope()
{
  --OpenDraws;
}

bool TSVGDrawScope::Charge(std::int64_t Pixels)
{
  if (OpenDraws == 0)
    return true;
  const std::int64_t Cost = std::max(Pixels, MinCharge);
  if (Cost > Budget - SpentPixels) {
    SpentPixels = Budget;
    return false;
  }
  SpentPixels += Cost;
  return true;
}

bool TSVGDrawScope::Spent()
{
  return OpenDraws > 0 && SpentPixels >= Budget;
}

} // namespace vx
