#include "shell/dialogs/about_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {

constexpr int ICON_SIZE = 32;   // pixels
constexpr int COLUMN_GAP = 16;  // pixels

QLabel* MakeLabel(const QString& sText) {
  auto* const pLabel = new QLabel(sText);
  pLabel->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  pLabel->setFocusPolicy(Qt::NoFocus);
  return pLabel;
}

}  // namespace

CAboutDialog::CAboutDialog(QWidget* pParent, const FACTS& Facts)
    : CDialog(pParent, QStringLiteral("AboutDialog"), QStringLiteral("About Vexor")) {
  auto* const pLayout = new QGridLayout(this);
  pLayout->setHorizontalSpacing(COLUMN_GAP);
  auto* const pIcon = new QLabel;
  pIcon->setPixmap(GetIcon(QStringLiteral("magnifier-32.png")).pixmap(ICON_SIZE));
  pLayout->addWidget(pIcon, 0, 0, Qt::AlignTop);
  QLabel* const pTitle = MakeLabel(Facts.sTitle);
  QFont TitleFont = GetFont(FONT_APP);
  TitleFont.setBold(true);
  pTitle->setFont(TitleFont);
  pLayout->addWidget(pTitle, 0, 1, 1, 2, Qt::AlignVCenter);
  const QString aRows[][2] = {
      {QStringLiteral("Built on"), Facts.sBuilt},
      {QStringLiteral("V-Node library"), Facts.sLibrary.isEmpty() ? QStringLiteral("not loaded") : Facts.sLibrary},
      {QStringLiteral("Toolkit"), QStringLiteral("Qt ") + QLatin1String(qVersion())},
      {QStringLiteral("Licence"), QStringLiteral("Apache License, Version 2.0")},
  };
  int Row = 1;
  for (const auto& aRow : aRows) {
    pLayout->addWidget(new QLabel(aRow[0]), Row, 1, Qt::AlignTop);
    pLayout->addWidget(MakeLabel(aRow[1]), Row++, 2);
  }
  auto* const pButtons = new QDialogButtonBox(QDialogButtonBox::Ok);
  connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  pLayout->addWidget(pButtons, Row, 0, 1, 3);
  pLayout->setColumnStretch(2, 1);
  SetFixedToContents();
}
