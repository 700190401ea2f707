#pragma once
// What holds for every text that is read as a file of records. Shared by a test and a fuzz target.

#include <sys/mman.h>
#include <unistd.h>

#include <map>
#include <string>

#include "base/msg_flags.h"
#include "device/data_files/record_file_reader.h"

// Gives each line the count and the checksum that its other characters ask for, so that random text comes past the
// checks. Class: FILE_CLASS_SREC or FILE_CLASS_HEX.
inline QByteArray RepairRecords(const QByteArray& Text, VFile::FILE_CLASS Class) {
  const bool bHex = Class == VFile::FILE_CLASS_HEX;
  const qsizetype CountPos = bHex ? 1 : 2;
  const qsizetype MinChars = bHex ? 11 : 10;
  QByteArray Result;
  for (QByteArray Line : Text.split('\n')) {
    if (Line.size() >= MinChars) {
      Line.resize(std::min<qsizetype>(Line.size(), MinChars + 2 * 245));
      if (Line.size() % 2 != MinChars % 2) Line.chop(1);
      const qsizetype NumCounted = (Line.size() - (bHex ? 11 : 4)) / 2;
      Line.replace(CountPos, 2, QByteArray(1, static_cast<char>(NumCounted)).toHex());
      U8 Sum = 0;
      for (const char Byte : QByteArray::fromHex(Line.mid(CountPos, Line.size() - 2 - CountPos))) {
        Sum = static_cast<U8>(Sum + static_cast<U8>(Byte));
      }
      Line.replace(Line.size() - 2, 2, QByteArray(1, static_cast<char>(bHex ? -Sum : ~Sum)).toHex());
    }
    Result += Line + '\n';
  }
  return Result;
}

// The first rule that does not hold for a text shorter than one piece of a read; empty when all do.
inline std::string BrokenRecordRule(const QByteArray& Text, VFile::FILE_CLASS Class) {
  const int Handle = memfd_create("records", 0);
  if (Handle < 0 || write(Handle, Text.constData(), Text.size()) != Text.size()) return "the text cannot be stored";
  int NumErrors = 0;
  const MessageSink Sink = [&](const QString&, U32 Flags) { NumErrors += (Flags & MSG_ERROR) != 0; };
  QFile File;
  const bool bOpen = File.open(Handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
  const QMemBlocks Blocks = VFile::CRecordFileReader(Class, {}, Sink).Read(File);

  // The bytes by their addresses: all records by start address, those of the same one in their order.
  std::multimap<U32, QByteArray> Records;
  VFile::CRecordParser Parser(Class);
  bool bValid = bOpen;
  for (qsizetype Pos = 0; Pos < Text.size();) {
    qsizetype End = Pos;
    while (End < Text.size() && Text[End] != '\r' && Text[End] != '\n') ++End;
    if (End == Text.size() && Pos > 0) break;
    if (End > Pos) {
      const VFile::DATA_RECORD Record = Parser.Parse({Text.constData() + Pos, static_cast<size_t>(End - Pos)});
      bValid = bValid && Record.bValid;
      if (Record.bIsData) Records.emplace(Record.Addr, Record.Data);
    }
    while (End < Text.size() && QByteArray(" \t\n\v\f\r").contains(Text[End])) ++End;
    Pos = End;
  }
  std::map<U64, char> Image;
  for (const auto& [Addr, Data] : Records) {
    for (qsizetype i = 0; i < Data.size(); ++i) Image[U64{Addr} + static_cast<U64>(i)] = Data[i];
  }
  if (!bValid) return Blocks.isEmpty() && NumErrors == 1 ? "" : "a bad record did not refuse the file with one error";
  if (NumErrors != 0) return "an error in a good file";

  U64 Behind = 0;
  size_t NumBytes = 0;
  for (const CMemBlock& Block : Blocks) {
    if (Block.NumBytes != static_cast<U32>(Block.Data.size()) || Block.NumBytes == 0) return "a block of a wrong size";
    if (&Block != &Blocks.front() && Block.Addr <= Behind) return "blocks that touch or are out of order";
    Behind = U64{Block.Addr} + Block.NumBytes;
    for (U32 i = 0; i < Block.NumBytes; ++i) {
      const auto Found = Image.find(U64{Block.Addr} + i);
      if (Found == Image.end() || Found->second != Block.Data[i]) return "a byte at the wrong place";
    }
    NumBytes += Block.NumBytes;
  }
  return NumBytes == Image.size() ? "" : "bytes are missing";
}
