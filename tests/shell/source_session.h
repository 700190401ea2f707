#pragma once
// A session on a copy of the example in a folder of its own, driven in the source view by mouse and keys.

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QTabBar>
#include <QTemporaryDir>

#include "../dialogs/drive.h"
#include "device/device_context.h"
#include "frame.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "tests/common/write_file.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

class CSourceSession {
public:
  // Null when the example does not come up.
  CMainWindow* Start() {
    const QString sExamples = QStringLiteral(VEXOR_SOURCE_DIR "/examples/");
    for (const char* const sDir : {"traffic_light", "traffic_light/src", "common"}) {
      QDir().mkpath(m_Dir.filePath(QLatin1String(sDir)));
      for (const QString& sFile : QDir(sExamples + QLatin1String(sDir)).entryList(QDir::Files)) {
        const QString sPath = QLatin1String(sDir) + u'/' + sFile;
        QFile::copy(sExamples + sPath, m_Dir.filePath(sPath));
      }
    }
    m_pWindow = StartFrame();
    if (m_pWindow == nullptr) return nullptr;
    PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(u"traffic_light/traffic_light.vdebug"_s));
    const bool bOpen = QTest::qWaitFor([this] { return m_pWindow->IsIdle() && ELFAPI_IsLoaded(); }, FRAME_WAIT_MS);
    return bOpen ? m_pWindow : nullptr;
  }

  QString Path(const char* sName) const { return m_Dir.filePath(u"traffic_light/src/"_s + QLatin1String(sName)); }
  CSourceWindow& Source() const { return m_pWindow->Source(); }
  CSourceEditor& Editor() const { return Source().GetTextEditor(); }
  QTabBar& Tabs() const { return *Source().findChild<QTabBar*>(); }
  QString TabTexts() const {
    QStringList Texts;
    for (int i = 0; i < Tabs().count(); ++i) Texts << Tabs().tabText(i);
    return Texts.join(u' ');
  }

  void Press(int Key, Qt::KeyboardModifiers Modifiers = {}) const {
    m_pWindow->activateWindow();  // a dialog was in front
    (void)QTest::qWaitForWindowActive(m_pWindow);
    Source().setFocus();
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(Key), Modifiers);
    Settle();
  }
  void GoTo(U32 Line) const { Editor().SetCursorPos({0, Editor().RowOfLine(Line)}); }

  // The middle of a row, which is brought into view, in the editor's viewport and in the margin.
  int RowY(int Row) const {
    Editor().EnsureRowVisible(Row);
    return (Row - Editor().TopRow()) * Editor().RowHeight() + Editor().RowHeight() / 2;
  }
  void ClickMargin(int Row, Qt::MouseButton Button = Qt::LeftButton) const {
    const int y = RowY(Row);
    QTest::mouseClick(&Source().GetSideBar(), Button, {}, QPoint(Source().GetSideBar().width() / 2, y));
    Settle();
  }
  // A point on the text of a row: one that has the word there.
  QPoint PointOn(int Row, const QString& sWord) const {
    const int y = RowY(Row);
    for (int x = 0; x < Editor().viewport()->width(); x += 2) {
      if (Editor().WordAt({x, y}) == sWord) return {x + 2, y};
    }
    return {-1, -1};
  }
  void ClickWord(int Row, const QString& sWord) const {
    QTest::mouseClick(Editor().viewport(), Qt::LeftButton, {}, PointOn(Row, sWord));
  }
  // Opens the menu at a word and chooses an entry by a click; the texts of all entries.
  QStringList UseMenu(int Row, const QString& sWord, U32 ActionID) const {
    const QPoint Pos = PointOn(Row, sWord);
    QTest::mouseClick(Editor().viewport(), Qt::RightButton, {}, Pos);
    QContextMenuEvent Event(QContextMenuEvent::Mouse, Pos, Editor().viewport()->mapToGlobal(Pos));
    return ChooseFrom([&] { QCoreApplication::sendEvent(Editor().viewport(), &Event); }, ActionID);
  }
  QStringList UseMarginMenu(int Row, U32 ActionID) const {
    const int y = RowY(Row);
    return ChooseFrom([&] { QTest::mouseClick(&Source().GetSideBar(), Qt::RightButton, {}, QPoint(8, y)); }, ActionID);
  }

  // The device's list, which the probe and the margins of all rows have to agree with: "40+ 0x0000012c-".
  QString Breakpoints() const {
    Settle();
    QMap<U32, bool> Listed, Probed;
    for (const BP& Entry : Device().Breakpoints.GetAll()) Listed[Entry.Addr] = Entry.State == BP_STATE_ENABLED;
    VNODEARM_BP_INFO Info = {};
    Info.SizeOfStruct = sizeof(Info);
    const int Count = CDevice::Get().IsConnected() ? Device().Api.VNODEARM_GetBPInfoEx(-1, &Info) : 0;
    for (int i = 0; i < Count; ++i) {
      Device().Api.VNODEARM_GetBPInfoEx(i, &Info);
      Probed[Info.Addr] = true;
    }
    QStringList Texts;
    for (const auto& [Addr, bEnabled] : Listed.asKeyValueRange()) {
      if (bEnabled == Probed.contains(Addr)) Texts << QString::number(Addr, 16) + (bEnabled ? u'+' : u'-');
    }
    if (Texts.size() != Listed.size() || Probed.size() > Listed.size()) return u"the probe has others"_s;
    for (const U32 Addr : Listed.keys()) {
      const unsigned Marks = Source().MarksOfRow(Editor().Rows().RowOfCode(Addr));
      if (!(Marks & (SIDE_BAR_BREAKPOINT | SIDE_BAR_BREAKPOINT_DISABLED))) return u"the margin shows none"_s;
    }
    return Texts.join(u' ');
  }
  static U32 Pc() { return static_cast<U32>(CDevice::Get().GetPC()); }
  static U32 AddrOf(const char* sPlace) { return ELFAPI_GetAddrOfLoc(ELFAPI_ParseSrcLoc(QLatin1String(sPlace))); }
  static void Settle() {
    (void)QTest::qWaitFor([] { return !CDevice::Get().IsJobPending(JT_ANY) && !CDevice::Get().HasEvents(); });
  }
  QString TakeConsole() const {
    const QString sText = ConsoleText(*m_pWindow);
    m_pWindow->Console().Clear();
    return sText;
  }

private:
  static CDeviceContext& Device() { return CDevice::Get().Context(); }

  static QStringList ChooseFrom(const std::function<void()>& Open, U32 ActionID) {
    QStringList Texts;
    WhenPopup([&](QWidget* pPopup) {
      auto* const pMenu = qobject_cast<QMenu*>(pPopup);
      for (const QAction* const pAction : pMenu->actions()) {
        if (pAction->isVisible() && !pAction->isSeparator())
          Texts << (pAction->isEnabled() ? QString() : u"-"_s) + pAction->text().remove(u'&');
      }
      QAction* const pAction = GetAction(ActionID);
      if (pAction && pMenu->actions().contains(pAction))
        QTest::mouseClick(pMenu, Qt::LeftButton, {}, pMenu->actionGeometry(pAction).center());
    });
    Open();
    Settle();
    return Texts;
  }

  QTemporaryDir m_Dir;
  CMainWindow* m_pWindow = nullptr;
};
