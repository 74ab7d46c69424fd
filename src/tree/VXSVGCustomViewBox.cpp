#include "tree/VXSVGCustomViewBox.h"

#include "platform/geometry/VXPathData.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGTransforms.h"

#include <algorithm>

namespace vx {

namespace {

// The bounds of R under Matrix: the box around its four transformed corners.
TRectF TransformedBounds(const TRectF &R, const TMatrix &Matrix)
{
  if (VXMatrixEquals(Matrix, VXIdentityMatrix, 1e-5f))
    return R;
  TVXPathData Corners;
  Corners.AddRectangle(R);
  Corners.ApplyMatrix(Matrix);
  return Corners.GetBounds();
}

} // namespace

TSVGCustomViewBox::TSVGCustomViewBox(TSVGDocument *Owner, TSVGAlign DefaultAlign)
  : TSVGCustomGroup(Owner), FAspectRatio(DefaultAlign, false, false)
{
  FViewBox.OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
  FViewBox.SetOnUnitFactors([this](TObject *, TSVGUnitFactors &Factors) { Factors = GetUnitFactors(); });
  FAspectRatio.OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
  FOverflow = false;
}

void TSVGCustomViewBox::SetViewBox(const TSVGViewBox &Value)
{
  FViewBox.Assign(&Value);
  FViewBox.SetSpecified(true);
}

void TSVGCustomViewBox::SetViewBox(const TRectF &Value)
{
  FViewBox.SetRect(Value);
  FViewBox.SetSpecified(true);
}

void TSVGCustomViewBox::SetViewBoxSilently(const TRectF &Rect, bool Specified) const
{
  TNotifyEvent Saved = std::move(FViewBox.OnChange);
  FViewBox.OnChange = nullptr;
  FViewBox.SetRect(Rect);
  FViewBox.SetSpecified(Specified);
  FViewBox.OnChange = std::move(Saved);
}

const TSVGCustomViewBox *TSVGCustomViewBox::GetNearestViewBox() const
{
  return FViewBox.Specified() ? this : TSVGCustomGroup::GetNearestViewBox();
}

void TSVGCustomViewBox::DefineView(const TRectF &Rect, float ViewBoxWidth, float ViewBoxHeight,
                                   const TSVGPreserveAspectRatio &Aspect, float &X, float &Y, float &ScaleX,
                                   float &ScaleY)
{
  // A view box of at most one unit is scaled to one whatever the viewport: kept as users know it.
  auto Scale = [](double Size, double Viewport) {
    if (Size == 0)
      return 1.0;
    return Size <= 1 ? 1.0 / Size : Viewport / Size;
  };
  double SX = Scale(ViewBoxWidth, VXRectWidth(Rect));
  double SY = Scale(ViewBoxHeight, VXRectHeight(Rect));
  const TSVGAlign Align = Aspect.GetAlign();
  if (Align != saNone)
    SX = SY = Aspect.GetSlice() ? std::max(SX, SY) : std::min(SX, SY);
  switch (Align) {
  case saXMidYMin:
  case saXMidYMid:
  case saXMidYMax:
    X = float(Rect.Left + double(Rect.Width()) / 2 - ViewBoxWidth * SX / 2);
    break;
  case saXMaxYMin:
  case saXMaxYMid:
  case saXMaxYMax:
    X = float(Rect.Right - ViewBoxWidth * SX);
    break;
  default:
    break;
  }
  switch (Align) {
  case saXMinYMid:
  case saXMidYMid:
  case saXMaxYMid:
    Y = float(Rect.Top + double(Rect.Height()) / 2 - ViewBoxHeight * SY / 2);
    break;
  case saXMinYMax:
  case saXMidYMax:
  case saXMaxYMax:
    Y = float(Rect.Bottom - ViewBoxHeight * SY);
    break;
  default:
    break;
  }
  ScaleX = float(SX);
  ScaleY = float(SY);
}

TMatrix TSVGCustomViewBox::GetViewMatrix(const TMatrix &Matrix, const TRectF &Rect) const
{
  if (!FViewBox.Specified() && FAspectRatio.GetAlign() == saNone)
    return VXMatrixMultiply(CreateScaleVXMatrix(Matrix.m11, Matrix.m22), CreateTranslateVXMatrix(Rect.Left, Rect.Top));
  float X = Rect.Left;
  float Y = Rect.Top;
  float ScaleX = 1;
  float ScaleY = 1;
  if (FViewBox.Specified())
    DefineView(Rect, FViewBox.Width()->GetValue(), FViewBox.Height()->GetValue(), FAspectRatio, X, Y, ScaleX, ScaleY);
  TMatrix Result = CreateTranslateVXMatrix(-FViewBox.X()->GetValue(), -FViewBox.Y()->GetValue());
  Result = VXMatrixMultiply(Result, CreateScaleVXMatrix(ScaleX, ScaleY));
  return VXMatrixMultiply(Result, CreateTranslateVXMatrix(X, Y));
}

TRectF TSVGCustomViewBox::Viewport() const
{
  if (!GetOwner() && FViewBox.Specified())
    return FViewBox.GetRect();
  return GetBoundsRect();
}

TRectF TSVGCustomViewBox::GetBoundsRect() const
{
  if (FViewBox.Specified() && !GetOwner())
    return FViewBox.GetRect();
  const TRectF Own = TSVGGraphicElement::GetBoundsRect();
  if (!Own.IsEmpty())
    return Own;
  const TRectF Contents = TSVGCustomGroup::GetBoundsRect();
  SetViewBoxSilently(Contents, false);
  return Contents;
}

TRectF TSVGCustomViewBox::GetBoundsRect(const TMatrix &Matrix) const
{
  return TransformedBounds(GetBoundsRect(), VXMatrixMultiply(FMatrix, Matrix));
}

void TSVGCustomViewBox::Draw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (!ShouldDraw() || DrawnThroughMask(Matrix, Canvas, Rect))
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  OverflowClipping(Matrix, Canvas, Rect);
  const TMatrix Combined = VXMatrixMultiply(GetViewMatrix(VXIdentityMatrix, Viewport()), Matrix);
  InternalDraw(Combined, Canvas, Rect);
}

void TSVGCustomViewBox::DrawElementParent(TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect)
{
  if (TSVGGraphicElement *Parent = GetGraphicParent())
    Parent->DrawElementParent(Matrix, Canvas, Rect);
  if (!ShouldDraw())
    return;
  OverflowClipping(Matrix, Canvas, Rect);
  Matrix = VXMatrixMultiply(GetViewMatrix(VXIdentityMatrix, Viewport()), Matrix);
  PerformClipping(Matrix, Canvas, Rect);
}

void TSVGCustomViewBox::OverflowClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &)
{
  if (IsOverflow() || !GetOptions().Contains(soApplyClipping))
    return;
  const TRectF Clip = GetClipRect();
  if (Clip.IsEmpty())
    return;
  const TMatrix Saved = Canvas.GetMatrix();
  try {
    Canvas.SetMatrix(VXMatrixMultiply(Matrix, Saved));
    Canvas.IntersectClip(Clip);
  } catch (...) {
    Canvas.SetMatrix(Saved);
    throw;
  }
  Canvas.SetMatrix(Saved);
}

bool TSVGCustomViewBox::IsStored(TSVGStyleProperty Property, const QString &Value) const
{
  if (Property == ipOverflow)
    return Value != QLatin1String("hidden");
  return TSVGCustomGroup::IsStored(Property, Value);
}

void TSVGCustomViewBox::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomGroup::DoLoadFromXML(Node);
  FViewBox.SetRect(TRectF{GetX(), GetY(), float(double(GetX()) + GetWidth()), float(double(GetY()) + GetHeight())});
  const QString Text = ParseAttrString(Node, QStringLiteral("viewBox"));
  if (!Text.isEmpty())
    ParseRect(Text, &FViewBox);
  FViewBox.SetSpecified(!Text.isEmpty());
  ParseAspectRatio(ParseAttrString(Node, QStringLiteral("preserveAspectRatio")), FAspectRatio);
}

void TSVGCustomViewBox::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomGroup::DoSaveToXML(Node);
  if (!FViewBox.Specified())
    return;
  SaveAttrString(Node, QStringLiteral("viewBox"), FViewBox.ToString(GetFormatStr(), 0, 1), false, true);
  const QString Aspect = FAspectRatio.ToString(IsCompactXML());
  SaveAttrString(Node, QStringLiteral("preserveAspectRatio"), Aspect, Aspect.isEmpty(), true);
}

void TSVGCustomViewBox::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Box = dynamic_cast<const TSVGCustomViewBox *>(Source)) {
    FViewBox.Assign(&Box->FViewBox);
    SetAspectRatio(Box->FAspectRatio);
  }
  TSVGCustomGroup::AssignProperties(Source);
}

void TSVGCustomViewBox::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomGroup::Clear();
  FAspectRatio.Clear();
  FViewBox.Clear();
  FOverflow = false;
}

} // namespace vx
