#pragma once
// What a picture may take from outside itself: files and raster memory.
//
// Which files a picture may name (image files, nested SVG pictures), and how they are read. A
// picture is often sent by a stranger and its output sent back, so by default a reference reaches
// only regular files inside the folder of the document's own file, after ".." and symbolic links
// are resolved; "file:" URLs and absolute paths are held to the same rule. A document loaded from
// text or from a stream without a file name has no folder and reads no file, unless the program
// allows folders (whose files it may then name by absolute names) or sets a resolver. Devices, FIFOs, sockets and the kernel's /proc, /sys and /dev
// are never read, whatever is allowed. Files are opened without blocking, and a file larger than
// MaxFileSize is not read. A refused file is a reference that finds nothing: the picture draws
// without it.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace vx {

// Answers the file that Reference (the text of an href) names for a document in DocumentFolder
// (empty for a document without a file), or an empty string to refuse it.
using TSVGFileResolver = std::function<QString(const QString &Reference, const QString &DocumentFolder)>;

class TSVGFilePolicy
{
public:
  // Far beyond any picture file; a larger file is refused unread.
  static constexpr qint64 DefaultMaxFileSize = qint64(64) << 20;

  // Folders whose files every picture of the document may name, beside the document's own folder:
  // by an absolute name, a "file:" URL, or a relative name that leads there from the document's
  // folder. Relative names are found from the document's folder only, so a document without a
  // file finds none.
  const QStringList &AllowedFolders() const { return FAllowedFolders; }
  void SetAllowedFolders(const QStringList &Folders) { FAllowedFolders = Folders; }
  void AllowFolder(const QString &Folder) { FAllowedFolders.append(Folder); }

  // A resolver replaces the folder rule: the program decides which file a reference names. What it
  // answers is still read only when it is a regular file outside /proc, /sys and /dev.
  const TSVGFileResolver &Resolver() const { return FResolver; }
  void SetResolver(TSVGFileResolver Value) { FResolver = std::move(Value); }

  qint64 MaxFileSize() const { return FMaxFileSize; }
  void SetMaxFileSize(qint64 Value) { FMaxFileSize = Value; }

  // The canonical name of the file that Reference names for a document in DocumentFolder, or an
  // empty string when there is no such file or the policy refuses it.
  QString Resolve(const QString &Reference, const QString &DocumentFolder) const;
  // Reads a file that Resolve answered: false, with Data empty, for anything but a regular file of
  // at most MaxFileSize bytes. Never waits for a writer or a device.
  bool Read(const QString &FileName, QByteArray &Data) const;

private:
  QString ResolveInFolders(const QString &Name, const QString &DocumentFolder) const;

  QStringList FAllowedFolders;
  TSVGFileResolver FResolver;
  qint64 FMaxFileSize = DefaultMaxFileSize;
};

// The decoded pixels that the images of one document may hold together: bitmaps read from files or
// data URIs and SVG pictures rendered into bitmaps, those of the pictures they show included. An
// image whose bitmap would exceed the budget is a skipped reference: it draws nothing, and the rest
// of the picture draws. Six images of a 11,000-pixel square picture would otherwise take 3 GB.
class TSVGRasterBudget
{
public:
  // 64 million pixels of four bytes: a large photograph, or many small pictures.
  static constexpr qint64 DefaultLimit = qint64(256) << 20;

  qint64 Limit() const { return FLimit; }
  void SetLimit(qint64 Value) { FLimit = Value; }
  qint64 Used() const { return FUsed; }
  // Takes Bytes from this budget and from the ones it draws on; false, taking nothing, when that
  // would exceed any of their limits.
  bool Charge(qint64 Bytes);
  void Release(qint64 Bytes);
  // Makes this budget draw on Parent too, which must outlive it: a picture shown by an image
  // shares the budget of the document that holds the image.
  void DrawOn(TSVGRasterBudget *Parent) { FParent = Parent; }

private:
  qint64 FLimit = DefaultLimit;
  qint64 FUsed = 0;
  TSVGRasterBudget *FParent = nullptr;
};

} // namespace vx
