#pragma once
// What the commands that lay a picture out at a pixel size share: reading their options and
// choosing the size.
#include "platform/geometry/VXGeometry.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace vx {
class TSVGDocument;
}

namespace vx::cli {

// Handles one "--name value" option; false, with Error set, for a name or value it does not take.
using TOptionHandler = std::function<bool(const QString &Name, const QString &Value, QString &Error)>;

// Splits Args into the positional words and the "--name value" options, which go to Handler.
bool SplitArguments(const QStringList &Args, QStringList &Positional, const TOptionHandler &Handler, QString &Error);

// A side of the output in pixels, 1 to the largest bitmap side.
bool ReadSize(const QString &Text, std::optional<int> &Size, QString &Error);

// The output size: the natural size, or the given sides with a missing one following the aspect
// ratio. An empty message when it is a size a bitmap can have.
QString OutputSize(std::optional<int> AskedWidth, std::optional<int> AskedHeight, const TSizeF &Natural, int &Width,
                   int &Height);

// Without a view box a document draws at one unit a pixel whatever the target; a view box over its
// own size makes it scale to the output.
void ScaleToOutput(TSVGDocument &Document, const TSizeF &Natural);

} // namespace vx::cli
