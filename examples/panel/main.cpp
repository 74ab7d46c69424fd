// vxsvg-panel: a picture turned into live controls, one per shape; a click on a shape names it in
// the title bar.
//   vxsvg-panel FILE                       opens FILE in a window
//   vxsvg-panel --screenshot OUT.png FILE  renders the window into OUT.png, every generated control
//                                          outlined and labelled with its SVGID
#include "components/VXSVGCtrls.h"

#include <QApplication>
#include <QFile>
#include <QPainter>

#include <cstdio>

namespace {

// Outlines each generated shape, text and image control of Panel on Image, with its SVGID.
void MarkControls(const vx::TVXSVGPanel &Panel, QImage &Image)
{
  QPainter Painter(&Image);
  Painter.setRenderHint(QPainter::Antialiasing);
  QFont Font = Painter.font();
  Font.setPixelSize(11);
  Painter.setFont(Font);
  for (int I = 0; I < Panel.ComponentCount(); ++I) {
    auto *Control = dynamic_cast<vx::TControl *>(Panel.Components(I));
    if (!Control || dynamic_cast<vx::TVXSVGLayout *>(Control) || !vx::IsGeneratedControl(*Control))
      continue;
    const QRect Box = Control->geometry().adjusted(0, 0, -1, -1);
    Painter.setPen(QPen(QColor(0x33, 0x33, 0x33), 1, Qt::DashLine));
    Painter.drawRect(Box);
    const QString Id = Control->PublishedProperties()->Find(QStringLiteral("SVGID"))->Get(*Control).toString();
    const QString Label = Control->ClassName() + QLatin1Char(' ') + Id;
    const QRect Tag(Box.left(), Box.top() - 15, Painter.fontMetrics().horizontalAdvance(Label) + 6, 15);
    Painter.fillRect(Tag, QColor(0x33, 0x33, 0x33));
    Painter.setPen(Qt::white);
    Painter.drawText(Tag, Qt::AlignCenter, Label);
  }
}

} // namespace

int main(int argc, char **argv)
{
  QApplication App(argc, argv);
  QStringList Args = App.arguments().mid(1);
  QString Screenshot;
  if (Args.size() >= 2 && Args[0] == QLatin1String("--screenshot")) {
    Screenshot = Args[1];
    Args = Args.mid(2);
  }
  if (Args.isEmpty()) {
    std::fprintf(stderr, "usage: vxsvg-panel [--screenshot OUT.png] FILE\n");
    return 2;
  }
  vx::TVXSVGDocument Document;
  vx::TVXSVGPanel Panel;
  Panel.setWindowTitle(QStringLiteral("vxsvg-panel"));
  Panel.SetColor(0xFFFFFFFF);
  Panel.resize(560, 420);
  Panel.OnGenerateControl = [&Panel](vx::TVXSVGPanel *, vx::TSVGElement *Element, vx::TControl *Control) {
    const QString Id = Element->ID();
    Control->SetCursor(vx::crHandPoint);
    Control->OnClick = [&Panel, Id](vx::TObject *) { Panel.setWindowTitle(QStringLiteral("vxsvg-panel: ") + Id); };
  };
  try {
    Document.SVG().LoadFromFile(Args[0]);
  } catch (const std::exception &Error) {
    std::fprintf(stderr, "vxsvg-panel: %s\n", Error.what());
    return 1;
  }
  Panel.SetSVGDocument(&Document);
  if (Screenshot.isEmpty()) {
    Panel.show();
    return App.exec();
  }
  Panel.show();
  QApplication::processEvents();
  QImage Image = Panel.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  MarkControls(Panel, Image);
  if (!Image.save(Screenshot)) {
    std::fprintf(stderr, "vxsvg-panel: cannot write %s\n", qPrintable(Screenshot));
    return 1;
  }
  return 0;
}
