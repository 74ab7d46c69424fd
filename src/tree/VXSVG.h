#pragma once
// The element tree and the document: the chief header of the tree.
#include "tree/VXSVGClasses.h"
#include "tree/VXSVGCustomGroup.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGElement.h"
#include "tree/VXSVGGraphicElement.h"
#include "tree/VXSVGStyle.h"
