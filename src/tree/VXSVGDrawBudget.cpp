#include "tree/VXSVGDrawBudget.h"

namespace vx {

namespace {

// How many draws are open on this thread, and what the outermost one has spent.
thread_local int OpenDraws = 0;
thread_local std::int64_t SpentRenderings = 0;
thread_local std::int64_t SpentPixels = 0;

} // namespace

TSVGDrawScope::TSVGDrawScope()
{
  if (OpenDraws++ == 0) {
    SpentRenderings = 0;
    SpentPixels = 0;
  }
}

TSVGDrawScope::~TSVGDrawScope()
{
  --OpenDraws;
}

bool TSVGDrawScope::Charge(std::int64_t Pixels, std::int64_t Renderings)
{
  if (OpenDraws == 0)
    return true;
  if (Renderings > MaxRenderings - SpentRenderings || Pixels > MaxPixels - SpentPixels) {
    SpentRenderings = MaxRenderings;
    return false;
  }
  SpentRenderings += Renderings;
  SpentPixels += Pixels;
  return true;
}

bool TSVGDrawScope::Spent()
{
  return OpenDraws > 0 && SpentRenderings >= MaxRenderings;
}

} // namespace vx
