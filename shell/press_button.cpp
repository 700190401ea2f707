#include "shell/press_button.h"

#include <QMouseEvent>
#include <QPointer>
#include <QToolButton>

namespace {

class CPressFilter : public QObject {
public:
  explicit CPressFilter(QToolButton* pButton) : QObject(pButton) { pButton->installEventFilter(this); }

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
    const QEvent::Type Type = pEvent->type();
    // The second press of two in quick succession comes as a double click.
    const bool bPress = Type == QEvent::MouseButtonPress || Type == QEvent::MouseButtonDblClick;
    if (!bPress && Type != QEvent::MouseButtonRelease) return false;
    if (static_cast<QMouseEvent*>(pEvent)->button() != Qt::LeftButton) return false;
    auto* const pButton = static_cast<QToolButton*>(pWatched);
    if (!pButton->isEnabled() || pButton->defaultAction() == nullptr) return false;
    pButton->setDown(bPress);
    if (bPress) pButton->defaultAction()->trigger();
    return true;
  }
};

}  // namespace

void ActOnPress(QToolButton* pButton) {
  new CPressFilter(pButton);
}
