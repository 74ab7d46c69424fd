#pragma once
// Turning a document into live controls: the table of control classes per element type and the
// events of a generation. The control classes live in the components layer, which enters them here
// at start-up; the elements see a control only through the faces of platform/vectorkit.
#include "platform/vectorkit/VXGPControlFaces.h"
#include "values/VXSVGVocabulary.h"

#include <array>
#include <functional>

namespace vx {

class TSVGElement;

// The virtual constructor of one control class: a new control owned by Owner, placed in Parent.
struct TSVGControlClass
{
  QString Name;
  IVXHostControl *(*Create)(TComponent *Owner, IVXHostControl *Parent);
};

using TSVGControlClassTable = std::array<const TSVGControlClass *, SVGElementTypeCount>;

// The control class per element type; nil where an element type makes no control (defs, gradients,
// clip paths ...), whose subtree then makes none either.
TSVGControlClassTable &SVGControlClasses();

// Told of each control a generation made, after the control got what its element copies into it
// and before the element's children make theirs.
using TSVGControlElementEvent = std::function<void(TSVGElement *Element, IVXHostControl *Control)>;
// Makes the control for Element in Parent instead of the class of SVGControlClasses.
using TSVGCreateControlEvent = std::function<IVXHostControl *(TSVGElement *Element, IVXHostControl *Parent)>;

// The control class of shapes and paths: its path receives the element's geometry, and it places
// itself over that path.
class IVXSVGPathControl
{
public:
  virtual ~IVXSVGPathControl() = default;
};

} // namespace vx
