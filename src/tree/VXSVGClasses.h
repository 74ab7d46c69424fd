#pragma once
// The virtual constructor of element classes: one class-info record per class, and the table
// SVGClasses that maps an element type to the class that reads it. Modules enter their classes at
// start-up through a TSVGClassRegistration object, so the core never names them.
#include "platform/rtl/VXExport.h"
#include "values/VXSVGVocabulary.h"

#include <array>

namespace vx {

class TSVGDocument;
class TSVGElement;

struct VX_EXPORT TSVGElementClass
{
  QString Name;
  TSVGElement *(*Create)(TSVGDocument *Owner);
};

using TSVGClassTable = std::array<const TSVGElementClass *, SVGElementTypeCount>;

// The class per element type; nil where no class reads that type.
VX_EXPORT TSVGClassTable &SVGClasses();

// Enters Class as the reader of Type while the registration object lives (normally for the life of
// the program: a static object in the module that defines the class).
class VX_EXPORT TSVGClassRegistration
{
public:
  TSVGClassRegistration(TSVGElementType Type, const TSVGElementClass &Class);
  ~TSVGClassRegistration();
  TSVGClassRegistration(const TSVGClassRegistration &) = delete;
  TSVGClassRegistration &operator=(const TSVGClassRegistration &) = delete;

private:
  TSVGElementType FType;
  const TSVGElementClass *FPrevious;
};

// The first registered class named Name (exact), or nil.
VX_EXPORT const TSVGElementClass *GetSVGClass(const QString &Name);
// As GetSVGClass, failing with EClassNotFound.
VX_EXPORT const TSVGElementClass &FindSVGClass(const QString &Name);
// The type under which Class is registered (by identity), or etNone.
VX_EXPORT TSVGElementType GetElementType(const TSVGElementClass *Class);

} // namespace vx

// Declares the class-info record and the virtual constructor of an element class.
#define VX_SVG_ELEMENT_CLASS(Class)                                                                \
public:                                                                                            \
  static const ::vx::TSVGElementClass &ClassInfo();                                                \
  const ::vx::TSVGElementClass &GetClass() const override { return ClassInfo(); }                  \
  QString ClassName() const override { return ClassInfo().Name; }                                 \
                                                                                                   \
private:

// Defines what VX_SVG_ELEMENT_CLASS declared; Class must have a constructor taking the owner.
#define VX_SVG_ELEMENT_CLASS_INFO(Class)                                                           \
  const ::vx::TSVGElementClass &Class::ClassInfo()                                                 \
  {                                                                                                \
    static const ::vx::TSVGElementClass Info{QStringLiteral(#Class),                               \
                                             [](::vx::TSVGDocument *Owner) -> ::vx::TSVGElement * { \
                                               return new Class(Owner);                            \
                                             }};                                                   \
    return Info;                                                                                   \
  }
