#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <random>

#include "ask_program.h"

// Nothing that stands in a program file may crash the database, keep it busy or take the machine's memory.
namespace {

constexpr int COPIES_OF_EACH = 16;
constexpr U32 MAX_CHANGES = 8;   // bytes in a copy
constexpr qint64 MAX_MS = 2000;  // a megabyte; the files are smaller
constexpr rlim_t MAX_MEMORY = 4ull << 30;

QByteArray BytesOf(const QString& sPath) {
  QFile File(sPath);
  return File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray();
}

class DamagedPrograms : public testing::Test {
protected:
  DamagedPrograms() {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // their allocators map far more
    const rlimit Limit = {MAX_MEMORY, MAX_MEMORY};
    EXPECT_EQ(0, setrlimit(RLIMIT_AS, &Limit));
#endif
  }

  ~DamagedPrograms() override {
    ELFAPI_Unload();
  }

  template <typename DAMAGE>
  void LoadAll(DAMAGE Damage) {
    const QDir Folder(QStringLiteral(VEXOR_SOURCE_DIR "/tests/corpus/data"));
    U32 Seed = 0;
    int NumLoaded = 0, NumCopies = 0;
    for (const QString& sName : Folder.entryList({QStringLiteral("*.elf")}, QDir::Files, QDir::Name)) {
      const QByteArray Whole = BytesOf(Folder.filePath(sName));
      for (int i = 0; i < COPIES_OF_EACH; ++i, ++NumCopies) {
        SCOPED_TRACE(sName.toStdString() + " seed " + std::to_string(Seed));
        std::mt19937 Random(Seed++);
        NumLoaded += Load(Damage(Whole, Random));
      }
    }
    EXPECT_GT(NumLoaded, NumCopies / 4) << "the questions need files that still open";
  }

  bool Load(const QByteArray& Bytes) {
    const QString sPath = m_Dir.filePath(QStringLiteral("damaged.elf"));
    QFile File(sPath);
    EXPECT_TRUE(File.open(QIODevice::WriteOnly | QIODevice::Truncate) && File.write(Bytes) == Bytes.size());
    File.close();
    QElapsedTimer Timer;
    Timer.start();
    const bool bLoaded = ELFAPI_Load(sPath) == 0;
    EXPECT_LT(Timer.elapsed(), MAX_MS);
    if (bLoaded) AskProgram();
    return bLoaded;
  }

  QTemporaryDir m_Dir;
};

TEST_F(DamagedPrograms, ChangedBytes) {
  LoadAll([](QByteArray Bytes, std::mt19937& Random) {
    for (U32 i = 0; i <= Random() % MAX_CHANGES; ++i) {
      Bytes[static_cast<qsizetype>(Random() % static_cast<U32>(Bytes.size()))] = static_cast<char>(Random());
    }
    return Bytes;
  });
}

// The headers of a cut file stand where they stood: what the sections are is gone from somewhere on.
TEST_F(DamagedPrograms, CutAnywhere) {
  LoadAll([](const QByteArray& Bytes, std::mt19937& Random) {
    const qsizetype End = static_cast<qsizetype>(Random() % static_cast<U32>(Bytes.size()));
    const bool bZeros = Random() % 2;  // a copy that was begun and not completed
    return bZeros ? Bytes.first(End) + QByteArray(Bytes.size() - End, '\0') : Bytes.first(End);
  });
}

// The counts of a header are the classic way to make a reader allocate without end.
TEST_F(DamagedPrograms, AbsurdHeaderFields) {
  constexpr int HEADER_SIZE = 52;
  const QByteArray Whole = BytesOf(QStringLiteral(VEXOR_SOURCE_DIR "/tests/elf/data/gcc_dwarf5_O2.elf"));
  for (int Offset = 0; Offset < HEADER_SIZE; ++Offset) {
    for (const char Value : {'\0', '\1', '\2', '\x7F', '\x80', '\xFF'}) {
      Load(QByteArray(Whole).replace(Offset, 1, QByteArray(1, Value)));
    }
  }
}

}  // namespace
