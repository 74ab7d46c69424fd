#include "values/VXSVGLength.h"
#include "values/VXSVGPropertiesSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using namespace vx;

namespace {

// A parent and a child property wired the way an element tree wires them.
struct TInheritingPair
{
  explicit TInheritingPair(std::unique_ptr<TSVGStylePropertyLength> AParent,
                           std::unique_ptr<TSVGStylePropertyLength> AChild)
    : Parent(std::move(AParent)), Child(std::move(AChild))
  {
    Child->OnGetInherited = [this](TSVGStylePropertyLength *, bool &IsInherited) { IsInherited = OwnerSaysInherited; };
    Child->OnSetInherited = [this](TSVGStylePropertyLength *, bool IsInherited) { OwnerSaysInherited = IsInherited; };
    Child->OnGetParent = [this](TSVGStylePropertyLength *, TSVGStylePropertyLength *&P) { P = Parent.get(); };
    Child->OnChange = [this](TObject *) { ++Changes; };
  }

  std::unique_ptr<TSVGStylePropertyLength> Parent;
  std::unique_ptr<TSVGStylePropertyLength> Child;
  bool OwnerSaysInherited = true;
  int Changes = 0;
};

} // namespace

TEST(Length, SetUnitKeepsTheSizeAndChangesTheNumber)
{
  TSVGLength Length(1, false, suInches);
  Length.SetUnit(suPixels);
  EXPECT_EQ(Length.Raw(), 96.0f);
  EXPECT_EQ(Length.GetPixels(), 96.0f);
  Length.SetUnit(suMillimeters);
  EXPECT_FLOAT_EQ(Length.GetPixels(), 96.0f);
  EXPECT_FLOAT_EQ(Length.Raw(), 96.0f / SVGUnitFactors[suMillimeters]);
  Length.SetUnit(suPercent);
  EXPECT_TRUE(Length.IsPercent()) << "a unit change sets the percent flag from the unit";
}

TEST(Length, PercentagesResolveAgainstTheSuppliedRange)
{
  TSVGLength Length(0.5f, true, suPercent);
  EXPECT_EQ(Length.GetValue(), 0.5f) << "without a range the fraction of 0..1";
  Length.OnRange = [](TSVGLength *, float &Min, float &Max, bool &) {
    Min = 0;
    Max = 200;
  };
  EXPECT_EQ(Length.GetValue(), 100.0f);
  Length.OnRange = [](TSVGLength *, float &Min, float &Max, bool &DoRange) {
    Min = 0;
    Max = 200;
    DoRange = false;
  };
  EXPECT_EQ(Length.GetValue(), 0.5f);
  EXPECT_EQ(Length.GetPercentValue(10, 20), 15.0f);
}

TEST(Length, UnitFactorsComeFromTheOwner)
{
  TSVGLength Length(2, false, suFontSize);
  EXPECT_EQ(Length.GetPixels(), 2.0f) << "the default em factor is 1";
  Length.OnUnitFactors = [](TObject *, TSVGUnitFactors &Factors) { Factors[suFontSize] = 16; };
  EXPECT_EQ(Length.GetPixels(), 32.0f);
  EXPECT_EQ(Length.GetValue(), 32.0f);
  EXPECT_EQ(Length.GetAsUnit(suPixels), 32.0f);
  Length.SetPixels(48);
  EXPECT_EQ(Length.Raw(), 3.0f);
  EXPECT_EQ(Length.Unit(), suFontSize);
}

TEST(Length, ChangesAreReportedOnlyForRealChanges)
{
  TSVGLength Length(1, false, suPixels);
  int Changes = 0;
  Length.OnChange = [&](TObject *Sender) {
    EXPECT_EQ(Sender, &Length);
    ++Changes;
  };
  const struct
  {
    const char *What;
    std::function<void()> Step;
    int Expected;
  } Steps[] = {
      {"same raw", [&] { Length.SetRaw(1); }, 0},
      {"new raw", [&] { Length.SetRaw(2); }, 1},
      {"same pixels", [&] { Length.SetPixels(2); }, 0},
      {"same value", [&] { Length.SetValue(2); }, 0},
      {"new value", [&] { Length.SetValue(3); }, 1},
      {"same unit", [&] { Length.SetUnit(suPixels); }, 0},
      {"same percent flag", [&] { Length.SetIsPercent(false); }, 0},
      {"as unit always", [&] { Length.SetAsUnit(suPixels, 3); }, 1},
      {"clear always", [&] { Length.Clear(); }, 1},
      {"initialize always", [&] { Length.Initialize(0, false, suNone); }, 1},
  };
  for (const auto &Step : Steps) {
    Changes = 0;
    Step.Step();
    EXPECT_EQ(Changes, Step.Expected) << Step.What;
  }
}

TEST(Length, ClearRestoresTheConstructionPercentFlag)
{
  TSVGLength Length(0.5f, true, suPercent);
  Length.SetAsUnit(suMillimeters, 4);
  EXPECT_FALSE(Length.IsPercent());
  Length.Clear();
  EXPECT_TRUE(Length.IsPercent());
  EXPECT_EQ(Length.Raw(), 0.0f);
  EXPECT_EQ(Length.Unit(), suNone);
}

TEST(Length, StoredValueRules)
{
  const struct
  {
    float Raw;
    bool IsPercent, DefaultIsPercent;
    TSVGUnit Unit;
    bool UnitStored, RawStored, PercentStored;
  } Cases[] = {
      {0, false, false, suNone, false, false, false},
      {0, false, false, suPixels, false, false, false},
      {1, false, false, suMillimeters, true, true, false},
      {NAN, false, false, suNone, false, true, false},
      {0.5f, true, false, suPercent, true, true, true},
  };
  for (const auto &Case : Cases) {
    TSVGLength Length(Case.Raw, Case.DefaultIsPercent, Case.Unit);
    Length.SetIsPercent(Case.IsPercent);
    EXPECT_EQ(Length.IsUnitStored(), Case.UnitStored) << Case.Raw;
    EXPECT_EQ(Length.IsRawStored(), Case.RawStored) << Case.Raw;
    EXPECT_EQ(Length.IsIsPercentStored(), Case.PercentStored) << Case.Raw;
  }
}

TEST(Length, CloneKeepsClassAndProperty)
{
  TSVGBaselineShiftLength Shift(ipBaselineShift);
  Shift.SetShift(bsSuperscript);
  Shift.SetAsUnit(suPoints, 3);
  std::unique_ptr<TSVGLength> Copy(Shift.Clone());
  auto *Typed = dynamic_cast<TSVGBaselineShiftLength *>(Copy.get());
  ASSERT_NE(Typed, nullptr);
  EXPECT_EQ(Typed->StyleProperty(), ipBaselineShift);
  EXPECT_EQ(Typed->GetShift(), bsSuperscript);
  EXPECT_EQ(Typed->Raw(), 3.0f);
  EXPECT_EQ(Typed->Unit(), suPoints);

  TSVGStylePropertyAutoLength Auto(ipKerning);
  Auto.SetAutomatic(false);
  std::unique_ptr<TSVGLength> AutoCopy(Auto.Clone());
  EXPECT_FALSE(dynamic_cast<TSVGStylePropertyAutoLength &>(*AutoCopy).IsAutomatic());

  TSVGLength Plain;
  TSVGStylePropertiesSet Foreign;
  EXPECT_THROW(Plain.Assign(&Foreign), EConvertError);
}

TEST(Length, InheritedValueComesFromTheParent)
{
  TInheritingPair Pair(std::make_unique<TSVGStylePropertyLength>(ipStrokeWidth),
                       std::make_unique<TSVGStylePropertyLength>(ipStrokeWidth));
  Pair.Parent->SetAsUnit(suPixels, 5);
  Pair.Child->SetAsUnit(suPixels, 2);
  Pair.Changes = 0;
  EXPECT_TRUE(Pair.Child->IsParentValue()) << "the owner's answer counts";
  EXPECT_EQ(Pair.Child->GetValue(), 5.0f);

  // Setting the number it already holds still ends the inheritance, since the parent shows another.
  Pair.Child->SetValue(2);
  EXPECT_FALSE(Pair.OwnerSaysInherited);
  EXPECT_FALSE(Pair.Child->IsParentValue());
  EXPECT_EQ(Pair.Child->GetValue(), 2.0f);
  EXPECT_EQ(Pair.Changes, 1) << "one change for the flag, none for the same number";

  Pair.Child->SetParentValue(true);
  EXPECT_TRUE(Pair.OwnerSaysInherited);
  Pair.Child->Clear();
  EXPECT_FALSE(Pair.Child->IsParentValue()) << "Clear ends inheritance";
}

TEST(Length, WithoutAParentFinderTheOwnFlagHolds)
{
  TSVGStylePropertyLength Length(ipFontSize);
  bool Asked = false;
  Length.OnGetInherited = [&](TSVGStylePropertyLength *, bool &) { Asked = true; };
  Length.SetParentValue(true);
  EXPECT_TRUE(Length.IsParentValue());
  EXPECT_FALSE(Asked);
  Length.SetAsUnit(suPixels, 4);
  EXPECT_EQ(Length.GetValue(), 4.0f) << "no parent: the own value";

  Length.OnGetParent = [&](TSVGStylePropertyLength *, TSVGStylePropertyLength *&P) { P = &Length; };
  EXPECT_EQ(Length.GetValue(), 4.0f) << "a length that is its own parent does not recurse";
}

TEST(Length, AutomaticAndShiftFollowTheParentWhileInherited)
{
  TInheritingPair Auto(std::make_unique<TSVGStylePropertyAutoLength>(ipKerning),
                       std::make_unique<TSVGStylePropertyAutoLength>(ipKerning));
  auto &ParentAuto = dynamic_cast<TSVGStylePropertyAutoLength &>(*Auto.Parent);
  auto &ChildAuto = dynamic_cast<TSVGStylePropertyAutoLength &>(*Auto.Child);
  ParentAuto.SetAutomatic(false);
  EXPECT_FALSE(ChildAuto.IsAutomatic());
  ChildAuto.SetAutomatic(true); // equal to its own flag, but not to what it shows
  EXPECT_TRUE(ChildAuto.IsAutomatic());
  EXPECT_FALSE(Auto.OwnerSaysInherited);
  ChildAuto.SetAsUnit(suPixels, 1);
  ChildAuto.Clear();
  EXPECT_TRUE(ChildAuto.IsAutomatic());

  TInheritingPair Shift(std::make_unique<TSVGBaselineShiftLength>(ipBaselineShift),
                        std::make_unique<TSVGBaselineShiftLength>(ipBaselineShift));
  auto &ParentShift = dynamic_cast<TSVGBaselineShiftLength &>(*Shift.Parent);
  auto &ChildShift = dynamic_cast<TSVGBaselineShiftLength &>(*Shift.Child);
  ParentShift.SetShift(bsSubscript);
  EXPECT_EQ(ChildShift.GetShift(), bsSubscript);
  ChildShift.SetShift(bsLength);
  EXPECT_EQ(ChildShift.GetShift(), bsLength);
  ChildShift.Clear();
  EXPECT_EQ(ChildShift.GetShift(), bsBaseline);
}

TEST(Length, ListsCloneTheirItems)
{
  TSVGLengths Lengths;
  Lengths.Add(new TSVGLength(1, false, suMillimeters));
  Lengths.Add(new TSVGStylePropertyLength(ipFontSize));
  TSVGLengths Target;
  Target.Add(new TSVGLength());
  Target.Add(new TSVGLength());
  Target.Add(new TSVGLength());
  EXPECT_EQ(Lengths.Clone(&Target), &Target);
  ASSERT_EQ(Target.Count(), 2);
  EXPECT_NE(Target[0], Lengths[0]);
  EXPECT_EQ(Target[0]->Unit(), suMillimeters);
  EXPECT_NE(dynamic_cast<TSVGStylePropertyLength *>(Target[1]), nullptr);
  std::unique_ptr<TSVGLengths> Fresh(Lengths.Clone());
  EXPECT_EQ(Fresh->Count(), 2);
  EXPECT_THROW(Lengths.Items(2), EListError);
  EXPECT_THROW(Lengths.Delete(-1), EListError);
}
