#pragma once
// The components of vxsvg for Qt Widgets applications: the document component and the controls
// that show it.
#include "components/VXSVGDocumentComponent.h"
#include "components/VXSVGGeneratedControls.h"
#include "components/VXSVGImageControls.h"
