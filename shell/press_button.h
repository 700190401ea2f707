#pragma once

class QToolButton;

// Makes the button trigger its action when the mouse goes down on it instead of when it is let go.
void ActOnPress(QToolButton* pButton);
