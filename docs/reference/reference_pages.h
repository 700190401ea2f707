#pragma once
// The pages of the user's guide that are made from the tables of actions, variables, colours and fonts, as Markdown.

#include <QString>

// Every command that the console and scripts know, by group, with its arguments, key and other spelling; below them the
// named constants.
QString CommandsPage();
// Every key of the table, global ones first and then window by window.
QString KeysPage();
// The variables, colours and fonts with their values and defaults.
QString SettingsPage();
