#pragma once

#include "ui/dialog.h"

// Name, version, build date, licence, and what the program runs with.
class CAboutDialog : public CDialog {
  Q_OBJECT

public:
  struct FACTS {
    QString sTitle;    // name and version
    QString sBuilt;    // day, ISO form
    QString sLibrary;  // version and path of the probe library; empty when none is loaded
  };
  CAboutDialog(QWidget* pParent, const FACTS& Facts);
};
