#include "platform/rtl/VXComponent.h"

#include <QObject>

#include <algorithm>

namespace vx {

TComponent::TComponent(TComponent *Owner) : FLifetime(std::make_unique<QObject>())
{
  if (Owner)
    Owner->InsertComponent(this);
}

const TPropertyTable &TComponent::Properties()
{
  static const TPropertyTable Table(nullptr, {
    PublishedValue<TComponent>(QStringLiteral("Name"), tkString, QStringLiteral("string"), &TComponent::Name,
                               &TComponent::SetName, StoredUnless<TComponent>(&TComponent::Name, QString())),
  });
  return Table;
}

TComponent::~TComponent()
{
  Destroying();
  while (!FComponents.empty()) {
    TComponent *Owned = FComponents.back();
    FComponents.pop_back();
    Owned->FOwner = nullptr;
    delete Owned;
  }
  if (FOwner)
    FOwner->RemoveComponent(this);
}

void TComponent::Destroying()
{
  if (FComponentState.Contains(csDestroying))
    return;
  FComponentState.Include(csDestroying);
  // The connections towards this component end with its QObject; the peers hear of the end from
  // its destroyed signal and drop their side.
  FLinks.clear();
  FLifetime.reset();
}

void TComponent::SetDesigning(bool Value)
{
  if (Value)
    FComponentState.Include(csDesigning);
  else
    FComponentState.Exclude(csDesigning);
  for (TComponent *Owned : FComponents)
    Owned->SetDesigning(Value);
}

void TComponent::InsertComponent(TComponent *AComponent)
{
  FComponents.push_back(AComponent);
  AComponent->FOwner = this;
  Notification(AComponent, opInsert);
}

void TComponent::RemoveComponent(TComponent *AComponent)
{
  std::erase(FComponents, AComponent);
  AComponent->FOwner = nullptr;
  Notification(AComponent, opRemove);
}

bool TComponent::HasFreeNotification(const TComponent *AComponent) const
{
  return std::any_of(FLinks.begin(), FLinks.end(), [AComponent](const TLink &L) { return L.Peer == AComponent; });
}

void TComponent::FreeNotification(TComponent *AComponent)
{
  if (!AComponent || AComponent == this || !FLifetime || !AComponent->FLifetime || HasFreeNotification(AComponent))
    return;
  // Direct: the peer's destructor must not return before this side has let go of it.
  const QMetaObject::Connection Connection = QObject::connect(
      AComponent->FLifetime.get(), &QObject::destroyed, FLifetime.get(),
      [this, AComponent] { PeerDestroyed(AComponent); }, Qt::DirectConnection);
  FLinks.push_back({AComponent, Connection});
  AComponent->FreeNotification(this);
}

void TComponent::RemoveFreeNotification(TComponent *AComponent)
{
  if (!HasFreeNotification(AComponent))
    return;
  Unlink(AComponent);
  AComponent->RemoveFreeNotification(this);
}

void TComponent::Unlink(TComponent *Peer)
{
  auto It = std::find_if(FLinks.begin(), FLinks.end(), [Peer](const TLink &L) { return L.Peer == Peer; });
  QObject::disconnect(It->Connection);
  FLinks.erase(It);
}

void TComponent::PeerDestroyed(TComponent *Peer)
{
  std::erase_if(FLinks, [Peer](const TLink &L) { return L.Peer == Peer; });
  Notification(Peer, opRemove);
}

void TComponent::Notification(TComponent *, TOperation) {}

} // namespace vx
