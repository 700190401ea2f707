#pragma once

#include "shell/dialogs/appearance_box.h"

// Shows and edits a list of fonts (FONT_ID). A font chosen here is kept in the settings.
class CFontBox : public CAppearanceBox {
  Q_OBJECT

public:
  CFontBox(const QList<U32>& IDs, QWidget* pParent);

protected:
  bool IsModified(U32 ID) const override;
  void ShowValue(U32 ID, QPushButton* pField) const override;
  void Choose(U32 ID) override;
  void Reset(U32 ID) override;

private:
  void Apply(U32 ID, const QFont& Font);
};
