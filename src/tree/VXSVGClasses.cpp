#include "tree/VXSVGClasses.h"

#include "platform/rtl/VXExceptions.h"

namespace vx {

TSVGClassTable &SVGClasses()
{
  static TSVGClassTable Table{};
  return Table;
}

TSVGClassRegistration::TSVGClassRegistration(TSVGElementType Type, const TSVGElementClass &Class)
  : FType(Type), FPrevious(SVGClasses()[Type])
{
  SVGClasses()[Type] = &Class;
}

TSVGClassRegistration::~TSVGClassRegistration()
{
  SVGClasses()[FType] = FPrevious;
}

const TSVGElementClass *GetSVGClass(const QString &Name)
{
  for (const TSVGElementClass *Class : SVGClasses())
    if (Class && Class->Name == Name)
      return Class;
  return nullptr;
}

const TSVGElementClass &FindSVGClass(const QString &Name)
{
  if (const TSVGElementClass *Class = GetSVGClass(Name))
    return *Class;
  throw EClassNotFound(QStringLiteral("Class %1 not found").arg(Name));
}

TSVGElementType GetElementType(const TSVGElementClass *Class)
{
  const TSVGClassTable &Table = SVGClasses();
  for (std::size_t I = 0; I < Table.size(); ++I)
    if (Table[I] && Table[I] == Class)
      return TSVGElementType(I);
  return etNone;
}

} // namespace vx
