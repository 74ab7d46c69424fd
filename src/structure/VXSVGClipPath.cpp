#include "structure/VXSVGClipPath.h"

#include "structure/VXSVGScopes.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLookups.h"
#include "values/VXSVGPropertyParsers.h"

#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGClipPath)

namespace {

const TSVGClassRegistration ClipPathRegistration(etClipPath, TSVGClipPath::ClassInfo());

// Clip paths whose standard regions are being built on this thread, innermost last.
thread_local std::vector<const TSVGElement *> BuildingClipPaths;

// The matrix that maps the unit square onto Box.
TMatrix BoundingBoxMatrix(const TRectF &Box)
{
  return VXMatrixMultiply(CreateScaleVXMatrix(Box.Width(), Box.Height()), CreateTranslateVXMatrix(Box.Left, Box.Top));
}

} // namespace

TSVGElementTypes TSVGClipPath::ChildSVGTypes() const
{
  return SVGDescriptiveElements | SVGShapeElements | TSVGElementTypes{etUse, etText};
}

void TSVGClipPath::SetUnits(TSVGCoordinateSystemUnit Value)
{
  if (Value == FUnits)
    return;
  FUnits = Value;
  Change(this);
}

TVXGPRegion *TSVGClipPath::GetClipPath(TVXGPCanvas &Canvas)
{
  if (!FRegion) {
    FRegion = std::make_unique<TVXGPRegion>(&Canvas);
    FClipPath = FRegion.get();
  }
  FRegion->MakeEmpty();
  // The clip's geometry does not depend on what it clips, so the area is a fixed placeholder. The
  // transform goes in as the starting matrix and BuildClipRegion composes it once more: that is
  // the space users of this region have always received.
  BuildClipRegion(*FRegion, FMatrix, VXRect(0, 0, 100, 100));
  return FRegion.get();
}

bool TSVGClipPath::BuildStandardClipRegion(TVXGPRegion &Region, TSVGGraphicElement &Client, const TMatrix &Matrix)
{
  TStackScope Building(BuildingClipPaths, *this, MaxNesting);
  if (!Building.Entered())
    return false;
  TMatrix Contents = VXMatrixMultiply(FMatrix, Matrix);
  if (FUnits == csuObjectBoundingBox) {
    const TRectF Box = Client.ObjectBoundingBox();
    // A box without area gives no region: the client is hidden.
    if (!(Box.Width() > 0) || !(Box.Height() > 0))
      return true;
    Contents = VXMatrixMultiply(BoundingBoxMatrix(Box), Contents);
  }
  for (TSVGElement *Child : FItems)
    if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Child))
      Graphic->AddToStandardClipRegion(Region, Contents);
  // The clip path's own clip-path works in the client's space, as if the client named it too.
  TSVGElement *Found = nullptr;
  if (!FClipURI.isEmpty() && GetOwner() && GetOwner()->AllItems().TryGetValue(FClipURI, Found) && Found &&
      Found->SVGType() == etClipPath) {
    TVXGPRegion Cut(Region.GetCanvas());
    Cut.MakeEmpty();
    if (static_cast<TSVGClipPath *>(Found)->BuildStandardClipRegion(Cut, Client, Matrix))
      Region.Combine(Cut, cmIntersect);
  }
  return true;
}

int TSVGClipPath::ReadChild(const IXMLNode &Node)
{
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  if (Type < etUse || Type > etText)
    return TSVGGraphicElement::ReadChild(Node);
  return AddChildOfType(Type, GetOwner());
}

void TSVGClipPath::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  if (UsesStandardClipPaths())
    FUnits = ParseCoordinateSystemUnit(ParseAttrString(Node, QStringLiteral("clipPathUnits")), FUnits);
}

void TSVGClipPath::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  if (FUnits == csuObjectBoundingBox)
    SaveAttrString(Node, QStringLiteral("clipPathUnits"), SVGCoordinateSystemUnits[FUnits], false, true);
}

void TSVGClipPath::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Clip = dynamic_cast<const TSVGClipPath *>(Source))
    FUnits = Clip->FUnits;
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGClipPath::Clear()
{
  TSVGGraphicElement::Clear();
  FUnits = csuUserSpaceOnUse;
}

} // namespace vx
