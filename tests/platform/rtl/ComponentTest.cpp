// Owners, free notification and the design state of components.
#include "platform/rtl/VXComponent.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace vx {
namespace {

std::uintptr_t Address(const TComponent *Component)
{
  return reinterpret_cast<std::uintptr_t>(Component);
}

// Records what it hears of other components going away.
class TListener : public TComponent
{
public:
  using TComponent::TComponent;
  // Addresses only: what goes away may not be touched.
  std::vector<std::uintptr_t> Removed;

protected:
  void Notification(TComponent *AComponent, TOperation Operation) override
  {
    TComponent::Notification(AComponent, Operation);
    if (Operation == opRemove)
      Removed.push_back(Address(AComponent));
  }
};

TEST(ComponentTest, FreeNotificationTellsEitherSideOfTheOthersEnd)
{
  TListener A;
  auto B = std::make_unique<TListener>();
  A.FreeNotification(B.get());
  EXPECT_TRUE(B->HasFreeNotification(&A));
  const std::uintptr_t Gone = Address(B.get());
  B.reset();
  EXPECT_EQ(A.Removed, std::vector<std::uintptr_t>{Gone});
  EXPECT_FALSE(A.HasFreeNotification(reinterpret_cast<TComponent *>(Gone)));

  auto C = std::make_unique<TListener>();
  {
    TListener D;
    D.FreeNotification(C.get());
  }
  EXPECT_EQ(C->Removed.size(), 1u);
}

TEST(ComponentTest, RemovedLinkStaysSilent)
{
  TListener A;
  auto B = std::make_unique<TListener>();
  A.FreeNotification(B.get());
  B->RemoveFreeNotification(&A);
  EXPECT_FALSE(A.HasFreeNotification(B.get()));
  B.reset();
  EXPECT_TRUE(A.Removed.empty());
}

TEST(ComponentTest, OwnerFreesWhatItOwnsAndHearsOfWhatGoesFirst)
{
  TListener Watcher;
  auto Owner = std::make_unique<TListener>();
  auto *First = new TListener(Owner.get());
  auto *Second = new TListener(Owner.get());
  Second->FreeNotification(&Watcher);
  ASSERT_EQ(Owner->ComponentCount(), 2);
  EXPECT_EQ(First->Owner(), Owner.get());
  const std::uintptr_t FirstAddress = Address(First);
  delete First;
  EXPECT_EQ(Owner->ComponentCount(), 1);
  EXPECT_EQ(Owner->Removed, std::vector<std::uintptr_t>{FirstAddress});
  Owner->SetDesigning(true);
  EXPECT_TRUE(Second->IsDesigning());
  const std::uintptr_t SecondAddress = Address(Second);
  Owner.reset();
  EXPECT_EQ(Watcher.Removed, std::vector<std::uintptr_t>{SecondAddress});
}

} // namespace
} // namespace vx
