// The cascade in both modes: the classic rules (the inline style, attributes included, counts 999;
// a repeated selector fails the load) and the CSS ones of soStandardSVG.
#include "tree/VXSVG.h"

#include <gtest/gtest.h>

#include <optional>

using namespace vx;

namespace {

constexpr TVXGPColor Red = 0xFFFF0000, Lime = 0xFF00FF00, Blue = 0xFF0000FF;

// A document loaded in one mode; the load may fail, which the cases compare as well.
struct TModeDocument
{
  explicit TModeDocument(bool Standard, const QString &Body)
  {
    if (Standard)
      Document.SetOptions(DefaultSVGOptions | TSVGOptions{soStandardSVG});
    try {
      Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 20'>%1</svg>")
                                .arg(Body));
      Loaded = true;
    } catch (const std::exception &) {
      Loaded = false;
    }
  }
  TSVGGraphicElement &Element(const char *Id)
  {
    return *dynamic_cast<TSVGGraphicElement *>(Document.AllItems().Elements(QString::fromUtf8(Id)));
  }

  TSVGDocument Document;
  bool Loaded = false;
};

} // namespace

TEST(StandardCascade, RulesOutweighAttributesAndImportantOutweighsAll)
{
  struct Case {
    const char *Body;
    std::optional<TVXGPColor> Classic, Standard; // nullopt: the load fails
  };
  const Case Cases[] = {
      {"<style>rect{fill:#0f0}</style><rect id='r' fill='red'/>", Red, Lime},
      {"<style>#r{fill:#0f0}</style><rect id='r' style='fill:blue'/>", Blue, Blue},
      {"<style>#r{fill:#0f0 !important} #r{fill:red}</style><rect id='r' style='fill:blue'/>", std::nullopt, Lime},
      {"<style>rect{fill:red} #r{fill:#0f0} rect{fill:blue}</style><rect id='r'/>", std::nullopt, Lime},
      {"<style>svg > rect{fill:#0f0}</style><rect id='r' fill='red'/>", Red, Lime},
      {"<style>g rect{fill:#0f0}</style><g><g><rect id='r' fill='red'/></g></g>", Red, Lime},
      {"<style>circle + rect{fill:#0f0}</style><circle/><rect id='r' fill='red'/>", Red, Lime},
      {"<style>circle ~ rect{fill:#0f0}</style><circle/><g/><rect id='r' fill='red'/>", Red, Lime},
      {"<style>circle + rect{fill:#0f0}</style><circle/><g/><rect id='r' fill='red'/>", Red, Red},
      {"<style>[x]{fill:#0f0}</style><rect id='r' x='1' fill='red'/>", Red, Lime},
      {"<style>[x^='1']{fill:#0f0}</style><rect id='r' x='12' fill='red'/>", Red, Lime},
      {"<style>rect:first-child{fill:#0f0}</style><rect id='r' fill='red'/>", Red, Lime},
      {"<style>rect:hover{fill:#0f0}</style><rect id='r' fill='red'/>", Red, Red},
      {"<style type='text/foo'>rect{fill:#0f0}</style><rect id='r' fill='red'/>", Red, Red},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(C.Body);
    for (const bool Standard : {false, true}) {
      TModeDocument Doc(Standard, QString::fromUtf8(C.Body));
      const std::optional<TVXGPColor> &Expected = Standard ? C.Standard : C.Classic;
      ASSERT_EQ(Doc.Loaded, Expected.has_value()) << "standard " << Standard;
      if (Expected)
        EXPECT_EQ(Doc.Element("r").GetBrush().GetColor(), *Expected) << "standard " << Standard;
    }
  }
}

TEST(StandardCascade, TransformIsAPropertyWithAnOrigin)
{
  struct Case {
    const char *Body;
    std::optional<TPointF> Classic, Standard; // where the point (1, 0) goes; nullopt: the load fails
  };
  const Case Cases[] = {
      {"<rect id='r' style='transform:translate(5px, 0)'/>", TPointF{1, 0}, TPointF{6, 0}},
      {"<style>#r{transform:scale(2)}</style><rect id='r'/>", TPointF{1, 0}, TPointF{2, 0}},
      {"<rect id='r' transform='rotate(90)' transform-origin='10 10'/>", TPointF{0, 1}, TPointF{20, 1}},
      {"<rect id='r' transform='rotate(90)' transform-origin='center'/>", TPointF{0, 1}, TPointF{20, 1}},
      {"<rect id='r' transform='scale(2)' transform-origin='right top'/>", TPointF{2, 0}, TPointF{-18, 0}},
      {"<rect id='r' transform='scale(x)'/>", std::nullopt, TPointF{1, 0}},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(C.Body);
    for (const bool Standard : {false, true}) {
      TModeDocument Doc(Standard, QString::fromUtf8(C.Body));
      const std::optional<TPointF> &Expected = Standard ? C.Standard : C.Classic;
      ASSERT_EQ(Doc.Loaded, Expected.has_value()) << "standard " << Standard;
      if (!Expected)
        continue;
      const TPointF P = VXMatrixTransformPoint(TPointF{1, 0}, Doc.Element("r").Matrix());
      EXPECT_NEAR(P.X, Expected->X, 1e-4) << "standard " << Standard;
      EXPECT_NEAR(P.Y, Expected->Y, 1e-4) << "standard " << Standard;
    }
  }
}

TEST(StandardCascade, SystemLanguageMatchesByPrimarySubtagAndLangTakesNoPart)
{
  struct Case {
    const char *Attributes;
    bool Classic, Standard;
  };
  const Case Cases[] = {
      {"systemLanguage='en-GB'", false, true},
      {"systemLanguage='en'", true, true},
      {"systemLanguage='ru, en-US'", true, true},
      {"systemLanguage='ru-RU'", false, false},
      {"systemLanguage=''", false, false},
      {"lang='ru'", false, true},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(C.Attributes);
    for (const bool Standard : {false, true}) {
      TSVGDocument Document;
      TSVGOptions Options = DefaultSVGOptions;
      Options.Exclude(soUseLocaleForLanguage);
      if (Standard)
        Options.Include(soStandardSVG);
      Document.SetOptions(Options);
      Document.SetPreferredLanguage(QStringLiteral("en-US"));
      Document.LoadFromText(
          QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'><rect id='r' %1/></svg>").arg(QString::fromUtf8(C.Attributes)));
      EXPECT_EQ(Document.AllItems().Elements(QStringLiteral("r"))->HasLanguages(), Standard ? C.Standard : C.Classic)
          << "standard " << Standard;
    }
  }
}
