#include "ui/warnings_dialog.h"

#include <QDialogButtonBox>
#include <QListWidget>

#include "shell/look/look.h"

namespace {

constexpr int DIALOG_WIDTH = 520;  // pixels
constexpr int ICON_SIZE = 32;      // pixels

std::function<bool(const QString&, const QStringList&)>& Responder() {
  static std::function<bool(const QString&, const QStringList&)> Instance;
  return Instance;
}

}  // namespace

CWarningsDialog::CWarningsDialog(const QString& sTitle, const QString& sText, const QStringList& Warnings,
                                 const QString& sNote)
    : CDialog(QApplication::activeWindow(), QStringLiteral("WarningsDialog"), sTitle) {
  setMinimumWidth(DIALOG_WIDTH);
  auto* const pLayout = new QVBoxLayout(this);
  auto* const pHead = new QHBoxLayout;
  auto* const pIcon = new QLabel(this);
  pIcon->setPixmap(GetIcon(QStringLiteral("exclamation.png")).pixmap(ICON_SIZE));
  pHead->addWidget(pIcon);
  pHead->addWidget(new QLabel(sText, this), 1);
  pLayout->addLayout(pHead);
  if (!Warnings.isEmpty()) {
    auto* const pList = new QListWidget(this);
    pList->addItems(Warnings);
    pList->setWordWrap(true);
    pList->setSelectionMode(QAbstractItemView::NoSelection);
    pLayout->addWidget(pList);
  }
  if (!sNote.isEmpty()) pLayout->addWidget(new QLabel(sNote, this));
}

bool CWarningsDialog::ShowList(const QString& sTitle, const QString& sText, const QStringList& Warnings,
                               const QString& sNote, const std::function<void()>& OnEdit) {
  if (Responder()) return Responder()(sTitle, QStringList{sText} + Warnings + QStringList{sNote});
  CWarningsDialog Dialog(sTitle, sText, Warnings, sNote);
  QDialogButtonBox Buttons(&Dialog);
  QPushButton* const pEdit = Buttons.addButton(QStringLiteral("&Edit"), QDialogButtonBox::ActionRole);
  QPushButton* const pIgnore = Buttons.addButton(QStringLiteral("&Ignore"), QDialogButtonBox::AcceptRole);
  Buttons.addButton(QDialogButtonBox::Cancel);
  pIgnore->setDefault(true);
  connect(pEdit, &QPushButton::clicked, &Dialog, OnEdit);
  connect(&Buttons, &QDialogButtonBox::accepted, &Dialog, &QDialog::accept);
  connect(&Buttons, &QDialogButtonBox::rejected, &Dialog, &QDialog::reject);
  Dialog.layout()->addWidget(&Buttons);
  return Dialog.exec() == QDialog::Accepted;
}

void CWarningsDialog::ShowText(const QString& sTitle, const QString& sText, const QString& sNote) {
  if (Responder()) {
    Responder()(sTitle, {sText, sNote});
    return;
  }
  CWarningsDialog Dialog(sTitle, sText, {}, sNote);
  QDialogButtonBox Buttons(QDialogButtonBox::Ok, &Dialog);
  connect(&Buttons, &QDialogButtonBox::accepted, &Dialog, &QDialog::accept);
  Dialog.layout()->addWidget(&Buttons);
  Dialog.exec();
}

void CWarningsDialog::SetResponder(std::function<bool(const QString&, const QStringList&)> NewResponder) {
  Responder() = std::move(NewResponder);
}
