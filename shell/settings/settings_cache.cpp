#include "shell/settings/settings_cache.h"

#include <QSettings>

#include "shell/log/log.h"

namespace {

struct SETTINGS_STATE {
  QMap<QString, QVariant> Values;
  bool InMemory = false;
};

SETTINGS_STATE& State() {
  static SETTINGS_STATE TheState;
  return TheState;
}

std::unique_ptr<QSettings> OpenStore() {
  auto pStore = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Morvek"),
                                            QStringLiteral("Vexor"));
  pStore->setFallbacksEnabled(false);
  return pStore;
}

int ReportStatus(const QSettings& Store, const char* sWhat) {
  if (Store.status() == QSettings::NoError) return 0;
  LogMsg(QStringLiteral("Settings could not be %1: %2").arg(QLatin1String(sWhat), Store.fileName()),
         MSG_WARNING | MSG_TO_ALL);
  return -1;
}

// Stored values come back as text, so that a conversion has to refuse what is no value of the wanted type.
QVariant ConvertedTo(QMetaType Type, const QVariant& Value, const QVariant& Default) {
  if (Value.metaType() == Type) return Value;
  if (Type.id() == QMetaType::Bool) {
    const QString sText = Value.toString().toLower();
    if (sText == u"true" || sText == u"1") return true;
    if (sText == u"false" || sText == u"0") return false;
    return Default;
  }
  QVariant Result = Value;
  return Result.convert(Type) ? Result : Default;
}

}  // namespace

void SetSettingsInMemory(bool On) {
  State().InMemory = On;
}

int LoadSettings() {
  if (State().InMemory) return 0;
  const std::unique_ptr<QSettings> pStore = OpenStore();
  const QStringList Keys = pStore->allKeys();
  for (const QString& sKey : Keys) State().Values.insert(sKey, pStore->value(sKey));
  return ReportStatus(*pStore, "read");
}

int SaveSettings() {
  if (State().InMemory) return 0;
  const std::unique_ptr<QSettings> pStore = OpenStore();
  pStore->clear();
  const QMap<QString, QVariant>& Values = State().Values;
  for (auto it = Values.cbegin(); it != Values.cend(); ++it) pStore->setValue(it.key(), it.value());
  pStore->sync();
  return ReportStatus(*pStore, "written");
}

QString SettingPath(const SETTING_GROUP& Group, const QString& sKey) {
  QString sPath = Group.join(u'/') + u'/' + sKey;
  while (sPath.contains(u"//")) sPath.replace(QLatin1String("//"), QLatin1String("/"));
  return sPath.startsWith(u'/') ? sPath.mid(1) : sPath;
}

QVariant GetSetting(const SETTING_GROUP& Group, const QString& sKey, const QVariant& Default) {
  const auto it = State().Values.constFind(SettingPath(Group, sKey));
  if (it == State().Values.constEnd() || !it->isValid()) return Default;
  return Default.isValid() ? ConvertedTo(Default.metaType(), *it, Default) : *it;
}

void SetSetting(const SETTING_GROUP& Group, const QString& sKey, const QVariant& Value) {
  State().Values.insert(SettingPath(Group, sKey), Value);
}

bool HasSetting(const SETTING_GROUP& Group, const QString& sKey) {
  return State().Values.contains(SettingPath(Group, sKey));
}

QStringList GetSettingKeys(const SETTING_GROUP& Group) {
  const QString sPrefix = SettingPath(Group, QString());
  QStringList Keys;
  const QMap<QString, QVariant>& Values = State().Values;
  for (auto it = Values.lowerBound(sPrefix); it != Values.cend() && it.key().startsWith(sPrefix); ++it) {
    const QString sKey = it.key().mid(sPrefix.size());
    if (!sKey.contains(u'/')) Keys.append(sKey);
  }
  return Keys;
}

void RemoveSetting(const QString& sFullKey) {
  State().Values.remove(SettingPath({}, sFullKey));
}
