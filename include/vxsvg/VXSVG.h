#pragma once
// Everything a program needs to load, inspect, change, draw, hit-test and save SVG pictures:
//   #include <vxsvg/VXSVG.h>
// gives the document, every element class, the canvas and bitmap, and the functions that draw a
// picture into a bitmap, in the foreground or on a thread of the job server.
#include "VXSVGVersion.h"

#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "jobs/VXSVGSyncObjs.h"
#include "raster/VXSVGRaster.h"
#include "shapes/VXSVGBasicShapes.h"
#include "shapes/VXSVGPath.h"
#include "structure/VXSVGClipPath.h"
#include "structure/VXSVGGradients.h"
#include "structure/VXSVGGroups.h"
#include "structure/VXSVGImage.h"
#include "structure/VXSVGMarker.h"
#include "structure/VXSVGMetadata.h"
#include "structure/VXSVGPattern.h"
#include "structure/VXSVGSymbol.h"
#include "structure/VXSVGUse.h"
#include "text/VXSVGText.h"
#include "tree/VXSVG.h"
