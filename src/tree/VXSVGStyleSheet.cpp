#include "tree/VXSVGStyleSheet.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGAttributes.h"

namespace vx {

void ParseStyleSheet(const QString &Text,
                     const std::function<void(const QString &Selector, const QString &Declarations)> &AddRule)
{
  const QString Sheet = RemoveComments(Text);
  const QStringView View(Sheet);
  // Start marks where the text not yet read begins; the sheet itself is never re-copied.
  qsizetype Start = 0;
  for (qsizetype Open = Sheet.indexOf(QLatin1Char('{')); Open >= 0; Open = Sheet.indexOf(QLatin1Char('{'), Start)) {
    const qsizetype Close = Sheet.indexOf(QLatin1Char('}'), Open);
    if (Close < 0)
      break;
    const QString Declarations = View.mid(Open + 1, Close - Open - 1).toString();
    for (const QStringView Part : View.mid(Start, Open - Start).split(QLatin1Char(','))) {
      const QString Selector = Trim(Part.toString());
      if (!Selector.isEmpty())
        AddRule(Selector, Declarations);
    }
    Start = Close + 1;
  }
}

} // namespace vx
