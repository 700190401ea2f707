#pragma once
// The context menus of the source window: entries of the action table, for a place.

class CPopupMenu;
class CSourceEditor;

// Of the text.
void AddSourceEntries(CPopupMenu& Menu, CSourceEditor& Editor);
// Of the margin.
void AddMarginEntries(CPopupMenu& Menu);
// Of a tab.
void AddTabEntries(CPopupMenu& Menu);
// Which actions of the source window make sense at the cursor.
void UpdateSourceActions(const CSourceEditor& Editor, bool bHasText);
