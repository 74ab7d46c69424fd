#include "platform/geometry/VXTransform.h"

#include <numbers>

namespace vx {

void TVXPosition::Assign(const TPersistent *Source)
{
  if (auto *P = dynamic_cast<const TVXPosition *>(Source)) {
    SetPoint(P->GetPoint());
    return;
  }
  TPersistent::Assign(Source);
}

void TVXPosition::SetPoint(const TPointF &P)
{
  if (P.X == FX && P.Y == FY)
    return;
  FX = P.X;
  FY = P.Y;
  if (OnChange)
    OnChange(this);
}

TVXTransform::TVXTransform()
{
  FPosition.OnChange = [this](TObject *) { Changed(false); };
  FScale.OnChange = [this](TObject *) { Changed(true); };
  FRotationCenter.OnChange = [this](TObject *) { Changed(false); };
}

void TVXTransform::Assign(const TPersistent *Source)
{
  if (auto *T = dynamic_cast<const TVXTransform *>(Source)) {
    FPosition.Assign(&T->FPosition);
    FScale.Assign(&T->FScale);
    FRotationCenter.Assign(&T->FRotationCenter);
    SetRotationAngle(T->FRotationAngle);
    return;
  }
  TPersistent::Assign(Source);
}

void TVXTransform::SetRotationAngle(float Degrees)
{
  if (Degrees == FRotationAngle)
    return;
  FRotationAngle = Degrees;
  Changed(false);
}

TMatrix TVXTransform::Matrix() const
{
  TMatrix M = CreateScaleVXMatrix(FScale.X(), FScale.Y());
  if (FRotationAngle != 0)
    M = VXMatrixMultiply(
        M, CreateRotationVXMatrix(FRotationCenter.GetPoint(), FRotationAngle * float(std::numbers::pi) / 180.0f));
  return VXMatrixMultiply(M, CreateTranslateVXMatrix(FPosition.X(), FPosition.Y()));
}

void TVXTransform::Changed(bool SizeChanged)
{
  if (SizeChanged && OnChangeSize)
    OnChangeSize(this);
  if (OnChanged)
    OnChanged(this);
}

} // namespace vx
