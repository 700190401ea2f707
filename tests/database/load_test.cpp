#include "demo_program.h"

#include <malloc.h>
#include <QTemporaryDir>
#include <chrono>
#include <future>
#include <set>
#include <thread>

#include "device/data_files/vfile.h"
#include "program/database/elfapi_types.h"
#include "program/database/file_finder.h"
#include "program/database/file_table.h"
#include "program/database/program_build.h"
#include "program/elf/elf.h"

namespace {

class LoadTest : public DemoProgramTest {
protected:
  int LoadBytes(const QByteArray& Bytes) { return ELFAPI_Load(WriteBytes(m_Dir.filePath(u"program.elf"_s), Bytes)); }

private:
  QTemporaryDir m_Dir;
};

TEST_F(LoadTest, WhatIsSaidOfTheWholeProgram) {
  EXPECT_TRUE(ELFAPI_IsLoaded() && !ELFAPI_IsBusy());
  EXPECT_EQ(ELFAPI_GetSrcLang(), ELF_SRC_LANG_CPP);
  EXPECT_EQ(Name(ELFAPI_GetEntryFunc()), "main");
  EXPECT_EQ(ELFAPI_GetProgramExtent(), (std::pair<U32, U32>{0x08000000, 0x20000008}));
}

TEST_F(LoadTest, EmptyAfterUnloadAndAfterARefusedFile) {
  const ELF_SYM_HANDLE Func = Global("main");
  QStringList Messages;
  ELFAPI_SetMessageSink([&Messages](const QString& sText, U32) { Messages.append(sText); });
  for (const bool bRefused : {true, false}) {
    if (bRefused) {
      EXPECT_EQ(LoadBytes("no program"), -1);
    } else {
      EXPECT_EQ(ELFAPI_Load(DEMO_ELF), 0);
      ELFAPI_Unload();
    }
    EXPECT_FALSE(ELFAPI_IsLoaded() || ELFAPI_IsBusy());
    EXPECT_EQ(ELFAPI_GetFilePath(), QString());
    EXPECT_EQ(ELFAPI_GetEncoding(), 2u);
    EXPECT_EQ(ELFAPI_GetProgramExtent(), (std::pair<U32, U32>{INVALID_ADDR, 0}));
    EXPECT_TRUE(ELFAPI_GetFunctions().isEmpty() && ELFAPI_GetDataSegments().isEmpty());
    EXPECT_EQ(Name(Func), "");
    EXPECT_TRUE(ELFAPI_GetEntryPC() == INVALID_ADDR && ELFAPI_GetAddr(Func) == INVALID_ADDR);
    EXPECT_EQ(FileId("/demo/first.c"), INVALID_FILE_ID);
    EXPECT_FALSE(ELFAPI_GetLoc(Func).IsValid() || Loc("main").IsValid() || ELFAPI_HasSrcLoc(0x08000054));
    EXPECT_TRUE(VFile::CFileWorker::Get()->ReadProgramSegments().isEmpty());
  }
  EXPECT_TRUE(Messages.contains(u"Not a valid elf object file."_s));
  EXPECT_TRUE(Messages.contains(u"Function count: 12"_s));
  EXPECT_TRUE(Messages.last().startsWith(u"ELF-API Wrapper deinitialized after ms: "));
}

TEST_F(LoadTest, AProgramWithoutDebugInformationHasItsSymbols) {
  QByteArray Bytes = ReadBytes(DEMO_ELF);
  ASSERT_EQ(LoadBytes(Bytes.replace(".debug_info", ".other_info").replace(".debug_line", ".other_line")), 0);
  EXPECT_FALSE(ELFAPI_HasSrcLoc(0x08000054));
  EXPECT_EQ(ELFAPI_GetFunctions().size(), 10);
  EXPECT_EQ(Name(ELFAPI_GetFuncAt(0x08000058)), "main");
  EXPECT_EQ(AddrOf("main"), 0x08000054u);
}

// What the database says of the code of demo.elf and of the same program elsewhere, one line for each halfword.
std::vector<std::string> CodeAnswers(U32 Base) {
  constexpr U32 CODE_START = 0x14, CODE_END = 0x264;  // behind ResetHandler, to the end of the last function
  QStringList Answers;
  for (U32 Offset = CODE_START; Offset < CODE_END; Offset += 2) {
    const CSrcLoc At = ELFAPI_GetFirstSrcLoc(Base + Offset);
    QString sAnswer = u"%1 %2"_s.arg(Offset, 0, 16).arg(ELFAPI_GetSrcLocText(At));
    for (const ELF_SYM_HANDLE Func : ELFAPI_GetFuncsAt(Base + Offset)) sAnswer += u' ' + ELFAPI_GetQualifiedName(Func);
    Answers.append(sAnswer + u' ' + ELFAPI_GetMappingName(Base + Offset, false));
  }
  for (const ELF_SYM_HANDLE Func : ELFAPI_GetFunctions()) {
    const CAddrRange Range = ELFAPI_GetAddrRange(Func);
    const U32 Start = Range.IsNone() ? 0 : Range.Start - Base;
    Answers.append(u"%1 %2 %3"_s.arg(ELFAPI_GetName(Func)).arg(Start).arg(Range.Size));
  }
  for (const U32 Addr : ELFAPI_GetLocBlocks(ELFAPI_ParseSrcLoc(u"first.c:16"_s)))
    Answers.append(QString::number(Addr - Base, 16));
  std::vector<std::string> Result;
  for (const QString& sAnswer : Answers) Result.push_back(sAnswer.toStdString());
  return Result;
}

// At address 0 lie the remains of what the linker dropped, and an assembler's functions carry the Thumb bit.
TEST_F(LoadTest, TheSameProgramAtAddress0) {
  const std::vector<std::string> Expected = CodeAnswers(0x08000000);
  ASSERT_EQ(ELFAPI_Load(DEMO_DIR + u"low.elf"_s), 0);
  EXPECT_EQ(CodeAnswers(0), Expected);
  const ELF_SYM_HANDLE Handler = ELFAPI_GetFuncAt(0x8);
  EXPECT_FALSE(ELFAPI_IsElfSymbol(Handler));
  EXPECT_EQ(ELFAPI_GetAddrRange(Handler), (CAddrRange{0x8, 10}));
  EXPECT_EQ(ELFAPI_GetFuncAt(0xC), Handler);
  EXPECT_EQ(LocTextAt(0x8) + " " + LocTextAt(0xA) + " " + LocTextAt(0xC), "start.S:13 start.S:13 start.S:14");
}

TEST_F(LoadTest, ARelocatedProgramMovesOnce) {
  constexpr U32 MOVE = 0x00100000;
  const std::vector<std::string> Expected = CodeAnswers(0x08000000);
  for (const bool bLoadedFirst : {false, true}) {
    SCOPED_TRACE(bLoadedFirst);
    ELFAPI_Unload();
    if (bLoadedFirst) {
      ASSERT_EQ(ELFAPI_Load(DEMO_ELF), 0);
    }
    ASSERT_EQ(ELFAPI_AddRelocation(u"*"_s, MOVE), 0);
    if (!bLoadedFirst) {
      ASSERT_EQ(ELFAPI_Load(DEMO_ELF), 0);
    }
    EXPECT_EQ(CodeAnswers(0x08000000 + MOVE), Expected);
    EXPECT_EQ(ELFAPI_GetEntryPC(), 0x08000008u + MOVE);
    EXPECT_EQ(AddrOf("ResetHandler"), 0x08000008u + MOVE);
    EXPECT_EQ(AddrOf("Level"), 0x20000008u + MOVE);
    EXPECT_EQ(ELFAPI_GetFuncAt(0x08000058), 0u);
    EXPECT_EQ(ELFAPI_AddRelocation(QString(), 8), -1);
  }
  ASSERT_EQ(ELFAPI_Load(DEMO_ELF), 0);
  EXPECT_EQ(CodeAnswers(0x08000000), Expected) << "it goes with the program";
}

// A function in the middle of the section, with what the mapping symbols around it say.
TEST_F(LoadTest, APartOfASegmentMoves) {
  constexpr U32 MOVE = 0x00010000;
  const CSrcLoc Line = ELFAPI_GetFirstSrcLoc(AddrOf("UseShapes"));
  QAddrList Expected = ELFAPI_GetLocBlocks(Line);
  ASSERT_FALSE(Expected.isEmpty());
  for (U32& Addr : Expected) Addr += MOVE;
  ASSERT_EQ(ELFAPI_AddRelocation(u"UseShapes"_s, MOVE), 0);
  EXPECT_EQ(ELFAPI_GetLocBlocks(Line), Expected);
  EXPECT_TRUE(VCore::IsInstruction(0x080101fe) && !VCore::IsInstruction(0x080001fe));
  for (const auto& [Addr, sMapping] : {std::pair{0x080001fc, u"$Thumb"_s},
                                       {0x080001fe, {}},
                                       {0x080101fe, u"$Thumb"_s},
                                       {0x08010230, u"$Thumb"_s},
                                       {0x08010240, u"$Data"_s},
                                       {0x08000244, u"$Thumb"_s}}) {
    EXPECT_EQ(ELFAPI_GetMappingName(static_cast<U32>(Addr), false), sMapping) << std::hex << Addr;
  }
}

// The header that two units share, under other names: of two spellings, and of other units' main files.
TEST_F(LoadTest, FilesAreToldApartByTheirWholePaths) {
  const QAddrList Shared = AddrsOf("shared.h:11");
  const QByteArray Bytes = ReadBytes(DEMO_ELF);
  const qsizetype First = Bytes.indexOf("shared.h"), Second = Bytes.indexOf("shared.h", First + 1);
  const auto LoadWith = [&](const char* sFirst, const char* sSecond) {
    return LoadBytes(QByteArray(Bytes).replace(First, 8, sFirst).replace(Second, 8, sSecond));
  };
  ASSERT_EQ(LoadWith("./a/../x", "./b/../x"), 0);
  ASSERT_EQ(Shared.size(), 2);
  EXPECT_EQ(ELFAPI_GetAddrsOfLoc({FileId("\\Demo\\x"), 11, 0}), Shared);
  ASSERT_EQ(LoadWith("second.c", "/first.c"), 0);
  EXPECT_EQ(ELFAPI_GetFilePathOf(ELFAPI_GetFileAt(AddrOf("FirstStep"))), u"/demo/first.c");
  EXPECT_EQ(ELFAPI_GetFilePathOf(ELFAPI_GetFileAt(AddrOf("SecondStep"))), u"/demo/second.c");
  EXPECT_EQ(Names(ELFAPI_GetFileFunctions(FileId("/demo/second.c"))), "SecondStep LongStatement Clamp");
}

TEST_F(LoadTest, AnAliasWithoutSizeNeverStandsForItsFunction) {
  const QString sElf = QStringLiteral(VEXOR_SOURCE_DIR "/examples/thermostat/thermostat.elf");
  ASSERT_EQ(LoadBytes(ReadBytes(sElf).replace(".debug_info", ".other_info")), 0);
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetFuncAt(0x1FA)), u"__udivsi3");
}

TEST_F(LoadTest, AFileIsKnownWhenItAppearsWhereTheFinderLooks) {
  const QTemporaryDir Dir;
  const QString sPlace = Dir.filePath(u"first.c"_s);
  ASSERT_EQ(LoadBytes(ReadBytes(DEMO_ELF).replace("/demo", "demo2")), 0);
  CFileFinder::Get()->AddSearchPath(Dir.path());
  EXPECT_EQ(ELFAPI_FileId(sPlace), INVALID_FILE_ID);
  WriteBytes(sPlace, {});
  EXPECT_EQ(ELFAPI_FileId(sPlace), FileId("demo2/first.c"));
  EXPECT_NE(ELFAPI_FileId(sPlace), INVALID_FILE_ID);
  // Others can ask the database while a text has files looked for.
  std::vector<std::future<bool>> Others;
  std::set<std::future_status> Answers;
  CFileFinder::Get()->SetMessageSink([&](const QString&, U32) {
    Others.push_back(std::async(std::launch::async, [] { return ELFAPI_GetFunctions().isEmpty(); }));
    Answers.insert(Others.back().wait_for(std::chrono::seconds(1)));
  });
  CFileFinder::Get()->AddSearchPath(Dir.path() + u"/other"_s);
  PARSED_LOC_KIND Kind;
  ELFAPI_ParseLocation(sPlace + u":16"_s, Kind);
  CFileFinder::Get()->SetMessageSink({});
  EXPECT_EQ(Answers, std::set{std::future_status::ready});
  CFileFinder::Get()->Clear();
}

TEST_F(LoadTest, TheScopeOutlivesTheProgram) {
  ELFAPI_SetCurrentPC(AddrOf("FirstStep"));
  const std::string Locals = Names(ELFAPI_GetLocalVars());
  ASSERT_NE(Locals, "");
  ASSERT_EQ(ELFAPI_Load(DEMO_ELF), 0);
  EXPECT_EQ(Names(ELFAPI_GetLocalVars()), Locals);
}

TEST_F(LoadTest, ARedirectedFileIsTheSameFile) {
  const QString sOld = u"/demo/first.c"_s, sNew = DEMO_DIR + u"first.c"_s;
  const CSrcLoc OldLoc = Loc("first.c:16");
  const QAddrList Addrs = ELFAPI_GetAddrsOfLoc(OldLoc);
  const ELF_SYM_LIST Functions = ELFAPI_GetFileFunctions(OldLoc.File);
  EXPECT_EQ(ELFAPI_GetDeclLoc(Global("main")).File, OldLoc.File);
  EXPECT_FALSE(Addrs.isEmpty() || ELFAPI_FileExists(OldLoc.File) || ELFAPI_GetSourceFiles().contains(sNew));
  ELFAPI_RedirectFile(u"/demo/absent.c"_s, DEMO_DIR + u"second.c"_s);
  ELFAPI_RedirectFile(sOld, sNew);
  // Symbols that move later leave it so.
  for (const U32 Move : {0u, 0x1000u}) {
    if (Move != 0) ELFAPI_AddRelocation(u"*"_s, static_cast<I32>(Move));
    const U32 Id = ELFAPI_FileId(sNew);
    EXPECT_TRUE(Id != OldLoc.File && Id != INVALID_FILE_ID && ELFAPI_FileExists(Id));
    EXPECT_EQ(ELFAPI_FileId(sOld), Id);
    EXPECT_EQ(ELFAPI_GetFilePathOf(Id), sNew);
    EXPECT_EQ(ELFAPI_GetSourceFiles(), QStringList{sNew});
    for (const U32 Asked : {OldLoc.File, Id}) {
      EXPECT_EQ(ELFAPI_GetAddrOfLoc({Asked, OldLoc.Line, 0}), Addrs.first() + Move);
      EXPECT_EQ(ELFAPI_GetFileFunctions(Asked), Functions);
      EXPECT_EQ(ELFAPI_NextSrcLoc({Asked, OldLoc.Line, 0}), (CSrcLoc{Id, 17, 0}));
    }
    EXPECT_EQ(ELFAPI_GetFirstSrcLoc(Addrs.first() + Move).File, Id);
    EXPECT_EQ(ELFAPI_GetFileAt(Addrs.first() + Move), Id);
    EXPECT_EQ(ELFAPI_GetDeclLoc(Global("main")).File, Id);
  }
}

// Two programs in turn, asked all the time: what one operation answers is of one program, and there always is one.
TEST_F(LoadTest, OtherThreadsAskWhileProgramsAreRead) {
  const QString sCorpus = CORPUS_DIR + u"gcc_v5_O0.elf"_s;
  const qsizetype NumDemo = ELFAPI_GetFunctions().size();
  ASSERT_EQ(ELFAPI_Load(sCorpus), 0);
  const qsizetype NumCorpus = ELFAPI_GetFunctions().size();
  std::atomic<bool> bStop{false};
  std::atomic<int> NumWrong{0};
  const auto Ask = [&] {
    while (!bStop) {
      const QString sPath = ELFAPI_GetFilePath();
      const qsizetype NumFuncs = ELFAPI_GetFunctions().size();
      const ELF_SYM_HANDLE Main = ELFAPI_FindSymbol(u"main"_s, true, false, false, true);
      ELFAPI_GetSrcLocText(ELFAPI_GetLoc(Main));
      ELFAPI_GetLocBlocks(ELFAPI_GetLoc(Main));
      VFile::CFileWorker::Get()->ReadProgramSegments();
      if ((sPath != DEMO_ELF && sPath != sCorpus) || (NumFuncs != NumDemo && NumFuncs != NumCorpus) || Main == 0)
        ++NumWrong;
    }
  };
  std::thread aAskers[] = {std::thread(Ask), std::thread(Ask)};
  for (int i = 0; i < 10; ++i) EXPECT_EQ(ELFAPI_Load(i % 2 ? DEMO_ELF : sCorpus), 0);
  bStop = true;
  for (std::thread& Asker : aAskers) Asker.join();
  EXPECT_EQ(NumWrong, 0);
}

TEST_F(LoadTest, AStoppedBuildLeavesTheProgramAsItIs) {
  const std::vector<std::string> Expected = CodeAnswers(0x08000000);
  U32 NumAsked = 0, Last = 0;
  {
    CProgramBuild Build;
    const auto Count = [&](U32 Permille) {
      EXPECT_TRUE(Permille >= Last && Permille <= BUILD_PROGRESS_END) << Permille << " behind " << Last;
      Last = Permille;
      return ++NumAsked > 0;
    };
    ASSERT_EQ(Build.Read(CORPUS_DIR + u"mixed.elf"_s, Count), PROGRAM_BUILT);
    EXPECT_EQ(Last, BUILD_PROGRESS_END);
  }
  ASSERT_GT(NumAsked, 15u);
  for (U32 Stop = 0; Stop < NumAsked; ++Stop) {
    CProgramBuild Build;
    U32 NumLeft = Stop;
    EXPECT_EQ(Build.Read(CORPUS_DIR + u"mixed.elf"_s, [&NumLeft](U32) { return NumLeft-- != 0; }),
              PROGRAM_BUILD_STOPPED);
    EXPECT_EQ(NumLeft, static_cast<U32>(-1)) << "not asked again";
  }
  EXPECT_EQ(CodeAnswers(0x08000000), Expected);
  EXPECT_TRUE(ELFAPI_IsLoaded() && !ELFAPI_IsBusy());
  EXPECT_EQ(ELFAPI_GetFilePath(), DEMO_ELF);
}

TEST_F(LoadTest, NothingIsLeftOfProgramsThatWereClosed) {
  const auto OpenOften = [this](int NumTimes) {
    for (int i = 0; i < NumTimes; ++i) {
      ASSERT_EQ(ELFAPI_Load(i % 2 ? DEMO_ELF : CORPUS_DIR + u"gcc_v5_O0.elf"_s), 0);
      if (i % 3) ELFAPI_Unload();
      CProgramBuild Stopped;
      Stopped.Read(DEMO_ELF, [](U32 Permille) { return Permille < 800; });
      ELFAPI_FindSymbol(u"Square::Side"_s, true, true, true, true);
      ELFAPI_GetSrcLocsAt(ELFAPI_GetEntryPC());
      ELFAPI_GetLocation(Global("main"), ELFAPI_GetEntryPC());
    }
    ELFAPI_Unload();
  };
  // What the allocator keeps for each thread counts as in use; a program of these takes a megabyte.
  constexpr size_t MAX_BYTES_KEPT = 100'000;
  OpenOften(20);
  const size_t Before = mallinfo2().uordblks;
  OpenOften(60);
  EXPECT_LT(mallinfo2().uordblks, Before + MAX_BYTES_KEPT);
}

TEST(FileTableTest, PathsWithOneHashGetDifferentIdentifiers) {
  // Found by search: both lower-cased paths have the same StableHash32.
  const QString sA = u"src/file998679.c"_s, sB = u"src/file1303852.c"_s;
  CFileTable Files;
  const U32 IdA = Files.At(Files.Add(sA)).Id;
  const U32 IdB = Files.At(Files.Add(sB)).Id;
  EXPECT_NE(IdA, IdB);
  EXPECT_EQ(Files.IdOfPath(sA.toUpper()), IdA);
  EXPECT_EQ(Files.IdOfPath(sB), IdB);
  EXPECT_EQ(Files.FindId(IdB), QList<FILE_INDEX>{1});
  EXPECT_EQ(InternFileId(sA), IdA);
}

TEST(FileTableTest, ARedirectionTakesThePlaceOfTheOneBefore) {
  const QString sA = u"/p/a.c"_s, sB = u"/p/b.c"_s, sM = u"/p/moved.c"_s;
  CFileTable Files;
  for (const QString& sPath : {sA, sB}) Files.Add(sPath);
  Files.Redirect(sA, sM);
  const U32 IdM = Files.IdOfPath(u"/p/x/../MOVED.c"_s);
  EXPECT_EQ(Files.FindId(IdM), QList<FILE_INDEX>{0});
  Files.Redirect(sA, sB);
  EXPECT_EQ(Files.IdOfPath(sM), INVALID_FILE_ID);
  CFileTable Again;
  for (const QString& sPath : {sA, sB}) Again.Add(sPath);
  Again.RedirectLike(Files);
  EXPECT_EQ(Again.FindId(IdM), QList<FILE_INDEX>{0}) << "what was told is good still";
  EXPECT_EQ(Again.FindId(InternFileId(sB)), (QList<FILE_INDEX>{0, 1}));
  Again.Redirect(sB, sM);
  EXPECT_EQ(Again.FindId(InternFileId(sB)), QList<FILE_INDEX>{0});
  EXPECT_EQ(Again.FindId(IdM), QList<FILE_INDEX>{1});
}

}  // namespace
