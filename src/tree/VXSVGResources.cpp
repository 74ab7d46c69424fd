#include "tree/VXSVGResources.h"

#include "platform/rtl/VXSysUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vx {

namespace {

// The kernel's own file systems: reading them can block for ever (/proc/kmsg), never end
// (/dev/zero) or hand out the process's secrets (/proc/self/environ).
bool IsSystemPath(const QString &Canonical)
{
  for (const QLatin1String Root : {QLatin1String("/proc"), QLatin1String("/sys"), QLatin1String("/dev")}) {
    if (Canonical == Root || (Canonical.startsWith(Root) && Canonical.at(Root.size()) == QLatin1Char('/')))
      return true;
  }
  return false;
}

bool IsInside(const QString &Canonical, const QString &Root)
{
  if (Canonical == Root)
    return true;
  const QString Prefix = Root.endsWith(QLatin1Char('/')) ? Root : Root + QLatin1Char('/');
  return Canonical.startsWith(Prefix);
}

class TFileDescriptor
{
public:
  explicit TFileDescriptor(int Value) : FValue(Value) {}
  ~TFileDescriptor()
  {
    if (FValue >= 0)
      ::close(FValue);
  }
  TFileDescriptor(const TFileDescriptor &) = delete;
  TFileDescriptor &operator=(const TFileDescriptor &) = delete;
  int Get() const { return FValue; }

private:
  int FValue;
};

} // namespace

QString TSVGFilePolicy::Resolve(const QString &Reference, const QString &DocumentFolder) const
{
  QString Name = Reference;
  if (StartsText(QStringLiteral("file:"), Name))
    Name = QUrl(Name).toLocalFile();
  if (Name.isEmpty())
    return QString();
  const QString Candidate = FResolver ? FResolver(Reference, DocumentFolder) : ResolveInFolders(Name, DocumentFolder);
  if (Candidate.isEmpty())
    return QString();
  const QString Canonical = QFileInfo(Candidate).canonicalFilePath();
  return Canonical.isEmpty() || IsSystemPath(Canonical) ? QString() : Canonical;
}

QString TSVGFilePolicy::ResolveInFolders(const QString &Name, const QString &DocumentFolder) const
{
  const bool Absolute = QFileInfo(Name).isAbsolute();
  if (!Absolute && DocumentFolder.isEmpty())
    return QString();
  const QString Canonical = QFileInfo(Absolute ? Name : QDir(DocumentFolder).filePath(Name)).canonicalFilePath();
  if (Canonical.isEmpty())
    return QString();
  QStringList Folders = FAllowedFolders;
  if (!DocumentFolder.isEmpty())
    Folders.prepend(DocumentFolder);
  for (const QString &Folder : Folders) {
    const QString Root = QFileInfo(Folder).canonicalFilePath();
    if (!Root.isEmpty() && IsInside(Canonical, Root))
      return Canonical;
  }
  return QString();
}

bool TSVGFilePolicy::Read(const QString &FileName, QByteArray &Data) const
{
  Data.clear();
  const TFileDescriptor File(::open(QFile::encodeName(FileName).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat Info = {};
  if (File.Get() < 0 || ::fstat(File.Get(), &Info) != 0 || !S_ISREG(Info.st_mode) || Info.st_size > FMaxFileSize)
    return false;
  Data.resize(qsizetype(Info.st_size));
  qsizetype Done = 0;
  while (Done < Data.size()) {
    const ssize_t Count = ::read(File.Get(), Data.data() + Done, std::size_t(Data.size() - Done));
    if (Count < 0 && errno == EINTR)
      continue;
    if (Count <= 0)
      break;
    Done += Count;
  }
  Data.truncate(Done);
  return true;
}

bool TSVGRasterBudget::Charge(qint64 Bytes)
{
  if (Bytes < 0 || Bytes > FLimit - FUsed || (FParent && !FParent->Charge(Bytes)))
    return false;
  FUsed += Bytes;
  return true;
}

void TSVGRasterBudget::Release(qint64 Bytes)
{
  FUsed -= Bytes;
  if (FParent)
    FParent->Release(Bytes);
}

} // namespace vx
