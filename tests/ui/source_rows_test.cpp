#include <QTest>
#include "core/vcore.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "shell/settings/settings_cache.h"
#include "ui/windows/source_rows.h"
using namespace Qt::StringLiterals;
namespace {
constexpr U32 CORTEX_M4 = 0x0E0000FF;
const QString EXAMPLE = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/");
}
class CSourceRowsTest : public QObject {
  Q_OBJECT
private Q_SLOTS:
  void dump() {
    SetSettingsInMemory(true);
    VCore::Init({CORTEX_M4, 0, 0}, {});
    CFileFinder::Get()->SetProjectPath(EXAMPLE + u"traffic_light.vdebug"_s);
    QCOMPARE(ELFAPI_Load(EXAMPLE + u"traffic_light.elf"_s), 0);
    const U32 File = ELFAPI_ParseSrcLoc(u"main.c:38"_s).File;
    for (U32 Line = 15; Line < 55; ++Line) {
      QString s = QString::number(Line) + u": "_s;
      for (U32 A : ELFAPI_GetAddrsOfLoc({File, Line, 0})) s += QString::number(A,16) + (VCore::IsInstruction(A)?u"i "_s:u"- "_s);
      s += u" | "_s;
      for (U32 A : ELFAPI_GetLocBlocks({File, Line, 0})) s += QString::number(A,16) + u" "_s;
      s += u" | "_s + QString::number(ELFAPI_IsLocExecutable({File, Line, 0}));
      qInfo("%s", qPrintable(s));
    }
  }
};
QTEST_MAIN(CSourceRowsTest)
#include "source_rows_test.moc"
