#include "tree/VXSVGCustomViewBox.h"

#include "platform/geometry/VXPathData.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDrawBudget.h"
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
  if (ViewportFollowsStandard())
    return StandardViewport();
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
  const TSVGDrawScope Scope;
  if (!ShouldDraw() || DrawnThroughMask(Matrix, Canvas, Rect))
    return;
  if (ViewportFollowsStandard()) {
    DrawStandardViewport(Matrix, Canvas, Rect);
    return;
  }
  TVXGPCanvasStateGuard Guard(Canvas);
  OverflowClipping(Matrix, Canvas, Rect);
  const TMatrix Combined = VXMatrixMultiply(GetViewMatrix(VXIdentityMatrix, Viewport()), Matrix);
  InternalDraw(Combined, Canvas, Rect);
}

bool TSVGCustomViewBox::ViewportFollowsStandard() const
{
  return FollowsStandardSVG() && GetOwner() && (SVGType() == etDoc || SVGType() == etSymbol);
}

TRectF TSVGCustomViewBox::StandardViewport() const
{
  const TSVGCustomViewBox *Outer = Parent() ? Parent()->GetNearestViewBox() : nullptr;
  const auto *Lender = dynamic_cast<const TSVGGraphicElement *>(Parent());
  const bool Lent = Lender && Lender->SVGType() == etUse;
  auto Side = [&](bool Given, float Own, float UseSide, const TSVGLength *Whole) {
    if (Lent && UseSide > 0)
      return UseSide;
    if (Given)
      return Own;
    return Outer ? Whole->GetValue() : 0.0f;
  };
  const float W = Side(FWidthGiven, GetWidth(), Lent ? Lender->GetWidth() : 0.0f,
                       Outer ? Outer->ViewBox().Width() : nullptr);
  const float H = Side(FHeightGiven, GetHeight(), Lent ? Lender->GetHeight() : 0.0f,
                       Outer ? Outer->ViewBox().Height() : nullptr);
  return TRectF{GetX(), GetY(), GetX() + W, GetY() + H};
}

TMatrix TSVGCustomViewBox::StandardViewMatrix(const TRectF &Viewport) const
{
  const TRectF Box = FViewBox.GetRect();
  if (!FViewBox.Specified() || !(Box.Width() > 0) || !(Box.Height() > 0))
    return CreateTranslateVXMatrix(Viewport.Left, Viewport.Top);
  return StandardFit(Box, Viewport, FAspectRatio);
}

TMatrix TSVGCustomViewBox::StandardFit(const TRectF &Source, const TRectF &Viewport,
                                       const TSVGPreserveAspectRatio &Aspect)
{
  const double VW = Source.Width();
  const double VH = Source.Height();
  if (!(VW > 0) || !(VH > 0))
    return CreateTranslateVXMatrix(Viewport.Left, Viewport.Top);
  double SX = Viewport.Width() / VW;
  double SY = Viewport.Height() / VH;
  const TSVGAlign Align = Aspect.GetAlign();
  if (Align != saNone)
    SX = SY = Aspect.GetSlice() ? std::max(SX, SY) : std::min(SX, SY);
  double X = Viewport.Left - Source.Left * SX;
  double Y = Viewport.Top - Source.Top * SY;
  const double FreeX = Viewport.Width() - VW * SX;
  const double FreeY = Viewport.Height() - VH * SY;
  if (Align == saXMidYMin || Align == saXMidYMid || Align == saXMidYMax)
    X += FreeX / 2;
  else if (Align == saXMaxYMin || Align == saXMaxYMid || Align == saXMaxYMax)
    X += FreeX;
  if (Align == saXMinYMid || Align == saXMidYMid || Align == saXMaxYMid)
    Y += FreeY / 2;
  else if (Align == saXMinYMax || Align == saXMidYMax || Align == saXMaxYMax)
    Y += FreeY;
  return VXMatrixMultiply(CreateScaleVXMatrix(float(SX), float(SY)), CreateTranslateVXMatrix(float(X), float(Y)));
}

void TSVGCustomViewBox::DrawStandardViewport(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const TRectF Port = StandardViewport();
  // A viewport without area shows nothing.
  if (!(Port.Width() > 0) || !(Port.Height() > 0))
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  const TMatrix Outer = VXMatrixMultiply(ViewportTransform(), Matrix);
  if (!IsOverflow() && GetOptions().Contains(soApplyClipping)) {
    const TMatrix Saved = Canvas.GetMatrix();
    Canvas.SetMatrix(VXMatrixMultiply(Outer, Saved));
    Canvas.IntersectClip(Port);
    Canvas.SetMatrix(Saved);
  }
  DrawFrame(VXMatrixMultiply(StandardViewMatrix(Port), Outer), Canvas, Rect);
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
  // "auto" stands for no size, as an absent attribute does.
  auto Given = [&](const QString &Name) {
    return Node.HasAttribute(Name) && ParseAttrString(Node, Name) != QLatin1String("auto");
  };
  FWidthGiven = Given(QStringLiteral("width"));
  FHeightGiven = Given(QStringLiteral("height"));
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
