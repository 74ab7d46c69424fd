#pragma once
// The persistent-object basics of the host framework: TObject with a class name, TPersistent with
// Assign/AssignTo, and the notify event.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXExceptions.h"

#include <QString>

#include <functional>

namespace vx {

class TFiler;
class TPropertyTable;

class VX_EXPORT TObject
{
public:
  TObject() = default;
  TObject(const TObject &) = delete;
  TObject &operator=(const TObject &) = delete;
  virtual ~TObject() = default;

  // The class name as the framework reports it (for messages such as "Cannot assign a X to a Y").
  virtual QString ClassName() const { return QStringLiteral("TObject"); }
};

using TNotifyEvent = std::function<void(TObject *Sender)>;

class VX_EXPORT TPersistent : public TObject
{
public:
  QString ClassName() const override { return QStringLiteral("TPersistent"); }

  // Copies Source into this object. The base asks Source to assign itself to this object, and
  // fails with EConvertError when neither side knows the other.
  virtual void Assign(const TPersistent *Source);

  // The published properties of the object's class (platform/rtl/VXPropInfo.h); nil when it
  // publishes none.
  virtual const TPropertyTable *PublishedProperties() const { return nullptr; }
  // Names the properties the object streams beyond its published ones (the binary component
  // stream, platform/common/VXFiler.h); the base defines none.
  virtual void DefineProperties(TFiler &) {}

protected:
  // Overridden by classes that can copy themselves into a foreign Dest; the base fails.
  virtual void AssignTo(TPersistent *Dest) const;

private:
  [[noreturn]] void AssignError(const TPersistent *Source) const;
};

} // namespace vx
