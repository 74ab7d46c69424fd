#pragma once
// The binary component stream: TWriter writes the published properties of persistent objects
// (walking their property tables) and the properties they define themselves, TReader reads them
// back into objects. A stream is a header, the root object's class name, its properties and an
// end marker; each property is its name and one tagged value.
//
// The reader takes input from strangers: every length and count is checked against what is left
// of the stream before anything is allocated, markers are checked where they are read, nesting is
// limited, and every fault ends in EReadError.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"
#include "platform/rtl/VXPropInfo.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>

class QIODevice;

namespace vx {

// The value markers. The library names two itself: vaList (1) opens a list, vaCollection (14) a
// collection; vaNull ends either, and ends a property list.
enum TValueType : std::uint8_t {
  vaNull, vaList, vaInt8, vaInt16, vaInt32, vaExtended, vaString, vaIdent, vaFalse, vaTrue, vaBinary,
  vaSet, vaLString, vaNil, vaCollection, vaSingle, vaCurrency, vaDate, vaWString, vaInt64, vaUTF8String,
  vaDouble
};

class TReader;
class TWriter;

// What TPersistent::DefineProperties sees: a writer that asks each property for its data, or a
// reader that hands the one property it has just met to the matching definition.
class VX_EXPORT TFiler
{
public:
  using TReaderProc = std::function<void(TReader &)>;
  using TWriterProc = std::function<void(TWriter &)>;
  using TBinaryReaderProc = std::function<void(const QByteArray &)>;
  using TBinaryWriterProc = std::function<QByteArray()>;

  virtual ~TFiler() = default;
  // A property written by WriteData when HasData holds, read by ReadData.
  virtual void DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &WriteData,
                              bool HasData) = 0;
  // A property whose content is a block of bytes.
  virtual void DefineBinaryProperty(const QString &Name, const TBinaryReaderProc &ReadData,
                                    const TBinaryWriterProc &WriteData, bool HasData) = 0;
};

class VX_EXPORT TWriter : public TFiler
{
public:
  static constexpr int BufferSize = 4096;

  explicit TWriter(QIODevice &Stream);
  // Flushes what is buffered; a failure then is lost, so callers end with FlushBuffer.
  ~TWriter() override;

  void WriteValue(TValueType Value);
  void WriteListBegin() { WriteValue(vaList); }
  void WriteListEnd() { WriteValue(vaNull); }
  void WritePropName(const QString &Name);
  void WriteStr(const QString &Value);
  void WriteString(const QString &Value);
  void WriteIdent(const QString &Value);
  void WriteInteger(std::int64_t Value);
  void WriteFloat(double Value);
  void WriteBoolean(bool Value);
  void WriteBinary(const QByteArray &Value);

  // Every published property that is stored, then every defined one; sub-objects write theirs
  // under their dotted names.
  void WriteProperties(const TPersistent &Instance);
  // The header, the class name of Root, its properties and the end marker.
  void WriteRootPersistent(const TPersistent &Root);
  void FlushBuffer();

  void DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &WriteData,
                      bool HasData) override;
  void DefineBinaryProperty(const QString &Name, const TBinaryReaderProc &ReadData,
                            const TBinaryWriterProc &WriteData, bool HasData) override;

private:
  void WriteBytes(const char *Data, qsizetype Size);
  void WriteUInt(std::uint64_t Value, int Size);
  void WriteShortText(const QByteArray &Utf8);
  void WritePublished(const TPersistent &Instance, const TPropInfo &Info);
  void WritePropertiesWithPrefix(const TPersistent &Instance, const QString &Prefix);

  QIODevice &FStream;
  QByteArray FBuffer;
  QString FPropPath;
};

class VX_EXPORT TReader : public TFiler
{
public:
  // The nesting of objects (child lists within child lists) a stream may have.
  static constexpr int MaxNesting = 256;

  // Reads what is left of Stream.
  explicit TReader(QIODevice &Stream);
  explicit TReader(QByteArray Data);

  TValueType ReadValue();
  TValueType NextValue() const;
  void CheckValue(TValueType Expected);
  void ReadListBegin() { CheckValue(vaList); }
  void ReadListEnd() { CheckValue(vaNull); }
  bool EndOfList() const;
  QString ReadStr();
  QString ReadString();
  QString ReadIdent();
  std::int64_t ReadInteger();
  double ReadFloat();
  bool ReadBoolean();
  QByteArray ReadBinary();

  // Reads one property (its name and value) into Instance; a name that neither its table nor its
  // definitions know fails.
  void ReadProperty(TPersistent &Instance);
  // Checks the header and that the stream holds an object of Root's class, then reads its
  // properties up to the end marker.
  void ReadRootPersistent(TPersistent &Root);
  bool AtEnd() const { return FPosition >= FData.size(); }

  // One level deeper while it lives; past MaxNesting it fails.
  class TNestingGuard
  {
  public:
    explicit TNestingGuard(TReader &Reader);
    ~TNestingGuard() { --FReader.FNesting; }
    TNestingGuard(const TNestingGuard &) = delete;
    TNestingGuard &operator=(const TNestingGuard &) = delete;

  private:
    TReader &FReader;
  };

  void DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &WriteData,
                      bool HasData) override;
  void DefineBinaryProperty(const QString &Name, const TBinaryReaderProc &ReadData,
                            const TBinaryWriterProc &WriteData, bool HasData) override;

private:
  [[noreturn]] static void StreamError();
  const char *Take(qsizetype Size);
  std::uint64_t ReadUInt(int Size);
  QString ReadText(qsizetype Size);
  QString ReadIdentText();
  void ReadPublished(TPersistent &Instance, const TPropInfo &Info);
  bool ReadDefined(TPersistent &Instance, const QString &Name);

  QByteArray FData;
  qsizetype FPosition = 0;
  int FNesting = 0;
  // The defined property being read, and whether a definition took it.
  QString FPropName;
  bool FPropTaken = false;
};

// Whether Data begins with the header of the binary component stream.
VX_EXPORT bool IsBinaryStream(const QByteArray &Data);

} // namespace vx
