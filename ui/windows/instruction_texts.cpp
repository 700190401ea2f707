#include "ui/windows/instruction_texts.h"

#include "base/text.h"
#include "core/vcore.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int ENCODING_WIDTH = 9;  // columns
constexpr int COMMENT_COLUMN = 40;
constexpr int HEX_BLOCK = 4;  // digits
constexpr int MNEMONIC_COLUMN = 10;
constexpr int MNEMONIC_COLUMN_WITH_ENCODINGS = 20;

QString WithCommentInColumn(QString sText) {
  const qsizetype Comment = sText.indexOf(QLatin1Char(';'));
  if (Comment < 0) return sText;
  return sText.insert(Comment, QString(std::max<qsizetype>(1, COMMENT_COLUMN - Comment), QLatin1Char(' ')));
}

}  // namespace

void CInstructionTexts::SetEncodingsShown(bool bShown) {
  if (bShown != m_bEncodings) m_Texts.clear();
  m_bEncodings = bShown;
}

int CInstructionTexts::MnemonicColumn() const {
  return m_bEncodings ? MNEMONIC_COLUMN_WITH_ENCODINGS : MNEMONIC_COLUMN;
}

INSTRUCTION_ROWS CInstructionTexts::RowsOf(const QAddrList& Addrs) {
  INSTRUCTION_ROWS Result;
  const U32 MaxLength = VCore::GetInfo().MaxInstLen;
  for (const U32 Addr : Addrs) {
    INSTRUCTION_ROW Row{Addr, std::max(VCore::GetInstLength(Addr), 1u)};
    if (!Result.empty()) Row.Group = Result.back().Group + (Addr - Result.back().Addr > MaxLength ? 1 : 0);
    Result.push_back(Row);
  }
  return Result;
}

INSTRUCTION_ROWS CInstructionTexts::Rows(const QAddrList& Addrs) {
  for (const U32 Addr : Addrs) m_Texts[Addr] = Make(Addr);
  return RowsOf(Addrs);
}

QString CInstructionTexts::Text(U32 Addr) {
  const auto Known = m_Texts.constFind(Addr);
  if (Known != m_Texts.constEnd()) return *Known;
  return m_Texts[Addr] = Make(Addr);
}

QString CInstructionTexts::Make(U32 Addr) const {
  QString sResult = AddrText(Addr);
  if (GetVarValue(PREF_SHOW_HEX_BLOCKS) != 0) sResult.insert(HEX_BLOCK, QLatin1Char(' '));
  if (m_bEncodings) {
    QString sEncoding;
    VCore::GetCodeHex(Addr, sEncoding);
    sResult += QStringLiteral("   ") + sEncoding.leftJustified(ENCODING_WIDTH);
  }
  QString sText;
  VCore::Disassemble(Addr, sText);
  return sResult + QStringLiteral("  ") + WithCommentInColumn(sText);
}
