#include "program/database/name_index.h"

#include <QStringList>

#include "program/database/database.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

// Names of a damaged file may be parts of each other.
constexpr qsizetype MAX_CHARS = 1 << 26;       // of different names
constexpr qsizetype MAX_READ_CHARS = 1 << 30;  // of all symbols
const QString SCOPE_MARK = QStringLiteral("::");
const QString OPERATOR = QStringLiteral("operator");
const QChar TEMPLATE_MARK = u'<';

bool IsNameChar(QChar Char) {
  return Char.isLetterOrNumber() || Char == u'_';
}

// Length of the "operator<<" and the like that begins here, 0 for anything else: its marks are no brackets.
qsizetype OperatorLength(const QString& sText, qsizetype At) {
  if (!QStringView(sText).mid(At).startsWith(OPERATOR) || (At > 0 && IsNameChar(sText[At - 1]))) return 0;
  qsizetype End = At + OPERATOR.size();
  if (End < sText.size() && IsNameChar(sText[End])) return 0;
  while (End < sText.size() && QStringView(u"<>=-").contains(sText[End])) ++End;
  return End - At;
}

// Position of the last "::" outside of template arguments and parameter lists; -1 if there is none.
qsizetype LastScopeMark(const QString& sText) {
  qsizetype Last = -1;
  int Depth = 0;
  for (qsizetype i = 0; i < sText.size(); ++i) {
    if (const qsizetype Length = OperatorLength(sText, i)) {
      i += Length - 1;
    } else if (sText[i] == u'<' || sText[i] == u'(') {
      ++Depth;
    } else if (sText[i] == u'>' || sText[i] == u')') {
      --Depth;
    } else if (Depth == 0 && QStringView(sText).mid(i).startsWith(SCOPE_MARK)) {
      Last = i;
    }
  }
  return Last;
}

QString IndexedName(ELF_SYM_HANDLE Sym) {
  const bool bIsNamespace = ELF_GetHandleKind(Sym) == ELF_HANDLE_DWARF && ELF_GetTag(Sym) == ELF_TAG_NAMESPACE;
  return NameWithoutBlanks(bIsNamespace ? ELFAPI_GetQualifiedName(Sym) : QString::fromUtf8(ELF_GetName(Sym)));
}

const ELF_SYM_LIST& ListOf(const QHash<QString, ELF_SYM_LIST>& Lists, const QString& sKey) {
  static const ELF_SYM_LIST None;
  const auto it = Lists.constFind(sKey);
  return it == Lists.cend() ? None : it.value();
}

// "model::Ring" of "model::Ring<int, 2>".
QString WithoutArguments(const QString& sName) {
  if (!sName.contains(u'<')) return sName;
  QString sResult;
  int Depth = 0;
  for (qsizetype i = 0; i < sName.size(); ++i) {
    const qsizetype Length = std::max<qsizetype>(OperatorLength(sName, i), 1);
    if (Length == 1 && sName[i] == u'<') ++Depth;
    if (Depth == 0) sResult += QStringView(sName).mid(i, Length);
    if (Length == 1 && sName[i] == u'>' && Depth > 0) --Depth;
    i += Length - 1;
  }
  return sResult;
}

// One that stands in the scope around its enumeration, too.
bool IsUnscopedEnumerator(ELF_SYM_HANDLE Sym) {
  if (ELF_GetHandleKind(Sym) != ELF_HANDLE_DWARF || ELF_GetTag(Sym) != ELF_TAG_ENUMERATOR) return false;
  const ELF_SYM_HANDLE Enumeration = ELF_GetParent(Sym);
  I64 IsClass = 0;
  ELF_GetAttrValue(Enumeration, ELF_ATTR_ENUM_CLASS, &IsClass);
  return IsClass == 0 && ELF_GetName(Enumeration) != nullptr;
}

// "A::B::C", "B::C" and "C".
QStringList EndsOf(const QString& sScope) {
  QStringList Ends;
  SYMBOL_NAME Owner(sScope);
  for (QString sEnd = Owner.sName; !sEnd.isEmpty(); sEnd = Owner.sName + SCOPE_MARK + sEnd) {
    Ends.append(sEnd);
    if (Owner.sOwner.isEmpty()) break;
    Owner = SYMBOL_NAME(Owner.sOwner);
  }
  return Ends;
}

}  // namespace

QString NameWithoutBlanks(const QString& sName) {
  if (!sName.contains(u'<')) return sName;
  QString sResult;
  for (qsizetype i = 0; i < sName.size(); ++i) {
    const bool bBetweenWords = i > 0 && i + 1 < sName.size() && IsNameChar(sName[i - 1]) && IsNameChar(sName[i + 1]);
    if (sName[i] != u' ' || bBetweenWords) sResult += sName[i];
  }
  return sResult;
}

SYMBOL_NAME::SYMBOL_NAME(const QString& sText) : sFull(NameWithoutBlanks(sText)), sName(sFull) {
  const qsizetype Mark = sFull.contains(SCOPE_MARK) ? LastScopeMark(sFull) : -1;
  if (Mark < 0) return;
  sOwner = Mark > 0 ? sFull.left(Mark) : SCOPE_MARK;
  sName = sFull.mid(Mark + SCOPE_MARK.size());
  if (sFull.startsWith(SCOPE_MARK)) sFull.remove(0, SCOPE_MARK.size());
}

void CNameIndex::Clear() {
  m_ByName.reset();
  m_ByTemplate.clear();
  m_ByOwner.clear();
  m_Namesakes.clear();
}

void CNameIndex::Build(const ELF_SYM_LIST& Symbols) {
  m_ByName.emplace();
  qsizetype NumChars = 0, NumRead = 0;
  const auto Enter = [&NumChars](LISTS& Lists, const QString& sKey, ELF_SYM_HANDLE Sym) {
    if (!Lists.contains(sKey) && (NumChars += sKey.size()) > MAX_CHARS) return;
    Lists[sKey].append(Sym);
  };
  for (const ELF_SYM_HANDLE Sym : Symbols) {
    const QString sKey = IndexedName(Sym);
    NumRead += sKey.size();
    if (NumRead > MAX_READ_CHARS) break;
    if (sKey.isEmpty()) continue;
    Enter(*m_ByName, sKey, Sym);
    const qsizetype Arguments = sKey.indexOf(TEMPLATE_MARK, OperatorLength(sKey, 0));
    if (Arguments > 0) Enter(m_ByTemplate, sKey.left(Arguments) + TEMPLATE_MARK, Sym);
  }
}

const ELF_SYM_LIST& CNameIndex::FindWhole(const QString& sName, const ELF_SYM_LIST& Symbols) {
  if (!m_ByName) Build(Symbols);
  return ListOf(*m_ByName, sName);
}

const ELF_SYM_LIST& CNameIndex::Find(const SYMBOL_NAME& Wanted, const ELF_SYM_LIST& Symbols) {
  if (!m_ByName) Build(Symbols);
  const ELF_SYM_LIST& Found = FindIn(*m_ByName, Wanted.sName, Wanted.sOwner);
  return Found.isEmpty() ? FindIn(m_ByTemplate, Wanted.sName + TEMPLATE_MARK, Wanted.sOwner) : Found;
}

ELF_SYM_HANDLE CNameIndex::Nearest(const ELF_SYM_LIST& Found, const SCOPE& Scope) {
  if (Found.size() < 2) return Found.value(0, 0);
  auto it = m_Namesakes.constFind(Found.constData());
  if (it == m_Namesakes.cend()) it = m_Namesakes.insert(Found.constData(), CNamesakes(Found));
  return it->SeenFrom(Scope);
}

const ELF_SYM_LIST& CNameIndex::FindIn(const LISTS& Lists, const QString& sName, const QString& sOwner) {
  const ELF_SYM_LIST& Named = ListOf(Lists, sName);
  return sOwner.isEmpty() || Named.isEmpty() ? Named : ListOf(OwnersOf(sName, Named), sOwner);
}

CNameIndex::LISTS& CNameIndex::OwnersOf(const QString& sName, const ELF_SYM_LIST& Named) {
  const auto itKnown = m_ByOwner.find(sName);
  if (itKnown != m_ByOwner.end()) return itKnown.value();
  LISTS& Owners = m_ByOwner[sName];
  for (const ELF_SYM_HANDLE Sym : Named) {
    QStringList Scopes = {ELFAPI_GetScopeName(Sym), ScopeNameWithoutInline(Sym)};
    if (IsUnscopedEnumerator(Sym)) Scopes << SYMBOL_NAME(Scopes[0]).sOwner << SYMBOL_NAME(Scopes[1]).sOwner;
    for (const QString& sScope : QStringList(Scopes)) Scopes << WithoutArguments(sScope);
    Scopes.removeDuplicates();
    QStringList Ends;
    for (const QString& sScope : Scopes) Ends << EndsOf(sScope) << SCOPE_MARK + NameWithoutBlanks(sScope);
    Ends.removeDuplicates();
    for (const QString& sEnd : Ends) Owners[sEnd].append(Sym);
  }
  return Owners;
}
