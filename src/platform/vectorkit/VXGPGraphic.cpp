#include "platform/vectorkit/VXGPGraphic.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace vx {

namespace {

std::vector<TGraphicFileFormat> &Formats()
{
  static std::vector<TGraphicFileFormat> Registered;
  return Registered;
}

bool SameExtension(const QString &A, const QString &B)
{
  return A.compare(B, Qt::CaseInsensitive) == 0;
}

} // namespace

void TGraphic::LoadFromFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File.errorString()));
  LoadFromStream(File);
}

void TGraphic::SaveToFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly))
    throw EFOpenError(QStringLiteral("Cannot create file \"%1\". %2").arg(FileName, File.errorString()));
  SaveToStream(File);
}

void TGraphic::SetSize(int Width, int Height)
{
  SetWidth(Width);
  SetHeight(Height);
}

void TGraphic::Changed()
{
  if (OnChange)
    OnChange(this);
}

void TPicture::RegisterFileFormat(const QString &Extension, const QString &Description,
                                  const QString &GraphicClassName, TGraphicFactory Create)
{
  auto &Registered = Formats();
  std::erase_if(Registered, [&](const TGraphicFileFormat &F) { return SameExtension(F.Extension, Extension); });
  Registered.push_back({Extension, Description, GraphicClassName, std::move(Create)});
}

void TPicture::UnregisterGraphicClass(const QString &GraphicClassName)
{
  std::erase_if(Formats(), [&](const TGraphicFileFormat &F) { return F.GraphicClassName == GraphicClassName; });
}

std::optional<TGraphicFileFormat> TPicture::FindFileFormat(const QString &Extension)
{
  for (const TGraphicFileFormat &F : Formats())
    if (SameExtension(F.Extension, Extension))
      return F;
  return std::nullopt;
}

std::vector<TGraphicFileFormat> TPicture::FileFormats()
{
  return Formats();
}

std::unique_ptr<TGraphic> TPicture::LoadGraphicFromFile(const QString &FileName)
{
  const QString Extension = QFileInfo(FileName).suffix();
  const std::optional<TGraphicFileFormat> Format = FindFileFormat(Extension);
  if (!Format)
    throw EInvalidGraphicOperation(QStringLiteral("Unknown picture file extension (.%1)").arg(Extension));
  std::unique_ptr<TGraphic> Graphic = Format->Create();
  Graphic->LoadFromFile(FileName);
  return Graphic;
}

} // namespace vx
