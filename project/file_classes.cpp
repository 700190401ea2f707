#include "project/file_classes.h"

#include <QFile>

namespace {

constexpr const char* PROJECT_FILES = "*.vdebug";
constexpr const char* SOURCE_FILES = "*.h *.c *.hpp *.cpp *.s";
constexpr const char* DATA_FILES = "*.bin *.mot *.srec *.hex *.elf *.out *.axf";
constexpr const char* LOAD_FILES = "*.mot *.srec *.hex *.elf *.out *.axf";
constexpr const char* HEX_FILES = "*.mot *.srec *.hex";
constexpr const char* SVD_FILES = "*.svd *.xml";
constexpr const char* DOC_FILES = "*.txt *.pdf *.html";
constexpr const char* PLUGIN_FILES = "*.dll *.so *.dylib";
constexpr const char* ELF_FILES = "*.elf *.out *.axf";

constexpr char ELF_START[12] = {0x7F, 'E', 'L', 'F', 1, 1, 1, 0, 0, 0, 0, 0};

struct FILE_TYPE {
  const char* sSuffix;
  const char* sName;
};
constexpr FILE_TYPE FILE_TYPES[] = {
    {"elf", "Executable and Linkable Format File"},
    {"out", "Executable and Linkable Format File"},
    {"axf", "Executable and Linkable Format File"},
    {"bin", "Binary Data FIle"},
    {"mot", "Motorola S-Record File"},
    {"hex", "Intel Hexadecimal File"},
    {"srec", "S-Record File"},
    {"h", "C Header File"},
    {"c", "C Source File"},
    {"s", "Assembly Script"},
    {"hpp", "C++ Header File"},
    {"cpp", "C++ Source File"},
    {"svd", "System View Descr. File"},
    {"xml", "Xml File"},
    {"vnode", "V-Node Script file"},
};

QString SuffixOf(const QString& sPath) {
  const QString sName = sPath.section(QLatin1Char('/'), -1);
  const qsizetype Dot = sName.lastIndexOf(QLatin1Char('.'));
  return Dot < 0 ? QString() : sName.mid(Dot + 1).toLower();
}

bool IsInClass(const QString& sPath, const char* sList) {
  const QString sSuffix = SuffixOf(sPath);
  return !sSuffix.isEmpty() &&
         QString::fromLatin1(sList).split(QLatin1Char(' ')).contains(QLatin1String("*.") + sSuffix);
}

QString Filter(const char* sName, const char* sList) {
  return QStringLiteral("%1 (%2)").arg(QLatin1String(sName), QLatin1String(sList));
}

}  // namespace

bool IsProjectFile(const QString& sPath) {
  return IsInClass(sPath, PROJECT_FILES);
}
bool IsSourceFile(const QString& sPath) {
  return IsInClass(sPath, SOURCE_FILES);
}
bool IsDataFile(const QString& sPath) {
  return IsInClass(sPath, DATA_FILES);
}
bool IsHexFile(const QString& sPath) {
  return IsInClass(sPath, HEX_FILES);
}
bool IsSvdFile(const QString& sPath) {
  return IsInClass(sPath, SVD_FILES);
}
bool IsDocFile(const QString& sPath) {
  return IsInClass(sPath, DOC_FILES);
}
bool IsPluginFile(const QString& sPath) {
  return IsInClass(sPath, PLUGIN_FILES);
}
bool IsBinFile(const QString& sPath) {
  return SuffixOf(sPath) == QLatin1String("bin");
}

bool IsElfFile(const QString& sPath) {
  if (sPath.isEmpty()) return false;
  if (IsInClass(sPath, ELF_FILES)) return true;
  if (!SuffixOf(sPath).isEmpty()) return false;
  QFile File(sPath);
  return File.open(QIODevice::ReadOnly) && File.read(sizeof ELF_START) == QByteArray(ELF_START, sizeof ELF_START);
}

QString OpenDialogFilter() {
  return QStringList{Filter("Project Files", PROJECT_FILES), Filter("Data Files", DATA_FILES),
                     Filter("Source Files", SOURCE_FILES), QStringLiteral("All Files (*)")}
      .join(QLatin1String(";;"));
}

QString LoadDialogFilter() {
  return Filter("Data Files", LOAD_FILES);
}
QString ProjectDialogFilter() {
  return Filter("Project Files", PROJECT_FILES);
}

QString FileTypeName(const QString& sPath) {
  const QString sSuffix = SuffixOf(sPath);
  for (const FILE_TYPE& Type : FILE_TYPES) {
    if (sSuffix == QLatin1String(Type.sSuffix)) return QString::fromLatin1(Type.sName);
  }
  return {};
}
