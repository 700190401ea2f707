#include "ui/generic_memory_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/text.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {

constexpr int HEX = 16;
constexpr int DETECT = 0;            // decimal, or hexadecimal behind "0x"
constexpr int FILE_CHARACTERS = 44;  // width of the file's line at the start
constexpr U32 MAX_BYTE = 0xFF;
const SETTING_GROUP DIRECTORIES = {QStringLiteral("AppData")};
const QString DIR_OPEN = QStringLiteral("DefaultDirOpen");
const QString DIR_SAVE = QStringLiteral("DefaultDirSave");
const QString DEFAULT_NAME = QStringLiteral("data.bin");
const QString FILTER = QStringLiteral("Binary File (*.bin)");

QString TitleOf(MEMORY_DIALOG_MODES Mode) {
  switch (Mode) {
    case MEMORY_DIALOG_LOAD:
      return QStringLiteral("Load Memory Data");
    case MEMORY_DIALOG_SAVE:
      return QStringLiteral("Save Memory Data");
    default:
      return QStringLiteral("Fill Memory");
  }
}

U32 NumberIn(const QLineEdit* pLine, int Base, bool* pOk = nullptr) {
  return pLine->text().trimmed().toUInt(pOk, Base);
}

// An absent line is one that is not asked for.
bool IsNumber(const QLineEdit* pLine, int Base, U32 Min, U32 Max) {
  if (pLine == nullptr) return true;
  bool bOk = false;
  const U32 Value = NumberIn(pLine, Base, &bOk);
  return bOk && Value >= Min && Value <= Max;
}

}  // namespace

CGenericMemoryDialog::CGenericMemoryDialog(QWidget* pParent, MEMORY_DIALOG_MODES Mode)
    : CDialog(pParent, QStringLiteral("GenericMemoryDialog"), TitleOf(Mode)), m_Mode(Mode) {
  auto* const pLayout = new QVBoxLayout(this);
  auto* const pForm = new QFormLayout;
  pLayout->addLayout(pForm);
  if (Mode != MEMORY_DIALOG_FILL) AddFileRow(pForm);
  m_pAddr = AddLine(pForm, QStringLiteral("&Address:"), HexText(0));
  if (Mode != MEMORY_DIALOG_LOAD) m_pSize = AddLine(pForm, QStringLiteral("&Size:"), QStringLiteral("1"));
  if (Mode == MEMORY_DIALOG_FILL) m_pValue = AddLine(pForm, QStringLiteral("Fill &Value:"), QStringLiteral("0"));
  m_pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  m_pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
  pLayout->addStretch();
  pLayout->addWidget(m_pButtons);
  connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  m_pAddr->setFocus();
  m_pAddr->selectAll();
  SetFixedToContents();
  UpdateButtons();
}

QLineEdit* CGenericMemoryDialog::AddLine(QFormLayout* pForm, const QString& sLabel, const QString& sText) {
  auto* const pLine = new QLineEdit(sText, this);
  pForm->addRow(sLabel, pLine);
  connect(pLine, &QLineEdit::textChanged, this, &CGenericMemoryDialog::UpdateButtons);
  return pLine;
}

void CGenericMemoryDialog::AddFileRow(QFormLayout* pForm) {
  auto* const pRow = new QHBoxLayout;
  m_pFile = new QLineEdit(this);
  m_pFile->setMinimumWidth(GetTextWidth(FONT_APP, QString(FILE_CHARACTERS, QLatin1Char('n'))));
  auto* const pBrowse = new QPushButton(QStringLiteral("..."), this);
  pBrowse->setAutoDefault(false);
  pBrowse->setToolTip(QStringLiteral("Choose a file"));
  pBrowse->setFixedWidth(pBrowse->sizeHint().height());
  pRow->addWidget(m_pFile, 1);
  pRow->addWidget(pBrowse);
  pForm->addRow(QStringLiteral("&File:"), pRow);
  qobject_cast<QLabel*>(pForm->labelForField(pRow))->setBuddy(m_pFile);
  connect(m_pFile, &QLineEdit::textChanged, this, &CGenericMemoryDialog::UpdateButtons);
  connect(pBrowse, &QPushButton::clicked, this, &CGenericMemoryDialog::ChooseFile);
  m_pBrowse = pBrowse;
}

void CGenericMemoryDialog::SetFile(const QString& sPath, bool bFixed) {
  m_pFile->setText(QDir::toNativeSeparators(sPath));
  m_pFile->setReadOnly(bFixed);
  m_pBrowse->setEnabled(!bFixed);
}

void CGenericMemoryDialog::SetAddr(U32 Addr) {
  m_pAddr->setText(HexText(Addr));
  m_pAddr->selectAll();
}

void CGenericMemoryDialog::SetSize(U32 NumBytes) {
  m_pSize->setText(QString::number(NumBytes));
}

QString CGenericMemoryDialog::File() const {
  return QDir::fromNativeSeparators(m_pFile->text().trimmed());
}

U32 CGenericMemoryDialog::Addr() const {
  return NumberIn(m_pAddr, HEX);
}

U32 CGenericMemoryDialog::Size() const {
  return NumberIn(m_pSize, DETECT);
}

U8 CGenericMemoryDialog::Value() const {
  return static_cast<U8>(NumberIn(m_pValue, DETECT));
}

void CGenericMemoryDialog::ChooseFile() {
  const bool bLoad = m_Mode == MEMORY_DIALOG_LOAD;
  const QString& sKey = bLoad ? DIR_OPEN : DIR_SAVE;
  const QString sDir = GetSetting(DIRECTORIES, sKey, QDir::homePath()).toString();
  const QString sPath =
      bLoad ? QFileDialog::getOpenFileName(this, QStringLiteral("Load Memory Data from..."), sDir, FILTER)
            : QFileDialog::getSaveFileName(this, QStringLiteral("Save Memory Data to..."),
                                           QDir(sDir).filePath(DEFAULT_NAME), FILTER);
  if (sPath.isEmpty()) return;
  SetSetting(DIRECTORIES, sKey, QFileInfo(sPath).absolutePath());
  SetFile(sPath);
}

bool CGenericMemoryDialog::IsValid() const {
  if (m_pFile && (File().isEmpty() || (m_Mode == MEMORY_DIALOG_LOAD && !QFileInfo(File()).isFile()))) return false;
  return IsNumber(m_pAddr, HEX, 0, UINT32_MAX) && IsNumber(m_pSize, DETECT, 1, UINT32_MAX) &&
         IsNumber(m_pValue, DETECT, 0, MAX_BYTE);
}

void CGenericMemoryDialog::UpdateButtons() {
  m_pButtons->button(QDialogButtonBox::Ok)->setEnabled(IsValid());
}
