#include "tree/VXSVG.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

// Loads one g with the given attributes under a root, with the user's languages fixed so that the
// answers do not depend on the machine's locale.
class Conditions : public ::testing::Test
{
protected:
  TSVGElement *Load(const char *Attributes, const QString &Languages = QStringLiteral("en-GB,de"))
  {
    Document.SetOptions(Document.GetOptions() - TSVGOptions{soUseLocaleForLanguage});
    Document.SetPreferredLanguage(Languages);
    Document.LoadFromText(QStringLiteral("<svg><g id='e' %1/></svg>").arg(QString::fromUtf8(Attributes)));
    return Document.AllItems().Elements(QStringLiteral("e"));
  }

  TSVGDocument Document;
};

} // namespace

TEST_F(Conditions, DecideDrawingByFeaturesExtensionsAndLanguages)
{
  struct Case {
    const char *Attributes;
    bool Draws;
  };
  const Case Cases[] = {
      {"", true},
      {"requiredExtensions='http://example.org/x'", false},
      {"requiredFeatures=''", false},  // present but empty is not "no requirement"
      {"requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape'", true},
      {"requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape http://www.w3.org/TR/SVG11/feature#Font'",
       false},
      {"requiredFeatures='http://example.org/unknown'", false},
      {"systemLanguage='fr, en'", true},
      {"systemLanguage='fr'", false},
      {"systemLanguage='en-US'", false},
      {"systemLanguage='EN'", true},
      {"lang='fr'", false},
      {"lang='de'", true},
      {"lang='fr' systemLanguage='en'", true},
  };
  for (const Case &C : Cases)
    EXPECT_EQ(Load(C.Attributes)->ShouldDraw(), C.Draws) << C.Attributes;
}

TEST_F(Conditions, ShouldDrawHandlerHasTheLastWord)
{
  TSVGElement *Element = Load("systemLanguage='fr'");
  std::vector<const TSVGElement *> Asked;
  Document.OnShouldDraw = [&](const TSVGElement *Sender, bool &Draw) {
    Asked.push_back(Sender);
    Draw = true;
  };
  EXPECT_TRUE(Element->ShouldDraw());
  ASSERT_EQ(Asked.size(), 1u);
  EXPECT_EQ(Asked[0], Element);
}

TEST_F(Conditions, LanguageSelectorTestIgnoresItsArgument)
{
  EXPECT_TRUE(Load("lang='en'")->HasLanguage(QStringLiteral("fr")));
  EXPECT_FALSE(Load("lang='en, fr'")->HasLanguage(QStringLiteral("en")));
  EXPECT_FALSE(Load("")->HasLanguage(QStringLiteral("en")));
}
