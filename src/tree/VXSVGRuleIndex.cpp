#include "tree/VXSVGRuleIndex.h"

#include "tree/VXSVGCSSSelectorMatch.h"
#include "tree/VXSVGElement.h"
#include "tree/VXSVGSelectorMatch.h"
#include "tree/VXSVGStyle.h"

#include <QStringList>

#include <algorithm>
#include <memory>

namespace vx {

namespace {

// The key of what a selector demands. Class lists compare without regard to ASCII case unless told
// otherwise, so classes are filed in lower case: the bucket then holds every rule that may match,
// and the matcher decides.
QString SubjectKey(const TSVGSelectorSubject &Subject)
{
  switch (Subject.Kind) {
  case TSVGSelectorSubject::Id:
    return QLatin1Char('#') + Subject.Name;
  case TSVGSelectorSubject::Class:
    return QLatin1Char('.') + Subject.Name.toLower();
  case TSVGSelectorSubject::Type:
    return QLatin1Char('<') + Subject.Name;
  default:
    return QString();
  }
}

// The keys of everything Element carries.
QStringList CarriedKeys(const TSVGElement &Element)
{
  QStringList Keys{SubjectKey({TSVGSelectorSubject::Id, Element.ID()})};
  const TStrings &Classes = Element.Classes();
  for (int I = 0; I < Classes.Count(); ++I)
    Keys.append(SubjectKey({TSVGSelectorSubject::Class, Classes[I]}));
  Keys.append(SubjectKey({TSVGSelectorSubject::Type, Element.SVGTypeName()}));
  return Keys;
}

void Collect(const QHash<QString, std::vector<int>> &Buckets, const QString &Key, std::vector<int> &Into)
{
  const auto Found = Buckets.constFind(Key);
  if (Found != Buckets.constEnd())
    Into.insert(Into.end(), Found->begin(), Found->end());
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
  const bool CSS = Matching == TSVGRuleMatching::CSS;
  for (const auto &Rule : Sheet) {
    const int Position = int(FRules.size());
    FRules.push_back(Rule.Value);
    const QString &Selector = Rule.Value->Name();
    const TSVGSelectorSubject Subject = CSS ? CSSSelectorSubject(Selector) : SelectorSubject(Selector);
    if (Subject.Kind == TSVGSelectorSubject::Never)
      continue;
    if (Subject.Kind == TSVGSelectorSubject::Any) {
      FEverywhere.push_back(Position);
      continue;
    }
    const QString Ancestor = CSS ? SubjectKey(CSSSelectorAncestor(Selector)) : QString();
    if (Ancestor.isEmpty())
      FBySubject[SubjectKey(Subject)].push_back(Position);
    else
      FBySubjectAndAncestor[SubjectKey(Subject)][Ancestor].push_back(Position);
  }
}

std::vector<TSVGStyle *> TSVGRuleIndex::Candidates(const TSVGElement &Element) const
{
  std::vector<int> Positions = FEverywhere;
  QStringList AncestorKeys;
  bool AncestorsRead = false;
  for (const QString &Key : CarriedKeys(Element)) {
    Collect(FBySubject, Key, Positions);
    const auto Guarded = FBySubjectAndAncestor.constFind(Key);
    if (Guarded == FBySubjectAndAncestor.constEnd())
      continue;
    if (!AncestorsRead) {
      for (const TSVGElement *Parent = Element.Parent(); Parent; Parent = Parent->Parent())
        AncestorKeys += CarriedKeys(*Parent);
      AncestorKeys.removeDuplicates();
      AncestorsRead = true;
    }
    for (const QString &Ancestor : AncestorKeys)
      Collect(*Guarded, Ancestor, Positions);
  }
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
