#pragma once
// Everything that the program remembers between two runs, as one in-memory map from path to value. Reads and writes
// touch the map only; the store is read once at the start and replaced once at the end. Main thread.

#include <QStringList>
#include <QVariant>

// A group is the list of path parts in front of a key, such as {"AppData", "MainWindow"}.
using SETTING_GROUP = QStringList;

// On: LoadSettings and SaveSettings do nothing, as in a batch session. Must be called before LoadSettings.
void SetSettingsInMemory(bool On);
bool AreSettingsInMemory();

// Replaces the cache's content with the store's. Returns 0, or -1 with a console line when the store could not be read: a
// damaged one is renamed to "<file>.damaged" and leaves the cache empty, so that defaults apply.
int LoadSettings();
// Replaces the store's content with the cache. Returns 0, or -1 (with a console line) when it could not be written.
int SaveSettings();

// The cached value, converted to the type of Default where that is valid; Default when the key is missing or its value
// can't be converted.
QVariant GetSetting(const SETTING_GROUP& Group, const QString& sKey, const QVariant& Default = QVariant());
void SetSetting(const SETTING_GROUP& Group, const QString& sKey, const QVariant& Value);
bool HasSetting(const SETTING_GROUP& Group, const QString& sKey);
// Keys directly below a group, sorted.
QStringList GetSettingKeys(const SETTING_GROUP& Group);
// Drops a key given by its whole path.
void RemoveSetting(const QString& sFullKey);
// Whole path of a key.
QString SettingPath(const SETTING_GROUP& Group, const QString& sKey);
