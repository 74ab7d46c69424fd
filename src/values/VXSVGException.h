#pragma once
// The library's one exception class and its message table. The messages are format strings for
// vx::Format; they exist once, here.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXExceptions.h"

namespace vx {

class VX_EXPORT ESVGException : public Exception
{
public:
  using Exception::Exception;
};

inline const QString SDocNotSVG = QStringLiteral("Not a valid SVG");
inline const QString SDocEmpty = QStringLiteral("Empty XML document");
inline const QString SCircularReference = QStringLiteral("Circular reference detected");
inline const QString SUnknownSVGElement = QStringLiteral("Unknown SVG element <%s> in document: %s");
inline const QString SInvalidSVGDoc = QStringLiteral("Invalid SVG document, contains \"doc\" node");
inline const QString SInvalidTransform = QStringLiteral("Invalid transformation: %s");
inline const QString SInvalidMatrix = QStringLiteral("Invalid matrix: %s");
inline const QString SInvalidTransformationMatrix = QStringLiteral("Invalid %s transformation matrix: %s");
inline const QString SInvalidSelectOr = QStringLiteral("Invalid selector: %s");
inline const QString SInvalidScaling = QStringLiteral("Invalid scaling values: %f and %f");
inline const QString SInvalidChildType =
    QStringLiteral("SVG element <%s> does not allow children of <%s> element type");
inline const QString SNameNotUnique = QStringLiteral("Name <%s> is not unique");
inline const QString sSVGImageFile = QStringLiteral("Scalable Vector Graphics File");
inline const QString sSVGInvalidOperation = QStringLiteral("Invalid operation for SVG");
inline const QString sSVGUnsupportedOperation = QStringLiteral("Unsupported operation for SVG");
inline const QString sSVGUnsupportedFileOperation = QStringLiteral("Unsupported operation for SVG file");
inline const QString SElementParentSetToSelf = QStringLiteral("An svg element cannot have itself as its parent");

} // namespace vx
