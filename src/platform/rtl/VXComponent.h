#pragma once
// TComponent: a persistent object with an owner, a name, a state and free notification.
//
// An owner frees the components it owns when it goes away; a component that goes first leaves its
// owner's list. Free notification links two components both ways: when either one is destroyed, the
// other's Notification hears of it. The link rides on QObject destruction (each component carries a
// small QObject whose destroyed signal is the news, and Qt drops a connection whose receiver has
// gone), so no list is left pointing at a freed component. The component passed to Notification with
// opRemove is being destroyed: compare it, never call it.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"
#include "platform/rtl/VXPropInfo.h"
#include "platform/rtl/VXSet.h"

#include <QMetaObject>

#include <cstdint>
#include <memory>
#include <vector>

class QObject;

namespace vx {

enum TOperation : std::uint8_t { opInsert, opRemove };
enum TComponentStateValue : std::uint8_t { csLoading, csReading, csWriting, csDestroying, csDesigning };
using TComponentState = TSet<TComponentStateValue, std::uint8_t>;

class VX_EXPORT TComponent : public TPersistent
{
public:
  explicit TComponent(TComponent *Owner = nullptr);
  ~TComponent() override;
  QString ClassName() const override { return QStringLiteral("TComponent"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  TComponent *Owner() const { return FOwner; }
  int ComponentCount() const { return int(FComponents.size()); }
  TComponent *Components(int Index) const { return FComponents.at(std::size_t(Index)); }
  const QString &Name() const { return FName; }
  void SetName(const QString &Value) { FName = Value; }

  TComponentState ComponentState() const { return FComponentState; }
  // The design state of this component and of every component it owns.
  void SetDesigning(bool Value);
  bool IsDesigning() const { return FComponentState.Contains(csDesigning); }

  // Links this component and AComponent: each one's Notification hears when the other is destroyed.
  void FreeNotification(TComponent *AComponent);
  void RemoveFreeNotification(TComponent *AComponent);
  bool HasFreeNotification(const TComponent *AComponent) const;

protected:
  // opRemove: AComponent is being destroyed (a linked or an owned one); opInsert: this component
  // became its owner. Overrides drop every reference they hold to AComponent and call the base.
  virtual void Notification(TComponent *AComponent, TOperation Operation);
  // Sends the news of this component's end at once, while the derived parts still stand. A class
  // whose destructor frees what others reach through it calls this first; ~TComponent calls it
  // otherwise.
  void Destroying();

private:
  struct TLink
  {
    TComponent *Peer;
    QMetaObject::Connection Connection;
  };
  void InsertComponent(TComponent *AComponent);
  void RemoveComponent(TComponent *AComponent);
  void PeerDestroyed(TComponent *Peer);
  void Unlink(TComponent *Peer);

  TComponent *FOwner = nullptr;
  std::vector<TComponent *> FComponents;
  QString FName;
  TComponentState FComponentState;
  std::vector<TLink> FLinks;
  // Its destroyed signal tells the linked components; released first in Destroying.
  std::unique_ptr<QObject> FLifetime;
};

} // namespace vx
