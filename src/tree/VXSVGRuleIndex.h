#pragma once
// The rules of a style sheet filed by what an element must carry for each to apply (its id, a class
// or its type), as browsers do, so that matching a tree costs the rules that may apply to each
// element rather than every rule for every element.
#include "tree/VXSVGDocument.h"

#include <QHash>
#include <QString>

#include <vector>

namespace vx {

class TSVGElement;
class TSVGStyle;

// Which matcher reads the selectors: the documented one or the CSS one.
enum class TSVGRuleMatching { Documented, CSS };

class TSVGRuleIndex
{
public:
  TSVGRuleIndex(const TSVGStyleTable &Sheet, TSVGRuleMatching Matching);

  // The rules that may apply to Element, in the sheet's enumeration order; the others cannot.
  std::vector<TSVGStyle *> Candidates(const TSVGElement &Element) const;

private:
  void Collect(const QHash<QString, std::vector<int>> &Bucket, const QString &Key, std::vector<int> &Into) const;

  std::vector<TSVGStyle *> FRules;
  QHash<QString, std::vector<int>> FById, FByClass, FByType;
  std::vector<int> FEverywhere;
};

// Keeps an index of Sheet for its span, built on first use: a whole-tree style pass opens one, so
// that every element of the pass shares it. The sheet must not change meanwhile.
class TSVGRuleIndexScope
{
public:
  explicit TSVGRuleIndexScope(const TSVGStyleTable &Sheet);
  ~TSVGRuleIndexScope();
  TSVGRuleIndexScope(const TSVGRuleIndexScope &) = delete;
  TSVGRuleIndexScope &operator=(const TSVGRuleIndexScope &) = delete;
};

// The rules of Sheet that may apply to Element: from the index of an open scope over Sheet, or all
// of them in enumeration order when no scope is open.
std::vector<TSVGStyle *> CandidateRules(const TSVGElement &Element, const TSVGStyleTable &Sheet,
                                        TSVGRuleMatching Matching);

} // namespace vx
