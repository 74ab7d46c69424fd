#pragma once
// The components of vxsvg for Qt Widgets applications: the document component and the controls
// that show it, and the control that loads and renders on a thread of its own.
#include "components/VXSVGDocumentComponent.h"
#include "components/VXSVGGeneratedControls.h"
#include "components/VXSVGImageControls.h"
#include "components/VXSVGThreadImage.h"
