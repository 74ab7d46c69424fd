#include "tree/VXSVGRuleIndex.h"

#include "tree/VXSVGCSSSelectorMatch.h"
#include "tree/VXSVGElement.h"
#include "tree/VXSVGSelectorMatch.h"
#include "tree/VXSVGStyle.h"

#include <algorithm>
#include <memory>

namespace vx {

namespace {

// Class lists compare without regard to ASCII case unless told otherwise, so classes are filed in
// lower case: the bucket then holds every rule that may match, and the matcher decides.
QString ClassKey(const QString &Name)
{
  return Name.toLower();
}

// An open scope: its sheet, and its indexes built so far.
struct TOpenScope
{
  const TSVGStyleTable *Sheet = nullptr;
  int RuleCount = 0;
  std::unique_ptr<TSVGRuleIndex> Indexes[2];
};

// The scopes open on this thread, innermost last (a nested document opens its own).
thread_local std::vector<TOpenScope> OpenScopes;

} // namespace

TSVGRuleIndex::TSVGRuleIndex(const TSVGStyleTable &Sheet, TSVGRuleMatching Matching)
{
  for (const auto &Rule : Sheet) {
    const int Position = int(FRules.size());
    FRules.push_back(Rule.Value);
    const TSVGSelectorSubject Subject = Matching == TSVGRuleMatching::CSS ? CSSSelectorSubject(Rule.Value->Name())
                                                                          : SelectorSubject(Rule.Value->Name());
    switch (Subject.Kind) {
    case TSVGSelectorSubject::Any:
      FEverywhere.push_back(Position);
      break;
    case TSVGSelectorSubject::Never:
      break;
    case TSVGSelectorSubject::Id:
      FById[Subject.Name].push_back(Position);
      break;
    case TSVGSelectorSubject::Class:
      FByClass[ClassKey(Subject.Name)].push_back(Position);
      break;
    case TSVGSelectorSubject::Type:
      FByType[Subject.Name].push_back(Position);
      break;
    }
  }
}

void TSVGRuleIndex::Collect(const QHash<QString, std::vector<int>> &Bucket, const QString &Key,
                            std::vector<int> &Into) const
{
  const auto Found = Bucket.constFind(Key);
  if (Found != Bucket.constEnd())
    Into.insert(Into.end(), Found->begin(), Found->end());
}

std::vector<TSVGStyle *> TSVGRuleIndex::Candidates(const TSVGElement &Element) const
{
  std::vector<int> Positions = FEverywhere;
  Collect(FById, Element.ID(), Positions);
  const TStrings &Classes = Element.Classes();
  for (int I = 0; I < Classes.Count(); ++I)
    Collect(FByClass, ClassKey(Classes[I]), Positions);
  Collect(FByType, Element.SVGTypeName(), Positions);
  // A class named twice brings its rules twice.
  std::sort(Positions.begin(), Positions.end());
  Positions.erase(std::unique(Positions.begin(), Positions.end()), Positions.end());
  std::vector<TSVGStyle *> Result;
  Result.reserve(Positions.size());
  for (const int Position : Positions)
    Result.push_back(FRules[std::size_t(Position)]);
  return Result;
}

TSVGRuleIndexScope::TSVGRuleIndexScope(const TSVGStyleTable &Sheet)
{
  OpenScopes.push_back({&Sheet, Sheet.Count(), {}});
}

TSVGRuleIndexScope::~TSVGRuleIndexScope()
{
  OpenScopes.pop_back();
}

std::vector<TSVGStyle *> CandidateRules(const TSVGElement &Element, const TSVGStyleTable &Sheet,
                                        TSVGRuleMatching Matching)
{
  for (auto Scope = OpenScopes.rbegin(); Scope != OpenScopes.rend(); ++Scope) {
    if (Scope->Sheet != &Sheet || Scope->RuleCount != Sheet.Count())
      continue;
    std::unique_ptr<TSVGRuleIndex> &Index = Scope->Indexes[Matching == TSVGRuleMatching::CSS ? 1 : 0];
    if (!Index)
      Index = std::make_unique<TSVGRuleIndex>(Sheet, Matching);
    return Index->Candidates(Element);
  }
  std::vector<TSVGStyle *> All;
  All.reserve(std::size_t(Sheet.Count()));
  for (const auto &Rule : Sheet)
    All.push_back(Rule.Value);
  return All;
}

} // namespace vx
