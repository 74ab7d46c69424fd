#include "structure/VXSVGPattern.h"

#include "platform/vectorkit/VXGPCanvas.h"
#include "structure/VXSVGObjectBox.h"
#include "structure/VXSVGScopes.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGDrawBudget.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGPropertyParsers.h"
#include "values/VXSVGTransforms.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGPattern)

namespace {

const TSVGClassRegistration PatternRegistration(etPattern, TSVGPattern::ClassInfo());

// Tiles rendered one inside the other (a pattern whose contents are filled with another pattern);
// each holds a bitmap while the inner ones render, so the depth is bounded.
constexpr std::size_t MaxTileNesting = 8;

// Patterns whose tiles are being rendered, and patterns whose contents are being drawn (own or
// through an href), on this thread, innermost last.
thread_local std::vector<const TSVGElement *> RenderingTiles;
thread_local std::vector<const TSVGElement *> DrawingContents;
// The pixels of the tiles being rendered on this thread: nested tiles share one budget.
thread_local std::int64_t TilePixelsInUse = 0;

// Books Pixels of the tile budget for a scope.
class TTileBudget
{
public:
  explicit TTileBudget(std::int64_t Pixels) : FPixels(Pixels) { TilePixelsInUse += Pixels; }
  ~TTileBudget() { TilePixelsInUse -= FPixels; }
  TTileBudget(const TTileBudget &) = delete;
  TTileBudget &operator=(const TTileBudget &) = delete;

private:
  std::int64_t FPixels;
};

// Whether Target is From or one of its ancestors: lending it to From would make the chain loop.
bool IsWithin(const TSVGElement &Target, const TSVGElement &From)
{
  for (const TSVGElement *E = &From; E; E = E->Parent())
    if (E == &Target)
      return true;
  return false;
}

// Where in a period of Size pixels the device position Value falls, in [0, Size).
double Phase(double Value, int Size)
{
  if (!std::isfinite(Value))
    return 0;
  const double Result = std::fmod(Value, double(Size));
  return Result < 0 ? Result + Size : Result;
}

// A tile side in whole pixels: the truncated size, 0 for an inverted or undefined one, -1 when it
// is beyond what a tile may take.
std::int64_t TileSide(double Size)
{
  if (!(Size > 0))
    return 0;
  const double Whole = std::trunc(Size);
  return Whole > TSVGPattern::MaxTileSide ? -1 : std::int64_t(Whole);
}

} // namespace

TSVGPattern::TSVGPattern(TSVGDocument *Owner) : TSVGCustomViewBox(Owner) {}

TSVGPattern::~TSVGPattern()
{
  FListener.Stop(*this);
}

// --- properties ------------------------------------------------------------------------------------

void TSVGPattern::SetReference(const QString &Value)
{
  if (Value == FReference)
    return;
  FReference = Value;
  TSVGElement *Target = nullptr;
  if (!FReference.isEmpty() && GetOwner() && GetOwner()->AllItems().TryGetValue(FReference, Target) &&
      (Target == this || !dynamic_cast<TSVGGraphicElement *>(Target)))
    Target = nullptr;
  FListener.Listen(*this, Target);
  Change(this);
}

void TSVGPattern::NotifyListener(TSVGElement *Element)
{
  TSVGCustomViewBox::NotifyListener(Element);
  if (Element && Element->ElementState().Contains(esDestroying))
    FReference.clear();
}

void TSVGPattern::SetContentUnits(TSVGCoordinateSystemUnit Value)
{
  if (Value == FContentUnits)
    return;
  FContentUnits = Value;
  FGiven.Include(paContentUnits);
  Change(this);
}

void TSVGPattern::SetUnits(TSVGCoordinateSystemUnit Value)
{
  if (Value == FUnits)
    return;
  FUnits = Value;
  FGiven.Include(paUnits);
  Change(this);
}

void TSVGPattern::SetPatternMatrix(const TMatrix &Value)
{
  FPatternMatrix = Value;
  FGiven.Include(paTransform);
  Change(this);
}

QString TSVGPattern::GetPatternTransformMatrix() const
{
  return SVGTransformationToString(FPatternMatrix);
}

void TSVGPattern::SetPatternTransformMatrix(const QString &Value)
{
  SetPatternMatrix(ParseTransformation(Value));
}

// --- the tile --------------------------------------------------------------------------------------

std::shared_ptr<TVXGPBitmap> TSVGPattern::GetPattern(TSVGGraphicElement &Element, const TMatrix &Matrix,
                                                     const TRectF &Rect)
{
  TStackScope Rendering(RenderingTiles, *this, MaxTileNesting);
  if (!Rendering.Entered())
    return nullptr;
  // The tile in the pattern's space. In bounding-box units width and height are fractions of Rect
  // (a percentage too), while x and y stay plain offsets from its corner. The pattern transform and
  // the element's matrix take the tile to the device.
  TRectF Tile;
  if (FUnits == csuUserSpaceOnUse) {
    Tile = VXRect(GetX(), GetY(), float(double(GetX()) + GetWidth()), float(double(GetY()) + GetHeight()));
  } else {
    const double Left = double(Rect.Left) + GetX();
    const double Top = double(Rect.Top) + GetY();
    Tile = VXRect(float(Left), float(Top), float(Left + double(Rect.Width()) * FWidth->GetPixels()),
                  float(Top + double(Rect.Height()) * FHeight->GetPixels()));
  }
  const TMatrix ToDevice = VXMatrixMultiply(FPatternMatrix, VXMatrixMultiply(Matrix, FMatrix));
  const TRectF R = VXMatrixTransformRect(Tile, ToDevice);
  const std::int64_t Width = TileSide(VXRectWidth(R));
  const std::int64_t Height = TileSide(VXRectHeight(R));
  if (Width < 0 || Height < 0 || Width * Height > MaxTilePixels - TilePixelsInUse ||
      !TSVGDrawScope::Charge(Width * Height))
    return nullptr;
  TTileBudget Budget(Width * Height);
  auto Bitmap = std::make_shared<TVXGPBitmap>(int(Width), int(Height));
  // The contents: the view box mapped into the tile, or a space whose origin is the tile's corner.
  // The content units are kept for saving but place nothing: contents are always in that space.
  TMatrix Contents = CreateTranslateVXMatrix(Tile.Left, Tile.Top);
  const TSVGViewBox &ViewBox = FViewBox;
  if (ViewBox.Specified()) {
    float Left = Tile.Left, Top = Tile.Top, ScaleX = 1, ScaleY = 1;
    DefineView(Tile, ViewBox.Width()->GetValue(), ViewBox.Height()->GetValue(), FAspectRatio, Left, Top, ScaleX,
               ScaleY);
    Contents = CreateTranslateVXMatrix(-ViewBox.X()->GetValue(), -ViewBox.Y()->GetValue());
    Contents = VXMatrixMultiply(Contents, CreateScaleVXMatrix(ScaleX, ScaleY));
    Contents = VXMatrixMultiply(Contents, CreateTranslateVXMatrix(Left, Top));
  }
  Contents = VXMatrixMultiply(Contents, ToDevice);
  const TPointF Corner = VXMatrixTransformPoint({Tile.Left, Tile.Top}, ToDevice);
  Contents.m31 -= Corner.X;
  Contents.m32 -= Corner.Y;
  TEnabledScope Enabled(*this, Element.IsEnabled());
  RenderTile(*Bitmap, Contents, Corner, TPointF{R.Left - Corner.X, R.Top - Corner.Y});
  return Bitmap;
}

void TSVGPattern::RenderTile(TVXGPBitmap &Bitmap, const TMatrix &Matrix, const TPointF &Corner, const TPointF &Offset)
{
  const int Width = Bitmap.GetWidth();
  const int Height = Bitmap.GetHeight();
  if (Width == 0 || Height == 0)
    return;
  TVXGPCanvas &Canvas = Bitmap.GetCanvas();
  Canvas.Clear(0);
  // The brush repeats the bitmap from the canvas origin, so the tile's box must begin at the phase
  // of its device position in the bitmap: the tile is drawn there and once more a period earlier on
  // each axis, each copy clipped to its own box, so that the pieces wrap around.
  const double BoxX = Phase(double(Corner.X) + Offset.X, Width);
  const double BoxY = Phase(double(Corner.Y) + Offset.Y, Height);
  const TRectF Bounds{0, 0, float(Width), float(Height)};
  for (int I = 0; I < 2; ++I)
    for (int J = 0; J < 2; ++J) {
      const double Left = std::floor(BoxX) - I * Width;
      const double Top = std::floor(BoxY) - J * Height;
      if (Left + Width <= 0 || Top + Height <= 0)
        continue;
      // Paint servers of the contents were resolved for another matrix: the previous copy's, or
      // that of another element's tile.
      Reset();
      TVXGPCanvasStateGuard Guard(Canvas);
      Canvas.IntersectClip(TRectF{float(Left), float(Top), float(Left + Width), float(Top + Height)});
      const double DX = BoxX - Offset.X - I * Width;
      const double DY = BoxY - Offset.Y - J * Height;
      InternalDraw(VXMatrixMultiply(Matrix, CreateTranslateVXMatrix(float(DX), float(DY))), Canvas, Bounds);
    }
}

// --- the tile by the standard rules ----------------------------------------------------------------

namespace {

// A tile coordinate by the standard rules: in bounding-box units a fraction of the box's Extent
// (a percentage too), in user space user units or a percentage of Viewport, a side of the viewport.
float TileCoordinate(const TSVGLength &Length, bool BoxUnits, float Extent, float Viewport)
{
  const float Value = Length.IsPercent() ? Length.Raw() : Length.GetPixels();
  if (BoxUnits)
    return Value * Extent;
  return Length.IsPercent() ? Value * Viewport : Value;
}

// The scale that Matrix gives to lengths along the x and the y axis.
TSizeF AxisScales(const TMatrix &Matrix)
{
  return {float(std::hypot(double(Matrix.m11), double(Matrix.m12))),
          float(std::hypot(double(Matrix.m21), double(Matrix.m22)))};
}

} // namespace

std::vector<TSVGPattern *> TSVGPattern::TemplateChain()
{
  std::vector<TSVGPattern *> Chain{this};
  for (TSVGPattern *Next = this;;) {
    TSVGElement *Found = nullptr;
    if (Next->FReference.isEmpty() || !GetOwner() || !GetOwner()->AllItems().TryGetValue(Next->FReference, Found))
      break;
    Next = dynamic_cast<TSVGPattern *>(Found);
    if (!Next || std::find(Chain.begin(), Chain.end(), Next) != Chain.end())
      break;
    Chain.push_back(Next);
  }
  return Chain;
}

TSVGPattern *TSVGPattern::TStandardAttributes::GiverOf(TSVGPatternAttribute Attribute) const
{
  for (TSVGPattern *Pattern : Chain)
    if (Pattern->FGiven.Contains(Attribute))
      return Pattern;
  return nullptr;
}

TSVGPattern::TStandardAttributes TSVGPattern::ResolveStandardAttributes()
{
  TStandardAttributes Result;
  Result.Chain = TemplateChain();
  for (TSVGPattern *Pattern : Result.Chain) {
    if (!Result.ViewBox && Pattern->FViewBox.Specified())
      Result.ViewBox = Pattern;
    if (!Result.Contents && std::any_of(Pattern->FItems.begin(), Pattern->FItems.end(), [](const TSVGElement *E) {
          return dynamic_cast<const TSVGGraphicElement *>(E) != nullptr;
        }))
      Result.Contents = Pattern;
  }
  const TSVGPattern *Units = Result.GiverOf(paUnits);
  const TSVGPattern *ContentUnits = Result.GiverOf(paContentUnits);
  Result.BoxUnits = !Units || Units->FUnits != csuUserSpaceOnUse;
  Result.BoxContents = !Result.ViewBox && ContentUnits && ContentUnits->FContentUnits == csuObjectBoundingBox;
  return Result;
}

TRectF TSVGPattern::StandardTile(const TStandardAttributes &Attributes, const TSVGGraphicElement &Client,
                                 const TRectF &Box)
{
  const TSVGCustomViewBox *Viewport = Client.GetNearestViewBox();
  const float ViewportWidth = Viewport ? Viewport->ViewBox().Width()->GetValue() : 0;
  const float ViewportHeight = Viewport ? Viewport->ViewBox().Height()->GetValue() : 0;
  const bool BoxUnits = Attributes.BoxUnits;
  auto Coordinate = [&](TSVGPatternAttribute Attribute, std::unique_ptr<TSVGLength> TSVGGraphicElement::*Field,
                        float Extent, float ViewportExtent) {
    const TSVGPattern *Found = Attributes.GiverOf(Attribute);
    return Found ? TileCoordinate(*(Found->*Field), BoxUnits, Extent, ViewportExtent) : 0.0f;
  };
  const float X = (BoxUnits ? Box.Left : 0) + Coordinate(paX, &TSVGPattern::FX, Box.Width(), ViewportWidth);
  const float Y = (BoxUnits ? Box.Top : 0) + Coordinate(paY, &TSVGPattern::FY, Box.Height(), ViewportHeight);
  const float W = Coordinate(paWidth, &TSVGPattern::FWidth, Box.Width(), ViewportWidth);
  const float H = Coordinate(paHeight, &TSVGPattern::FHeight, Box.Height(), ViewportHeight);
  return TRectF{X, Y, X + W, Y + H};
}

bool TSVGPattern::StandardContentsMatrix(const TStandardAttributes &Attributes, const TRectF &Box, const TSizeF &Tile,
                                         TMatrix &Result) const
{
  Result = VXIdentityMatrix;
  if (Attributes.BoxContents)
    Result = CreateScaleVXMatrix(Box.Width(), Box.Height());
  if (!Attributes.ViewBox)
    return true;
  const TSVGViewBox &ViewBox = Attributes.ViewBox->FViewBox;
  const float ViewWidth = ViewBox.Width()->GetValue();
  const float ViewHeight = ViewBox.Height()->GetValue();
  if (!(ViewWidth > 0 && ViewHeight > 0))
    return false;
  const TSVGPattern *Aspect = Attributes.GiverOf(paAspectRatio);
  float Left = 0, Top = 0, ScaleX = 1, ScaleY = 1;
  DefineView(TRectF{0, 0, Tile.cx, Tile.cy}, ViewWidth, ViewHeight, (Aspect ? Aspect : this)->FAspectRatio, Left, Top,
             ScaleX, ScaleY);
  Result = VXMatrixMultiply(CreateTranslateVXMatrix(-ViewBox.X()->GetValue(), -ViewBox.Y()->GetValue()),
                            VXMatrixMultiply(CreateScaleVXMatrix(ScaleX, ScaleY), CreateTranslateVXMatrix(Left, Top)));
  return true;
}

bool TSVGPattern::StandardBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Box,
                                TVXGPBrush &Target)
{
  // A bitmap brush without a bitmap paints nothing, which is what every early exit leaves.
  Target.SetBitmap(nullptr);
  Target.SetKind(bkBitmap);
  TStackScope Rendering(RenderingTiles, *this, MaxTileNesting);
  if (!Rendering.Entered())
    return false;
  const TStandardAttributes Attributes = ResolveStandardAttributes();
  const bool HasBox = Box.Width() > 0 && Box.Height() > 0;
  if (!Attributes.Contents || ((Attributes.BoxUnits || Attributes.BoxContents) && !HasBox))
    return false;
  const TRectF Tile = StandardTile(Attributes, Client, Box);
  const TSizeF Size{Tile.Width(), Tile.Height()};
  TMatrix ContentsToTile;
  if (!(Size.cx > 0 && Size.cy > 0) || !StandardContentsMatrix(Attributes, Box, Size, ContentsToTile))
    return false;

  // The bitmap has the resolution the tile has on the device when the paint is resolved.
  const TSVGPattern *TransformGiver = Attributes.GiverOf(paTransform);
  TMatrix PatternTransform = TransformGiver ? TransformGiver->FPatternMatrix : VXIdentityMatrix;
  if (!(std::abs(VXMatrixDeterminant(PatternTransform)) > 0))
    PatternTransform = VXIdentityMatrix;
  const TMatrix TileToUser = VXMatrixMultiply(CreateTranslateVXMatrix(Tile.Left, Tile.Top), PatternTransform);
  const TSizeF Scales = AxisScales(VXMatrixMultiply(TileToUser, Matrix));
  const std::int64_t Width = TileSide(std::ceil(double(Size.cx) * Scales.cx));
  const std::int64_t Height = TileSide(std::ceil(double(Size.cy) * Scales.cy));
  if (Width <= 0 || Height <= 0 || Width * Height > MaxTilePixels - TilePixelsInUse ||
      !TSVGDrawScope::Charge(Width * Height))
    return false;
  TTileBudget Budget(Width * Height);
  auto Bitmap = std::make_shared<TVXGPBitmap>(int(Width), int(Height));
  const TPointF Pixels{float(Width) / Size.cx, float(Height) / Size.cy};
  {
    TEnabledScope Enabled(*Attributes.Contents, Client.IsEnabled());
    TVXGPCanvas &Canvas = Bitmap->GetCanvas();
    Canvas.Clear(0);
    // Paint servers of the contents were resolved for another tile.
    Attributes.Contents->Reset();
    Attributes.Contents->DrawOwnContents(VXMatrixMultiply(ContentsToTile, CreateScaleVXMatrix(Pixels.X, Pixels.Y)),
                                         Canvas, TRectF{0, 0, float(Width), float(Height)});
  }
  Target.SetBitmap(Bitmap);
  Target.SetBitmapPlacement(VXMatrixMultiply(CreateScaleVXMatrix(1 / Pixels.X, 1 / Pixels.Y), TileToUser));
  return true;
}

void TSVGPattern::DrawOwnContents(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  TStackScope Drawing(DrawingContents, *this, MaxTileNesting * 4);
  if (!Drawing.Entered())
    return;
  BeginDraw(Matrix, Canvas, Rect);
  try {
    DrawChildren(Matrix, Canvas, Rect);
  } catch (...) {
    EndDraw(Matrix, Canvas, Rect);
    throw;
  }
  EndDraw(Matrix, Canvas, Rect);
}

bool TSVGPattern::PaintServerBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Rect,
                                   TVXGPBrush &Target)
{
  if (TilesByStandardRules())
    return StandardBrush(Client, Matrix, VXObjectBoundingBox(Client, Rect), Target);
  Target.SetBitmap(GetPattern(Client, Matrix, Rect));
  Target.SetKind(bkBitmap);
  return true;
}

void TSVGPattern::InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  TStackScope Drawing(DrawingContents, *this, MaxTileNesting * 4);
  if (!Drawing.Entered())
    return;
  const bool DrawOwn = BeginDraw(Matrix, Canvas, Rect);
  // EndDraw restores the canvas, so it also runs when the contents fail.
  try {
    if (DrawOwn)
      DoInternalDraw(Matrix, Canvas, Rect);
    DrawChildren(Matrix, Canvas, Rect);
    // The href target's contents go on top. A target already drawing further out (an href cycle) or
    // one that holds this pattern (it would become its own ancestor) is skipped.
    TSVGElement *Found = nullptr;
    if (!FReference.isEmpty() && GetOwner() && GetOwner()->AllItems().TryGetValue(FReference, Found))
      if (auto *Target = dynamic_cast<TSVGGraphicElement *>(Found); Target && !IsWithin(*Target, *this)) {
        TParentLoan Loan(*Target, *this);
        if (auto *Pattern = dynamic_cast<TSVGPattern *>(Target))
          Pattern->InternalDraw(Matrix, Canvas, Rect);
        else
          Target->Draw(Matrix, Canvas, Rect);
      }
  } catch (...) {
    EndDraw(Matrix, Canvas, Rect);
    throw;
  }
  EndDraw(Matrix, Canvas, Rect);
}

// --- copying and XML -------------------------------------------------------------------------------

void TSVGPattern::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Pattern = dynamic_cast<const TSVGPattern *>(Source)) {
    FContentUnits = Pattern->FContentUnits;
    FUnits = Pattern->FUnits;
    FGiven = Pattern->FGiven;
    SetReference(Pattern->FReference);
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGPattern::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomViewBox::Clear();
  SetReference(QString());
  FContentUnits = csuUserSpaceOnUse;
  FUnits = csuObjectBoundingBox;
  FPatternMatrix = VXIdentityMatrix;
  FGiven = {};
}

void TSVGPattern::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoLoadFromXML(Node);
  FPatternMatrix = ParseTransformation(ParseAttrString(Node, QStringLiteral("patternTransform")));
  // A loaded reference is stored as written: the pattern joins no listeners until a program sets it.
  FListener.Stop(*this);
  FReference = ParseURI(Node, QStringLiteral("href"), FReference, QStringLiteral("xlink"));
  FContentUnits =
    ParseCoordinateSystemUnit(ParseAttrString(Node, QStringLiteral("patternContentUnits")), FContentUnits);
  FUnits = ParseCoordinateSystemUnit(ParseAttrString(Node, QStringLiteral("patternUnits")), FUnits);
  GiveLoadedAttributes(Node);
}

void TSVGPattern::GiveLoadedAttributes(const IXMLNode &Node)
{
  const std::pair<TSVGPatternAttribute, QString> Names[] = {
    {paX, QStringLiteral("x")},
    {paY, QStringLiteral("y")},
    {paWidth, QStringLiteral("width")},
    {paHeight, QStringLiteral("height")},
    {paUnits, QStringLiteral("patternUnits")},
    {paContentUnits, QStringLiteral("patternContentUnits")},
    {paTransform, QStringLiteral("patternTransform")},
    {paAspectRatio, QStringLiteral("preserveAspectRatio")}};
  for (const auto &[Attribute, Name] : Names)
    if (Node.HasAttribute(Name))
      FGiven.Include(Attribute);
}

void TSVGPattern::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBoundsLengths(Node);
  if (!FReference.isEmpty())
    Node.SetAttributeNS(QStringLiteral("href"), XLinkNamespaceURI, QLatin1Char('#') + FReference);
  if (!VXMatrixEquals(FPatternMatrix, VXIdentityMatrix, 1e-5f))
    SaveAttrString(Node, QStringLiteral("patternTransform"), SVGTransformationToString(FPatternMatrix), false, true);
  // The defaults are written too.
  if (FUnits != csuNone)
    SaveAttrString(Node, QStringLiteral("patternUnits"), SVGCoordinateSystemUnits[FUnits], false, true);
  if (FContentUnits != csuNone)
    SaveAttrString(Node, QStringLiteral("patternContentUnits"), SVGCoordinateSystemUnits[FContentUnits], false, true);
}

} // namespace vx
