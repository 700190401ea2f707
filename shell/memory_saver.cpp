#include "shell/memory_saver.h"

#include "base/text.h"
#include "device/data_files/vfile.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "shell/log/console_print.h"

namespace {

constexpr U32 BYTES_PER_CHUNK = 16;  // so that a hole in the memory costs its surroundings only
constexpr U8 WIDTH_FROM_SETTING = 255;
constexpr int CHECK_MS = 500;

}  // namespace

CMemorySaver::CMemorySaver() {
  m_Check.setInterval(CHECK_MS);
  connect(&m_Check, &QTimer::timeout, this, [this] {
    if (m_Saves.isEmpty()) return m_Check.stop();
    if (!CDevice::Get().IsJobPending(JT_READ_MEM) && !CDevice::Get().HasEvents()) AskAgain();
  });
}

bool CMemorySaver::Save(const QString& sPath, U32 Addr, U32 NumBytes) {
  const SAVE Save = {sPath, Addr, NumBytes};
  m_Saves.append(Save);
  m_Check.start();
  if (Ask(Save)) return true;
  m_Saves.removeLast();
  return false;
}

bool CMemorySaver::Ask(const SAVE& Save) {
  const bool bBackground = CDevice::Get().Context().State.aCapability[HW_CAP_BMA];
  const U32 Flags = MEM_FLAG_ITEM_WISE | (bBackground ? 0u : static_cast<U32>(MEM_FLAG_HALT));
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  // One job for all of it, which is what a script waits for.
  Provider.MarkMemStale(Save.Addr, Save.NumBytes);
  return Provider.RequestMem(this, Save.Addr, Save.NumBytes, BYTES_PER_CHUNK, WIDTH_FROM_SETTING, Flags) !=
         DATA_UNAVAILABLE;
}

// Behind this event: the data provider drops its requests at the same one, before or after.
void CMemorySaver::AskAgain() {
  if (m_Saves.isEmpty()) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        const QList<SAVE> Saves = m_Saves;
        for (const SAVE& Save : Saves) Ask(Save);
      },
      Qt::QueuedConnection);
}

void CMemorySaver::GiveUp() {
  for (const SAVE& Save : std::exchange(m_Saves, {})) {
    PrintConsoleError(QStringLiteral("\"%1\" was not written: the connection has ended").arg(Save.sPath));
  }
}

void CMemorySaver::OnDeviceReadMemDone(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) {
  const auto IsIt = [=](const SAVE& Save) { return Save.Addr == Addr && Save.NumBytes == NumBytes; };
  for (auto Save = std::find_if(m_Saves.begin(), m_Saves.end(), IsIt); Save != m_Saves.end();
       Save = std::find_if(m_Saves.begin(), m_Saves.end(), IsIt)) {
    const QString sPath = Save->sPath;
    m_Saves.erase(Save);
    if (VFile::CFileWorker::Get()->SaveFile(sPath, paData, NumBytes) < 0) {
      PrintConsoleError(QStringLiteral("\"%1\" could not be written").arg(sPath));
      continue;
    }
    const auto NumMissing = std::count_if(paStatus, paStatus + NumBytes, [](U8 Status) { return Status != MEM_VALID; });
    if (NumMissing != 0) {
      PrintConsoleError(QStringLiteral("%1 of %2 bytes @ %3 could not be read; they are 0 in \"%4\"")
                            .arg(NumMissing)
                            .arg(NumBytes)
                            .arg(AddrText(Addr), sPath));
    }
  }
}
