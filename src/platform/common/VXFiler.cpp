#include "platform/common/VXFiler.h"

#include "platform/common/VXStreamedCollection.h"
#include "platform/rtl/VXStringList.h"

#include <QIODevice>

#include <cstring>
#include <limits>
#include <utility>

namespace vx {

namespace {

// "VXB" and the format's version.
constexpr char Signature[4] = {'V', 'X', 'B', '1'};

bool FitsIn(std::int64_t Value, std::int64_t Low, std::int64_t High) { return Value >= Low && Value <= High; }

} // namespace

bool IsBinaryStream(const QByteArray &Data)
{
  return Data.size() >= qsizetype(sizeof Signature) && std::memcmp(Data.constData(), Signature, sizeof Signature) == 0;
}

// --- TWriter ---

TWriter::TWriter(QIODevice &Stream) : FStream(Stream) { FBuffer.reserve(BufferSize); }

TWriter::~TWriter()
{
  try {
    FlushBuffer();
  } catch (const Exception &) {
    // Written by a caller that failed already; its own exception is on the way.
  }
}

void TWriter::FlushBuffer()
{
  if (FBuffer.isEmpty())
    return;
  const qint64 Written = FStream.write(FBuffer);
  FBuffer.clear();
  if (Written < 0)
    throw EWriteError(QStringLiteral("Stream write error"));
}

void TWriter::WriteBytes(const char *Data, qsizetype Size)
{
  FBuffer.append(Data, Size);
  if (FBuffer.size() >= BufferSize)
    FlushBuffer();
}

void TWriter::WriteUInt(std::uint64_t Value, int Size)
{
  char Bytes[8];
  for (int I = 0; I < Size; ++I)
    Bytes[I] = char((Value >> (8 * I)) & 0xFF);
  WriteBytes(Bytes, Size);
}

void TWriter::WriteValue(TValueType Value) { WriteUInt(Value, 1); }

void TWriter::WriteShortText(const QByteArray &Utf8)
{
  if (Utf8.size() > 255)
    throw EWriteError(QStringLiteral("Name too long for the stream: %1").arg(QString::fromUtf8(Utf8.left(40))));
  WriteUInt(std::uint64_t(Utf8.size()), 1);
  WriteBytes(Utf8.constData(), Utf8.size());
}

void TWriter::WritePropName(const QString &Name) { WriteShortText((FPropPath + Name).toUtf8()); }

void TWriter::WriteStr(const QString &Value) { WriteShortText(Value.toUtf8()); }

void TWriter::WriteString(const QString &Value)
{
  const QByteArray Utf8 = Value.toUtf8();
  if (Utf8.size() <= 255) {
    WriteValue(vaString);
    WriteShortText(Utf8);
    return;
  }
  WriteValue(vaUTF8String);
  WriteUInt(std::uint64_t(Utf8.size()), 4);
  WriteBytes(Utf8.constData(), Utf8.size());
}

void TWriter::WriteIdent(const QString &Value)
{
  WriteValue(vaIdent);
  WriteShortText(Value.toUtf8());
}

void TWriter::WriteInteger(std::int64_t Value)
{
  if (FitsIn(Value, std::numeric_limits<std::int8_t>::min(), std::numeric_limits<std::int8_t>::max())) {
    WriteValue(vaInt8);
    WriteUInt(std::uint64_t(Value), 1);
  } else if (FitsIn(Value, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max())) {
    WriteValue(vaInt16);
    WriteUInt(std::uint64_t(Value), 2);
  } else if (FitsIn(Value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max())) {
    WriteValue(vaInt32);
    WriteUInt(std::uint64_t(Value), 4);
  } else {
    WriteValue(vaInt64);
    WriteUInt(std::uint64_t(Value), 8);
  }
}

void TWriter::WriteFloat(double Value)
{
  // A float property that holds an integer (most coordinates) takes the short form.
  const float Single = float(Value);
  if (double(Single) == Value) {
    std::uint32_t Bits;
    std::memcpy(&Bits, &Single, sizeof Bits);
    WriteValue(vaSingle);
    WriteUInt(Bits, 4);
    return;
  }
  std::uint64_t Bits;
  std::memcpy(&Bits, &Value, sizeof Bits);
  WriteValue(vaDouble);
  WriteUInt(Bits, 8);
}

void TWriter::WriteBoolean(bool Value) { WriteValue(Value ? vaTrue : vaFalse); }

void TWriter::WriteBinary(const QByteArray &Value)
{
  WriteValue(vaBinary);
  WriteUInt(std::uint64_t(Value.size()), 4);
  WriteBytes(Value.constData(), Value.size());
}

void TWriter::WritePublished(const TPersistent &Instance, const TPropInfo &Info)
{
  const QVariant Value = Info.Get(Instance);
  switch (Info.Kind) {
  case tkInteger:
    WritePropName(Info.Name);
    WriteInteger(Value.toLongLong());
    break;
  case tkFloat:
    WritePropName(Info.Name);
    WriteFloat(Value.toDouble());
    break;
  case tkBoolean:
    WritePropName(Info.Name);
    WriteBoolean(Value.toBool());
    break;
  case tkString:
    WritePropName(Info.Name);
    WriteString(Value.toString());
    break;
  case tkEnumeration:
    WritePropName(Info.Name);
    if (const QString Name = Info.ValueName(Value.toInt()); !Name.isEmpty())
      WriteIdent(Name);
    else
      WriteInteger(Value.toInt());
    break;
  case tkSet:
    WritePropName(Info.Name);
    WriteInteger(std::int64_t(Value.toULongLong()));
    break;
  case tkClass:
    if (const TPersistent *Object = Value.value<TPersistent *>()) {
      if (const auto *Strings = dynamic_cast<const TStrings *>(Object)) {
        WritePropName(Info.Name);
        WriteListBegin();
        for (int I = 0; I < Strings->Count(); ++I)
          WriteString(Strings->Get(I));
        WriteListEnd();
      } else if (const auto *Collection = dynamic_cast<const TStreamedCollection *>(Object)) {
        WritePropName(Info.Name);
        WriteValue(vaCollection);
        for (int I = 0; I < Collection->StreamedCount(); ++I) {
          WriteListBegin();
          WriteProperties(Collection->StreamedItem(I));
          WriteListEnd();
        }
        WriteListEnd();
      } else {
        WritePropertiesWithPrefix(*Object, FPropPath + Info.Name + QLatin1Char('.'));
      }
    }
    break;
  case tkComponent:
    // References between components are resolved by their owner, not streamed.
    break;
  }
}

void TWriter::WritePropertiesWithPrefix(const TPersistent &Instance, const QString &Prefix)
{
  const QString Outer = FPropPath;
  FPropPath = Prefix;
  try {
    WriteProperties(Instance);
  } catch (...) {
    FPropPath = Outer;
    throw;
  }
  FPropPath = Outer;
}

void TWriter::WriteProperties(const TPersistent &Instance)
{
  if (const TPropertyTable *Table = Instance.PublishedProperties())
    for (const TPropInfo &Info : *Table)
      if (Info.IsStored(Instance))
        WritePublished(Instance, Info);
  const_cast<TPersistent &>(Instance).DefineProperties(*this);
}

void TWriter::WriteRootPersistent(const TPersistent &Root)
{
  WriteBytes(Signature, sizeof Signature);
  WriteStr(Root.ClassName());
  WriteProperties(Root);
  WriteListEnd();
  FlushBuffer();
}

void TWriter::DefineProperty(const QString &Name, const TReaderProc &, const TWriterProc &WriteData, bool HasData)
{
  if (!HasData)
    return;
  WritePropName(Name);
  WriteData(*this);
}

void TWriter::DefineBinaryProperty(const QString &Name, const TBinaryReaderProc &, const TBinaryWriterProc &WriteData,
                                   bool HasData)
{
  if (!HasData)
    return;
  WritePropName(Name);
  WriteBinary(WriteData());
}

// --- TReader ---

TReader::TReader(QIODevice &Stream) : FData(Stream.readAll()) {}

TReader::TReader(QByteArray Data) : FData(std::move(Data)) {}

void TReader::StreamError() { throw EReadError(QStringLiteral("Stream read error")); }

const char *TReader::Take(qsizetype Size)
{
  if (Size < 0 || Size > FData.size() - FPosition)
    StreamError();
  const char *Data = FData.constData() + FPosition;
  FPosition += Size;
  return Data;
}

std::uint64_t TReader::ReadUInt(int Size)
{
  const auto *Bytes = reinterpret_cast<const unsigned char *>(Take(Size));
  std::uint64_t Value = 0;
  for (int I = 0; I < Size; ++I)
    Value |= std::uint64_t(Bytes[I]) << (8 * I);
  return Value;
}

QString TReader::ReadText(qsizetype Size)
{
  const char *Data = Take(Size);
  return QString::fromUtf8(Data, Size);
}

TValueType TReader::ReadValue()
{
  const auto Value = std::uint8_t(ReadUInt(1));
  if (Value > vaDouble)
    throw EReadError(QStringLiteral("Invalid stream format"));
  return TValueType(Value);
}

bool TReader::EndOfList() const
{
  // A property name's length byte may stand where a list could end, so only the end marker is
  // recognised here.
  if (AtEnd())
    StreamError();
  return FData.at(FPosition) == char(vaNull);
}

TValueType TReader::NextValue() const
{
  if (AtEnd())
    StreamError();
  const auto Value = std::uint8_t(FData.at(FPosition));
  if (Value > vaDouble)
    throw EReadError(QStringLiteral("Invalid stream format"));
  return TValueType(Value);
}

void TReader::CheckValue(TValueType Expected)
{
  if (ReadValue() != Expected)
    throw EReadError(QStringLiteral("Invalid property value"));
}

QString TReader::ReadStr() { return ReadText(qsizetype(ReadUInt(1))); }

QString TReader::ReadString()
{
  switch (ReadValue()) {
  case vaString:
    return ReadStr();
  case vaLString:
  case vaUTF8String:
    return ReadText(qsizetype(ReadUInt(4)));
  default:
    throw EReadError(QStringLiteral("Invalid property value"));
  }
}

QString TReader::ReadIdentText() { return ReadStr(); }

QString TReader::ReadIdent()
{
  CheckValue(vaIdent);
  return ReadIdentText();
}

std::int64_t TReader::ReadInteger()
{
  switch (ReadValue()) {
  case vaInt8:
    return std::int8_t(ReadUInt(1));
  case vaInt16:
    return std::int16_t(ReadUInt(2));
  case vaInt32:
    return std::int32_t(ReadUInt(4));
  case vaInt64:
    return std::int64_t(ReadUInt(8));
  default:
    throw EReadError(QStringLiteral("Invalid property value"));
  }
}

double TReader::ReadFloat()
{
  switch (NextValue()) {
  case vaSingle: {
    ReadValue();
    const auto Bits = std::uint32_t(ReadUInt(4));
    float Value;
    std::memcpy(&Value, &Bits, sizeof Value);
    return Value;
  }
  case vaDouble: {
    ReadValue();
    const std::uint64_t Bits = ReadUInt(8);
    double Value;
    std::memcpy(&Value, &Bits, sizeof Value);
    return Value;
  }
  default:
    return double(ReadInteger());
  }
}

bool TReader::ReadBoolean()
{
  switch (ReadValue()) {
  case vaTrue:
    return true;
  case vaFalse:
    return false;
  default:
    throw EReadError(QStringLiteral("Invalid property value"));
  }
}

QByteArray TReader::ReadBinary()
{
  CheckValue(vaBinary);
  const auto Size = qsizetype(ReadUInt(4));
  const char *Data = Take(Size);
  return QByteArray(Data, Size);
}

TReader::TNestingGuard::TNestingGuard(TReader &Reader) : FReader(Reader)
{
  if (FReader.FNesting >= MaxNesting)
    throw EReadError(QStringLiteral("Objects nested too deeply in the stream"));
  ++FReader.FNesting;
}

namespace {

[[noreturn]] void UnknownProperty(const QString &Name)
{
  throw EReadError(QStringLiteral("Error reading %1: Property does not exist").arg(Name));
}

int EnumerationOrdinal(const TPropInfo &Info, const QString &Ident)
{
  const int Ordinal = Info.ValueNames.indexOf(Ident);
  if (Ordinal < 0)
    throw EReadError(QStringLiteral("Invalid property value %1 of %2").arg(Ident, Info.Name));
  return Ordinal;
}

} // namespace

void TReader::ReadPublished(TPersistent &Instance, const TPropInfo &Info)
{
  switch (Info.Kind) {
  case tkInteger:
    Info.Set(Instance, QVariant(qlonglong(ReadInteger())));
    break;
  case tkFloat:
    Info.Set(Instance, QVariant(ReadFloat()));
    break;
  case tkBoolean:
    Info.Set(Instance, QVariant(ReadBoolean()));
    break;
  case tkString:
    Info.Set(Instance, QVariant(ReadString()));
    break;
  case tkEnumeration:
    if (NextValue() == vaIdent)
      Info.Set(Instance, QVariant(EnumerationOrdinal(Info, ReadIdent())));
    else
      Info.Set(Instance, QVariant(int(ReadInteger())));
    break;
  case tkSet:
    Info.Set(Instance, QVariant(qulonglong(ReadInteger())));
    break;
  case tkClass: {
    auto *Object = Info.Get(Instance).value<TPersistent *>();
    if (auto *Strings = dynamic_cast<TStrings *>(Object)) {
      TStringList Lines;
      ReadListBegin();
      while (!EndOfList())
        Lines.Add(ReadString());
      ReadListEnd();
      Strings->Assign(&Lines);
    } else if (auto *Collection = dynamic_cast<TStreamedCollection *>(Object)) {
      CheckValue(vaCollection);
      Collection->StreamedClear();
      while (!EndOfList()) {
        ReadListBegin();
        TPersistent &Item = Collection->StreamedAdd();
        while (!EndOfList())
          ReadProperty(Item);
        ReadListEnd();
      }
      ReadListEnd();
      Collection->StreamedLoaded();
    } else {
      throw EReadError(QStringLiteral("Invalid property value of %1").arg(Info.Name));
    }
    break;
  }
  case tkComponent:
    throw EReadError(QStringLiteral("Invalid property value of %1").arg(Info.Name));
  }
}

bool TReader::ReadDefined(TPersistent &Instance, const QString &Name)
{
  // A defined property may hold objects that read defined properties of their own.
  const QString OuterName = std::exchange(FPropName, Name);
  const bool OuterTaken = std::exchange(FPropTaken, false);
  try {
    Instance.DefineProperties(*this);
  } catch (...) {
    FPropName = OuterName;
    FPropTaken = OuterTaken;
    throw;
  }
  const bool Taken = FPropTaken;
  FPropName = OuterName;
  FPropTaken = OuterTaken;
  return Taken;
}

void TReader::ReadProperty(TPersistent &Instance)
{
  const QString Name = ReadStr();
  TPersistent *Target = &Instance;
  QStringView Rest(Name);
  // A dotted name reaches into sub-objects: "Pen.Color" is the Color of the object that Pen holds.
  for (qsizetype Dot = Rest.indexOf(QLatin1Char('.')); Dot >= 0; Dot = Rest.indexOf(QLatin1Char('.'))) {
    const TPropertyTable *Table = Target->PublishedProperties();
    const TPropInfo *Info = Table ? Table->Find(Rest.left(Dot).toString()) : nullptr;
    if (!Info || Info->Kind != tkClass)
      UnknownProperty(Name);
    Target = Info->Get(*Target).value<TPersistent *>();
    if (!Target)
      UnknownProperty(Name);
    Rest = Rest.mid(Dot + 1);
  }
  const QString Last = Rest.toString();
  if (const TPropertyTable *Table = Target->PublishedProperties())
    if (const TPropInfo *Info = Table->Find(Last); Info && (Info->Set || Info->Kind == tkClass)) {
      try {
        ReadPublished(*Target, *Info);
      } catch (const EReadError &Error) {
        throw EReadError(QStringLiteral("Error reading %1: %2").arg(Name, Error.Message()));
      }
      return;
    }
  if (!ReadDefined(*Target, Last))
    UnknownProperty(Name);
}

void TReader::ReadRootPersistent(TPersistent &Root)
{
  if (!IsBinaryStream(FData))
    throw EReadError(QStringLiteral("Invalid stream format"));
  Take(sizeof Signature);
  const QString ClassName = ReadStr();
  if (ClassName != Root.ClassName())
    throw EReadError(QStringLiteral("The stream holds a %1, not a %2").arg(ClassName, Root.ClassName()));
  while (!EndOfList())
    ReadProperty(Root);
  ReadListEnd();
}

void TReader::DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &, bool)
{
  if (FPropTaken || Name != FPropName)
    return;
  FPropTaken = true;
  ReadData(*this);
}

void TReader::DefineBinaryProperty(const QString &Name, const TBinaryReaderProc &ReadData, const TBinaryWriterProc &,
                                   bool)
{
  if (FPropTaken || Name != FPropName)
    return;
  FPropTaken = true;
  ReadData(ReadBinary());
}

} // namespace vx
