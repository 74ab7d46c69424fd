#pragma once
// The generated picture that the tree and binary-stream benchmarks load: Elements styled groups
// with ids, classes, a style attribute, a transform and an opacity (about 110 bytes each).
#include <QString>

inline QString GeneratedPicture(int Elements)
{
  QString Text = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='1000' height='1000'>\n");
  Text.reserve(Elements * 110);
  for (int I = 0; I < Elements; ++I)
    Text += QStringLiteral("<g id='e%1' class='c%2 all' style='fill:#%3;stroke:none' "
                           "transform='translate(%2 %4)' opacity='0.5'/>\n")
                .arg(I)
                .arg(I % 100)
                .arg(QString::number(0x100000 + I * 13 % 0xEFFFFF, 16))
                .arg(I % 977);
  Text += QStringLiteral("</svg>\n");
  return Text;
}
