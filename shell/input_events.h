#pragma once

#include <QEvent>

// Keys, clicks, wheel, touch and drops: what a user does, in contrast to what windows and timers bring.
bool IsUserInput(QEvent::Type Type);
