#include "platform/rtl/VXStringList.h"
#include "values/VXSVGViewBox.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

QString Q(const char *Text)
{
  return QString::fromUtf8(Text);
}

} // namespace

TEST(AspectRatio, Parsing)
{
  struct Case { const char *Text; TSVGAlign Align; bool Defer, Slice; };
  // Each case starts from xMaxYMax, defer and slice, so that every field is seen to change.
  const Case Cases[] = {
    {"defer xMidYMid slice", saXMidYMid, true, true},
    {"defer xMidYMid", saXMidYMid, true, false},
    {"defer", saNone, false, false},
    {"xMinYMin meet", saXMinYMin, false, false},
    {"xMinYMin slice", saXMinYMin, false, true},
    {"  xMinYMin   slice  ", saXMinYMin, false, true},
    {"xMinYMin Slice", saXMinYMin, false, false},
    {"none", saNone, false, false},
    {"xminymin", saNone, false, false},
    {"slice", saNone, false, false},
    {"defer slice", saNone, true, false},
    {"", saXMaxYMax, true, true},
    {" \n ", saXMaxYMax, true, true},
  };
  for (const Case &C : Cases) {
    TSVGPreserveAspectRatio Ratio(saXMaxYMax, true, true);
    ParseAspectRatio(Q(C.Text), Ratio);
    EXPECT_EQ(Ratio.GetAlign(), C.Align) << C.Text;
    EXPECT_EQ(Ratio.GetDefer(), C.Defer) << C.Text;
    EXPECT_EQ(Ratio.GetSlice(), C.Slice) << C.Text;
  }
}

TEST(AspectRatio, TextRoundTrip)
{
  TSVGPreserveAspectRatio Ratio(saXMidYMid, false, false);
  EXPECT_EQ(Ratio.ToString(false), Q("xMidYMid meet"));
  EXPECT_EQ(Ratio.ToString(true), Q("xMidYMid"));
  for (int Align = saNone; Align <= saXMaxYMax; ++Align)
    for (bool Defer : {false, true})
      for (bool Slice : {false, true})
        for (bool OmitMeet : {false, true}) {
          TSVGPreserveAspectRatio Source(TSVGAlign(Align), Defer, Slice);
          TSVGPreserveAspectRatio Target(saXMidYMid, !Defer, !Slice);
          const QString Text = Source.ToString(OmitMeet);
          ParseAspectRatio(Text, Target);
          EXPECT_EQ(Target.GetAlign(), Align) << qPrintable(Text);
          EXPECT_EQ(Target.GetDefer(), Defer) << qPrintable(Text);
          EXPECT_EQ(Target.GetSlice(), Slice) << qPrintable(Text);
        }
}

TEST(AspectRatio, ChangesDefaultsAndCopies)
{
  TSVGPreserveAspectRatio Ratio(saXMidYMid, false, false);
  int Changes = 0;
  Ratio.OnChange = [&Changes](TObject *) { ++Changes; };
  Ratio.SetAlign(saXMidYMid);
  Ratio.SetSlice(false);
  EXPECT_EQ(Changes, 0);
  EXPECT_FALSE(Ratio.IsAlignStored());
  Ratio.SetAlign(saNone);
  Ratio.SetDefer(true);
  EXPECT_EQ(Changes, 2);
  EXPECT_TRUE(Ratio.IsAlignStored());
  EXPECT_TRUE(Ratio.IsDeferStored());
  EXPECT_FALSE(Ratio.IsSliceStored());

  TSVGPreserveAspectRatio Copy(saXMinYMin, true, true);
  Copy.Assign(&Ratio);
  EXPECT_EQ(Copy.ToString(false), Q("defer none meet"));
  Copy.Clear();
  EXPECT_EQ(Copy.ToString(false), Q("xMidYMid meet")) << "the defaults came along";
  Ratio.Clear();
  EXPECT_EQ(Changes, 3) << "Clear notifies";
  TStringList Foreign;
  EXPECT_THROW(Ratio.Assign(&Foreign), EConvertError);
}

TEST(ViewBox, SpecifiedFollowsNotifiedChanges)
{
  TSVGViewBox Box;
  EXPECT_FALSE(Box.Specified()) << "fresh";
  Box.SetRect(TRectF{0, 0, 10, 20});
  EXPECT_TRUE(Box.Specified());

  Box.Clear();
  EXPECT_TRUE(Box.Specified()) << "the closing notification of Clear marks it again";
  EXPECT_EQ(Box.GetRect(), (TRectF{0, 0, 0, 0}));

  int Changes = 0;
  Box.OnChange = [&Changes](TObject *) { ++Changes; };
  Box.BeginUpdate();
  Box.Clear();
  EXPECT_FALSE(Box.Specified()) << "inside an open batch";
  Box.EndUpdate();
  EXPECT_TRUE(Box.Specified());
  EXPECT_EQ(Changes, 1);
}

TEST(ViewBox, BatchesNotifyOnce)
{
  TSVGViewBox Box;
  int Changes = 0;
  Box.OnChange = [&Changes](TObject *) { ++Changes; };
  Box.SetRect(TRectF{1, 2, 11, 22});
  EXPECT_EQ(Changes, 1) << "four lengths, one notification";
  Box.SetLeft(5);
  EXPECT_EQ(Changes, 2);
  Box.BeginUpdate();
  Box.BeginUpdate();
  Box.SetTop(3);
  Box.SetRight(100);
  Box.EndUpdate();
  EXPECT_EQ(Changes, 2) << "inner EndUpdate";
  Box.EndUpdate();
  EXPECT_EQ(Changes, 3);

  TSVGViewBox Copy;
  int CopyChanges = 0;
  Copy.OnChange = [&CopyChanges](TObject *) { ++CopyChanges; };
  Copy.Assign(&Box);
  EXPECT_EQ(CopyChanges, 1);
  EXPECT_EQ(Copy.GetRect(), Box.GetRect());
}

TEST(ViewBox, Edges)
{
  TSVGViewBox Box(10, 20, 30, 60);
  EXPECT_EQ(Box.GetRect(), (TRectF{10, 20, 30, 60}));
  EXPECT_EQ(Box.Width()->GetValue(), 20.0f);
  Box.SetRight(5);
  EXPECT_EQ(Box.Width()->GetValue(), 5.0f) << "an edge before the start gives a positive size";
  EXPECT_EQ(Box.GetLeft(), 10.0f) << "and leaves the start";
  Box.SetBottom(25);
  EXPECT_EQ(Box.GetBottom(), 25.0f);
  EXPECT_EQ(Box.ToString(Q("0.###"), 0, 1), Q("10 20 5 5"));
}

TEST(ViewBox, PercentagesResolveThroughTheRangeEvent)
{
  TSVGViewBox Box;
  Box.Width()->SetAsUnit(suPercent, 0.5f);
  Box.Width()->OnRange = [](TSVGLength *, float &Min, float &Max, bool &) {
    Min = 0;
    Max = 200;
  };
  EXPECT_EQ(Box.GetRight(), 100.0f);
  Box.SetOnUnitFactors([](TObject *, TSVGUnitFactors &Factors) { Factors[suInches] = 72; });
  Box.X()->SetAsUnit(suInches, 1);
  EXPECT_EQ(Box.GetLeft(), 72.0f);
  EXPECT_EQ(Box.GetUnitFactors()[suInches], 72.0f);
}
