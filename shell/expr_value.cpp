#include "shell/expr_value.h"

#include <QRegularExpression>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "base/integer_bits.h"
#include "device/device.h"
#include "program/database/elfapi_types.h"
#include "program/elf/elf_dwarf_names.h"
#include "script/api_stubs.h"
#include "shell/expr_symbols.h"

namespace {

constexpr U32 WORD_BYTES = 4;
constexpr int RULE_LENGTH = 112;  // dashes
const QLatin1String UNKNOWN_SYMBOL("unknown symbol");
const QLatin1String NO_VALUE("the symbol has no value that can be read without the expression engine");
const QLatin1String READ_ERROR("data readout error");
const QLatin1String U64_TYPE("unsigned long long");

EXPR_VALUE Failed(const QString& sError) {
  return {EXPR_FAILED, sError, 0, 0, {}, {}, {}};
}

QByteArray LittleEndian(U64 Value, U32 NumBytes) {
  QByteArray Bytes;
  for (U32 i = 0; i < NumBytes; ++i) Bytes.append(static_cast<char>(Value >> (8 * i)));
  return Bytes;
}

EXPR_VALUE Number(I64 Value, U32 NumBytes, const QString& sType, const QString& sPlace = QStringLiteral("const")) {
  return {EXPR_HAS_VALUE, {},   Value, static_cast<double>(Value), LittleEndian(static_cast<U64>(Value), NumBytes),
          sPlace,         sType};
}

EXPR_VALUE UnsignedNumber(U64 Value, U32 NumBytes, const QString& sType,
                          const QString& sPlace = QStringLiteral("const")) {
  EXPR_VALUE Result = Number(static_cast<I64>(Value), NumBytes, sType, sPlace);
  Result.Real = static_cast<double>(Value);
  return Result;
}

EXPR_VALUE Address(U32 Addr, const QString& sType) {
  return Addr == INVALID_ADDR ? Failed(NO_VALUE) : Number(Addr, WORD_BYTES, sType);
}

// Blanks and the marks of operators only where they belong to template arguments.
bool IsName(const QString& sText) {
  static const QRegularExpression Form(
      QStringLiteral("^(::)?[A-Za-z_]\\w*( *<[\\w<>:,*& ]*>)?(::~?[A-Za-z_]\\w*( *<[\\w<>:,*& ]*>)?)*$"));
  return Form.match(sText).hasMatch();
}

// What is no number or too big for one has no integer.
I64 IntegerOf(double Value) {
  return std::abs(Value) < 0x1p63 ? static_cast<I64>(Value) : 0;
}

bool ReadTarget(U32 Addr, U32 NumBytes, U64* pValue) {
  if (!CDevice::Get().IsConnected()) return false;
  bool bOk = false;
  *pValue = ReadTargetInt(Addr, std::min(NumBytes, WORD_BYTES), &bOk);
  if (!bOk || NumBytes <= WORD_BYTES) return bOk;
  const U64 Second = ReadTargetInt(Addr + WORD_BYTES, WORD_BYTES, &bOk);
  *pValue = ELFAPI_GetEncoding() == 1 ? *pValue << 32 | Second : Second << 32 | *pValue;
  return bOk;
}

// Where the value stands, INVALID_ADDR if nowhere. False if a reference cannot be read.
bool FindPlace(ELF_SYM_HANDLE Sym, U32* pAddr) {
  *pAddr = ELFAPI_GetAddr(Sym);
  if (*pAddr == INVALID_ADDR || !IsReference(ELFAPI_GetType(Sym))) return true;
  U64 Target = 0;
  if (!ReadTarget(*pAddr, WORD_BYTES, &Target)) return false;
  *pAddr = static_cast<U32>(Target);
  return true;
}

bool IsScalar(ELF_SYM_HANDLE Type) {
  const U32 Tag = ELFAPI_GetTag(Type);
  const U32 NumBytes = ELFAPI_GetSize(Type);
  const U32 Encoding = ELFAPI_GetBaseEncoding(Type);
  // Half floats and complex ones are not computed.
  if (Encoding == ELF_DWARF_COMPLEX_FLOAT || (Encoding == ELF_DWARF_FLOAT && NumBytes < sizeof(float))) return false;
  return (Tag == ELF_TAG_BASE_TYPE || Tag == ELF_TAG_ENUM || Tag == ELF_TAG_POINTER) &&
         (NumBytes == 1 || NumBytes == 2 || NumBytes == 4 || NumBytes == 8);
}

// The bits of a variable or constant, as its type says.
EXPR_VALUE ValueOfBits(U64 Bits, ELF_SYM_HANDLE Sym, const QString& sPlace) {
  const ELF_SYM_HANDLE Type = TypeOfValue(Sym);
  const U32 NumBytes = ELFAPI_GetSize(Type);
  const QString sType = ELFAPI_GetTypeName(Sym);
  const bool bSigned = ELFAPI_IsSigned(Type);
  const I64 Integer = IntegerOfBits(Bits, NumBytes, bSigned);
  EXPR_VALUE Value = bSigned ? Number(Integer, NumBytes, sType, sPlace)
                             : UnsignedNumber(static_cast<U64>(Integer), NumBytes, sType, sPlace);
  if (ELFAPI_GetBaseEncoding(Type) != ELF_DWARF_FLOAT) return Value;
  Value.Real = NumBytes == sizeof(float) ? std::bit_cast<float>(static_cast<U32>(Bits)) : std::bit_cast<double>(Bits);
  Value.Integer = IntegerOf(Value.Real);
  return Value;
}

// False for what is no constant, or more than a number.
bool ReadConst(ELF_SYM_HANDLE Sym, I64* pValue) {
  const QByteArray Bytes = ELFAPI_GetConstValue(Sym);
  U64 Bits = 0;
  if (Bytes.isEmpty() || Bytes.size() > static_cast<qsizetype>(sizeof(Bits))) return false;
  std::memcpy(&Bits, Bytes.constData(), static_cast<size_t>(Bytes.size()));
  *pValue = IntegerOfBits(Bits, static_cast<U32>(Bytes.size()), true);
  return true;
}

// Of the C types that can hold the value it has the first.
EXPR_VALUE ValueOfEnumerator(ELF_SYM_HANDLE Sym) {
  I64 Value = 0;
  bool bUnsigned = false;
  if (!ELFAPI_GetEnumeratorValue(Sym, Value, bUnsigned)) return Failed(NO_VALUE);
  if (Value < 0 && bUnsigned) return UnsignedNumber(static_cast<U64>(Value), sizeof(Value), U64_TYPE);
  if (Value == static_cast<I32>(Value)) return Number(Value, WORD_BYTES, QStringLiteral("int"));
  if (Value == static_cast<U32>(Value)) return Number(Value, WORD_BYTES, QStringLiteral("uint"));
  return Number(Value, sizeof(Value), QStringLiteral("long long"));
}

EXPR_VALUE ValueOfSymbol(ELF_SYM_HANDLE Sym) {
  if (ELFAPI_IsFunction(Sym)) return Address(ELFAPI_GetAddr(Sym), QStringLiteral("void*"));
  if (ELFAPI_GetTag(Sym) == ELF_TAG_ENUMERATOR) return ValueOfEnumerator(Sym);
  I64 Const = 0;
  const bool bConst = ReadConst(Sym, &Const);
  const ELF_SYM_HANDLE Type = TypeOfValue(Sym);
  if (!IsScalar(Type)) return Failed(NO_VALUE);
  if (bConst) return ValueOfBits(static_cast<U64>(Const), Sym, QStringLiteral("const"));
  U32 Addr;
  if (!FindPlace(Sym, &Addr)) return Failed(READ_ERROR);
  if (Addr == INVALID_ADDR) return Failed(NO_VALUE);
  U64 Bits = 0;
  if (!ReadTarget(Addr, ELFAPI_GetSize(Type), &Bits)) return Failed(READ_ERROR);
  return ValueOfBits(Bits, Sym, QStringLiteral("[%1]").arg(Addr, 0, 16).toUpper());
}

EXPR_VALUE AddressOf(ELF_SYM_HANDLE Sym) {
  U32 Addr;
  if (!FindPlace(Sym, &Addr)) return Failed(READ_ERROR);
  QString sType = ELFAPI_GetTypeName(Sym);
  while (sType.endsWith(QLatin1Char('&'))) sType.chop(1);
  return Address(Addr, (sType.isEmpty() ? QStringLiteral("void") : sType) + QLatin1Char('*'));
}

// Of the types that the language has itself, 0 for any other text.
U32 SizeOfBaseType(QString sText) {
  static const QRegularExpression Filling(QStringLiteral("\\b(signed|unsigned|int)\\b"));
  static const QHash<QString, U32> Sizes = {{{}, 4},
                                            {QStringLiteral("char"), 1},
                                            {QStringLiteral("bool"), 1},
                                            {QStringLiteral("_Bool"), 1},
                                            {QStringLiteral("short"), 2},
                                            {QStringLiteral("long"), 4},
                                            {QStringLiteral("long long"), 8},
                                            {QStringLiteral("float"), 4},
                                            {QStringLiteral("double"), 8},
                                            {QStringLiteral("long double"), 8}};
  return sText.isEmpty() ? 0 : Sizes.value(sText.remove(Filling).simplified(), 0);
}

// What C takes first: a variable hides a type, but a constructor does not hide its class.
EXPR_VALUE SizeOf(QString sName) {
  static const QRegularExpression Tag(QStringLiteral("^(struct|union|class|enum) +"));
  if (const U32 NumBytes = SizeOfBaseType(sName)) return Number(NumBytes, WORD_BYTES, QStringLiteral("uint"));
  const QString sKeyword = Tag.match(sName).captured(1);
  sName.remove(Tag);
  if (!IsName(sName)) return {};
  ELF_SYM_HANDLE Sym = sKeyword.isEmpty() ? FindVariable(sName) : 0;
  if (Sym == 0 || ELFAPI_IsFunction(Sym) || ELFAPI_IsElfSymbol(Sym)) {
    const ELF_SYM_HANDLE Type = FindType(sName, sKeyword);
    if (Type != 0) Sym = Type;
  }
  if (Sym == 0) Sym = FindStaticMember(sName);
  if (Sym == 0) return Failed(UNKNOWN_SYMBOL);
  if (IsReference(ELFAPI_GetType(Sym))) Sym = TypeOfValue(Sym);
  ELF_ARRAY_INFO Array;
  const U32 NumBytes = ELFAPI_GetArrayInfo(Sym, Array) ? Array.TotalSize : ELFAPI_GetSize(Sym);
  return NumBytes != 0 ? Number(NumBytes, WORD_BYTES, QStringLiteral("uint")) : Failed(NO_VALUE);
}

EXPR_VALUE Literal(const QString& sText) {
  static const QRegularExpression IsUnsigned(QStringLiteral("^\\d"));
  bool bOk = false;
  const U64 Value = sText.toULongLong(&bOk, 0);
  if (bOk && IsUnsigned.match(sText).hasMatch()) return UnsignedNumber(Value, sizeof(Value), U64_TYPE);
  const I64 Negative = sText.toLongLong(&bOk, 0);
  if (bOk && sText.startsWith(QLatin1Char('-'))) return Number(Negative, 8, QStringLiteral("long long"));
  static const QRegularExpression Real(QStringLiteral("^-?\\d+\\.\\d*([eE][+-]?\\d+)?$"));
  if (!Real.match(sText).hasMatch()) return {};
  const double RealValue = sText.toDouble();
  EXPR_VALUE Result = Number(IntegerOf(RealValue), 8, QStringLiteral("double"));
  Result.Real = RealValue;
  Result.Bytes = LittleEndian(std::bit_cast<U64>(Result.Real), 8);
  return Result;
}

}  // namespace

EXPR_VALUE EvalOperand(const QString& sExpression) {
  const QString sText = sExpression.trimmed();
  const EXPR_VALUE Constant = Literal(sText);
  if (Constant.Outcome == EXPR_HAS_VALUE) return Constant;
  static const QRegularExpression Size(QStringLiteral("^sizeof\\s*(?:\\(([^()]*)\\)|\\s([^()]*))$"));
  if (const QRegularExpressionMatch Match = Size.match(sText); Match.hasMatch()) {
    return SizeOf((Match.captured(1) + Match.captured(2)).trimmed());
  }
  const bool bAddress = sText.startsWith(QLatin1Char('&'));
  const QString sName = bAddress ? sText.mid(1).trimmed() : sText;
  if (!IsName(sName)) return {};
  const ELF_SYM_HANDLE Sym = bAddress ? FindVariable(sName) : FindOperand(sName);
  if (Sym == 0) return Failed(UNKNOWN_SYMBOL);
  return bAddress ? AddressOf(Sym) : ValueOfSymbol(Sym);
}

QStringList ExprValueLines(const QString& sText, const EXPR_VALUE& Value) {
  const QString sRule(RULE_LENGTH, QLatin1Char('-'));
  return {sRule,
          sText,
          QStringLiteral("value as double: %1").arg(Value.Real, 0, 'g', 15),
          QStringLiteral("value as dec int: %1").arg(Value.Integer),
          QStringLiteral("value as hex int: 0x%1").arg(QString::number(static_cast<U64>(Value.Integer), 16).toUpper()),
          QStringLiteral("value bytes: ") + QString::fromLatin1(Value.Bytes.toHex(' ').toUpper()),
          QStringLiteral("data location: ") + Value.sPlace,
          QStringLiteral("data type: ") + Value.sType,
          QStringLiteral("byte size: %1").arg(Value.Bytes.size()),
          sRule};
}
