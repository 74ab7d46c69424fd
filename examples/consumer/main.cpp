// Draws an SVG file into a PNG of 256 by 256 pixels: consumer IN.svg OUT.png
#include <QGuiApplication>
#include <vxsvg/VXSVG.h>

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  vx::TSVGDocument Document;
  Document.SetOptions(Document.GetOptions() | vx::soStandardSVG);
  Document.LoadFromFile(App.arguments().value(1));
  return Document.Render(QSize(256, 256)).save(App.arguments().value(2)) ? 0 : 1;
}
