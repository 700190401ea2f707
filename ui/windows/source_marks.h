#pragma once

#include "ui/windows/side_bar.h"

class CPcHighlights;
class CSourceEditor;

// SIDE_BAR_MARKS of a row of the editor: code, breakpoints, and where the target stands.
unsigned MarksOfRow(const CSourceEditor& Editor, const CPcHighlights& Pc, int Row);
