#pragma once

#include <QHash>
#include <QString>

#include "base/addr_range.h"
#include "ui/windows/line_expansions.h"

// What instruction rows say: address, encoding and the disassembler's text, made once for each address.
class CInstructionTexts {
public:
  // Whether the text holds the encoding; drops the texts when that changes.
  void SetEncodingsShown(bool bShown);
  void Clear() { m_Texts.clear(); }
  // The rows for ascending addresses.
  static INSTRUCTION_ROWS RowsOf(const QAddrList& Addrs);
  // The rows for ascending addresses, with their texts made in that order, which is the one in which the disassembler
  // follows conditional blocks.
  INSTRUCTION_ROWS Rows(const QAddrList& Addrs);
  QString Text(U32 Addr);
  // Column from which on mnemonics stand.
  int MnemonicColumn() const;

private:
  QString Make(U32 Addr) const;

  QHash<U32, QString> m_Texts;
  bool m_bEncodings = true;
};
