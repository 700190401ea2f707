// Runs the examples of conformance/: each says itself what has to happen (see the README there).

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "script_run.h"

namespace {

struct EXAMPLE {
  std::string sFile;
  std::string sTitle;
  int LineNo = 0;  // of the title in its file
  std::vector<std::string> Expected;
  std::string sScript;
};

std::vector<EXAMPLE> ReadExamples(const std::filesystem::path& File) {
  std::vector<EXAMPLE> Examples;
  std::ifstream Stream(File);
  std::string sLine;
  for (int LineNo = 1; std::getline(Stream, sLine); ++LineNo) {
    if (sLine.starts_with("//== ")) {
      Examples.push_back({File.filename().string(), sLine.substr(5), LineNo, {}, {}});
    } else if (Examples.empty()) {
      ADD_FAILURE() << File << ": text in front of the first title";
    } else if (sLine.starts_with("//= ")) {
      Examples.back().Expected.push_back(sLine.substr(4));
    } else {
      Examples.back().sScript += sLine + "\n";
    }
  }
  return Examples;
}

std::vector<std::filesystem::path> Files() {
  std::vector<std::filesystem::path> Result;
  for (const auto& Entry : std::filesystem::directory_iterator(VEXOR_SOURCE_DIR "/tests/script/conformance")) {
    if (Entry.path().extension() == ".script") Result.push_back(Entry.path());
  }
  std::sort(Result.begin(), Result.end());
  return Result;
}

// What happened, in the words of the expectations.
std::vector<std::string> Observe(const EXAMPLE& Example) {
  const bool bWhole = Example.sScript.find("main (") != std::string::npos || Example.Expected[0].starts_with("load");
  CScriptRun Run(bWhole ? Example.sScript : "void main (void) {\n" + Example.sScript + "}");
  std::vector<std::string> Seen;
  const auto Place = [&Run, bWhole] {
    const CTRANS_ERROR& Error = Run.Errors.at(0);
    return std::to_string(Error.LineNo - (bWhole ? 0 : 1)) + ":" + std::to_string(Error.ColumnNo);
  };
  if (!Run.Errors.empty()) return {"load " + Place() + " " + Run.ErrorText()};
  const int Result = Run.Call();
  EXPECT_EQ(Result != CTRANS_OK, !Run.Errors.empty()) << "a failure and its report belong together";
  EXPECT_LE(Run.Errors.size(), 1u);
  if (!Run.Errors.empty()) {
    const bool bText = !Run.ErrorText().empty();
    Seen.push_back((Result == CTRANS_DIVIDED_BY_ZERO ? "divides "
                    : bText                          ? "error "
                                                     : "fails ") +
                   Place() + (bText ? " " + Run.ErrorText() : ""));
  }
  const bool bCountsLog = std::any_of(Example.Expected.begin(), Example.Expected.end(),
                                      [](const std::string& s) { return s.starts_with("log"); });
  if (!Run.Out.empty()) {
    std::ostringstream Text;
    Text << "out";
    for (const I64 Value : Run.Out) Text << " " << Value;
    Seen.push_back(Text.str());
  }
  if (bCountsLog) {
    std::string sText = "log ";
    for (size_t i = 0; i < Run.Log.size(); ++i) sText += (i ? "|" : "") + Run.Log[i];
    Seen.push_back(sText);
  }
  return Seen;
}

class Conformance : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Conformance, EveryExampleDoesWhatItSays) {
  const std::vector<EXAMPLE> Examples = ReadExamples(GetParam());
  ASSERT_FALSE(Examples.empty());
  for (const EXAMPLE& Example : Examples) {
    SCOPED_TRACE(Example.sFile + ":" + std::to_string(Example.LineNo) + ": " + Example.sTitle);
    ASSERT_FALSE(Example.Expected.empty()) << "says nothing";
    std::vector<std::string> Expected = Example.Expected, Seen = Observe(Example);
    std::sort(Expected.begin(), Expected.end());
    std::sort(Seen.begin(), Seen.end());
    EXPECT_EQ(Expected, Seen);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Conformance, testing::ValuesIn(Files()),
                         [](const auto& Info) { return Info.param.stem().string(); });

}  // namespace
