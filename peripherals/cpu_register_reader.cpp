#include "peripherals/cpu_register_reader.h"

#include <rapidxml/rapidxml.hpp>

namespace {

using NODE = rapidxml::xml_node<char>;

constexpr U32 MAX_REGISTER_SIZE = 64;  // bits
constexpr int MAX_DEPTH = 256;         // of elements; the parser's stack grows with it

bool IsTooDeep(const QByteArray& Text) {
  int Depth = 0;
  for (qsizetype i = 0; i + 1 < Text.size(); ++i) {
    const char Next = Text[i + 1];
    if (Text[i] == '<' && Next != '/' && Next != '!' && Next != '?') ++Depth;
    if ((Text[i] == '<' && Next == '/') || (Text[i] == '/' && Next == '>')) --Depth;
    if (Depth > MAX_DEPTH) return true;
  }
  return false;
}

QString ValueOf(const NODE& Parent, const char* sName) {
  const NODE* pChild = Parent.first_node(sName);
  return pChild != nullptr
             ? QString::fromUtf8(pChild->value(), static_cast<qsizetype>(pChild->value_size())).simplified()
             : QString();
}

bool NumberOf(const NODE& Parent, const char* sName, U32& Value) {
  bool bOk = false;
  const U64 Number = ParseSvdNumber(ValueOf(Parent, sName), &bOk);
  if (bOk) Value = static_cast<U32>(std::min<U64>(Number, 0xFFFFFFFFu));
  return bOk;
}

// What a register inherits from its group, and both state with the same elements.
void ReadCommon(const NODE& Node, CPU_REGISTER& Register) {
  U32 Number = 0;
  if (NumberOf(Node, "size", Number) && Number > 0 && Number <= MAX_REGISTER_SIZE) Register.Size = Number;
  if (NumberOf(Node, "cpumodedependent", Number)) Register.bCpuModeDependent = Number != 0;
}

void ReadGroup(const NODE& Group, QList<CPU_REGISTER>& aRegister) {
  CPU_REGISTER Common;
  Common.sGroup = ValueOf(Group, "name");
  ReadCommon(Group, Common);
  const NODE* pRegisters = Group.first_node("registers");
  for (const NODE* pNode = pRegisters != nullptr ? pRegisters->first_node("register") : nullptr; pNode != nullptr;
       pNode = pNode->next_sibling("register")) {
    CPU_REGISTER Register = Common;
    ReadCommon(*pNode, Register);
    Register.sName = ValueOf(*pNode, "name");
    Register.sAliasName = ValueOf(*pNode, "aliasName");
    Register.sDescription = ValueOf(*pNode, "description");
    Register.sId = ValueOf(*pNode, "id");
    NumberOf(*pNode, "index", Register.VNodeRegIdx);
    if (!Register.sName.isEmpty()) aRegister.append(Register);
  }
}

}  // namespace

U64 ParseSvdNumber(QString sText, bool* pOk) {
  sText = sText.trimmed().remove(QLatin1Char('+'));
  U64 Factor = 1;
  const bool bHex = sText.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
  const qsizetype Suffix = sText.isEmpty() || bHex ? -1 : QStringLiteral("kmgt").indexOf(sText.back().toLower());
  if (Suffix >= 0) {
    sText.chop(1);
    for (qsizetype i = 0; i <= Suffix; ++i) Factor *= 1000;
  }
  const bool bBinary = sText.startsWith(QLatin1Char('#'));
  bool bOk = false;
  const U64 Number = bBinary ? sText.mid(1).toULongLong(&bOk, 2) : sText.toULongLong(&bOk, 0);
  if (pOk != nullptr) *pOk = bOk;
  return bOk ? Number * Factor : 0;
}

QString ReadCpuRegisters(const QByteArray& Text, QList<CPU_REGISTER>& aRegister) {
  aRegister.clear();
  if (IsTooDeep(Text)) return QStringLiteral("elements are nested too deeply");
  QByteArray Buffer = Text;
  Buffer.append('\0');
  rapidxml::xml_document<char> Document;
  try {
    Document.parse<rapidxml::parse_default>(Buffer.data());
  } catch (const rapidxml::parse_error& Error) {
    return QStringLiteral("not well-formed: %1 at byte %2")
        .arg(QString::fromLatin1(Error.what()))
        .arg(Error.where<char>() - Buffer.data());
  }
  const NODE* pRoot = Document.first_node("cpu", 0, false);
  if (pRoot == nullptr) return QStringLiteral("the root element is not \"cpu\"");
  const NODE* pGroups = pRoot->first_node("groups");
  for (const NODE* pGroup = pGroups != nullptr ? pGroups->first_node("group") : nullptr; pGroup != nullptr;
       pGroup = pGroup->next_sibling("group")) {
    if (pGroup->first_attribute("derivedFrom") == nullptr) ReadGroup(*pGroup, aRegister);
  }
  return QString();
}
