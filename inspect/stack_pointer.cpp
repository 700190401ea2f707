#include "inspect/stack_pointer.h"

#include <QRegularExpression>

namespace {

constexpr U32 CORE_REG_BYTES = 4;
constexpr U32 DOUBLE_REG_BYTES = 8;

// Number of registers in a list such as "R4-R7, LR".
U32 CountRegisters(const QString& sList) {
  static const QRegularExpression Span(QStringLiteral("^[RSD](\\d+)-[RSD](\\d+)$"));
  U32 Count = 0;
  for (const QString& sItem : sList.split(QLatin1Char(','))) {
    const QRegularExpressionMatch Match = Span.match(sItem.trimmed());
    Count += Match.hasMatch() ? Match.captured(2).toUInt() - Match.captured(1).toUInt() + 1 : 1;
  }
  return Count;
}

}  // namespace

SP_CHANGE ChangeOfStackPointer(const QString& sText) {
  static const QRegularExpression Push(QStringLiteral("^V?PUSH\\S*\\s+\\{([^}]*)\\}"));
  static const QRegularExpression Sub(QStringLiteral("^SUBW?\\S*\\s+SP, SP, (?:#(0x[0-9A-F]+)|\\w)"));
  static const QRegularExpression Move(QStringLiteral("^MOV\\S*\\s+SP, R(\\d+)"));
  SP_CHANGE Change;
  if (const auto Match = Push.match(sText); Match.hasMatch()) {
    const QString sList = Match.captured(1);
    Change.NumBytes = CountRegisters(sList) * (sList.startsWith(QLatin1Char('D')) ? DOUBLE_REG_BYTES : CORE_REG_BYTES);
  } else if (const auto SubMatch = Sub.match(sText); SubMatch.hasMatch()) {
    Change.NumBytes = SubMatch.captured(1).toUInt(nullptr, 16);
    Change.bUnknown = SubMatch.captured(1).isEmpty();
  } else if (const auto MoveMatch = Move.match(sText); MoveMatch.hasMatch()) {
    Change.Source = MoveMatch.captured(1).toInt();
  }
  return Change;
}
