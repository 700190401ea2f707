#pragma once

#include <QColor>

#include "shell/dialogs/appearance_box.h"

// Shows and edits a list of colours (COLOR_ID). A colour chosen here is kept in the settings.
class CColorBox : public CAppearanceBox {
  Q_OBJECT

public:
  CColorBox(const QList<U32>& IDs, QWidget* pParent);

protected:
  bool IsModified(U32 ID) const override;
  void ShowValue(U32 ID, QPushButton* pField) const override;
  void Choose(U32 ID) override;
  void Reset(U32 ID) override;
};
