// Runs the examples of conformance/: each says itself what has to happen (see the README there).

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include <gmock/gmock.h>

#include "script_run.h"

namespace {

struct EXAMPLE {
  std::string sTitle;  // with its place
  std::vector<std::string> Expected;
  std::string sScript;
};

std::vector<EXAMPLE> ReadExamples(const std::filesystem::path& File) {
  std::vector<EXAMPLE> Examples;
  std::ifstream Stream(File);
  std::string sLine;
  for (int LineNo = 1; std::getline(Stream, sLine); ++LineNo) {
    if (sLine.starts_with("//== ")) {
      Examples.push_back({File.filename().string() + ":" + std::to_string(LineNo) + ": " + sLine.substr(5)});
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

std::set<std::filesystem::path> Files() {
  std::set<std::filesystem::path> Result;
  for (const auto& Entry : std::filesystem::directory_iterator(VEXOR_SOURCE_DIR "/tests/script/conformance")) {
    if (Entry.path().extension() == ".script") Result.insert(Entry.path());
  }
  return Result;
}

// What happened, in the words of the expectations.
std::vector<std::string> Observe(const EXAMPLE& Example) {
  const bool bWhole = Example.sScript.find("main (") != std::string::npos || Example.Expected[0].starts_with("load");
  CScriptRun Run(bWhole ? Example.sScript : "void main (void) {\n" + Example.sScript + "}");
  const auto PlaceAndText = [&Run, bWhole] {
    const CTRANS_ERROR& Error = Run.Errors.at(0);
    return std::to_string(Error.LineNo - (bWhole ? 0 : 1)) + ":" + std::to_string(Error.ColumnNo) +
           (Error.sText.empty() ? "" : " " + Error.sText);
  };
  if (!Run.Errors.empty()) return {"load " + PlaceAndText()};
  const int Result = Run.Call();
  EXPECT_EQ(Run.Errors.size(), Result != CTRANS_OK ? 1u : 0u) << "a failure and its report belong together";
  std::vector<std::string> Seen;
  if (!Run.Errors.empty()) {
    const char* sKind = Result == CTRANS_DIVIDED_BY_ZERO ? "divides " : Run.ErrorText().empty() ? "fails " : "error ";
    Seen.push_back(sKind + PlaceAndText());
  }
  std::string sOut = "out", sLog = "log ";
  for (const I64 Value : Run.Out) sOut += " " + std::to_string(Value);
  if (!Run.Out.empty()) Seen.push_back(sOut);
  for (size_t i = 0; i < Run.Log.size(); ++i) sLog += (i ? "|" : "") + Run.Log[i];
  const auto IsLog = [](const std::string& sText) { return sText.starts_with("log"); };
  if (std::any_of(Example.Expected.begin(), Example.Expected.end(), IsLog)) Seen.push_back(sLog);
  return Seen;
}

class Conformance : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Conformance, EveryExampleDoesWhatItSays) {
  const std::vector<EXAMPLE> Examples = ReadExamples(GetParam());
  ASSERT_FALSE(Examples.empty());
  for (const EXAMPLE& Example : Examples) {
    SCOPED_TRACE(Example.sTitle);
    ASSERT_FALSE(Example.Expected.empty()) << "says nothing";
    EXPECT_THAT(Observe(Example), testing::UnorderedElementsAreArray(Example.Expected));
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Conformance, testing::ValuesIn(Files()),
                         [](const auto& Info) { return Info.param.stem().string(); });

}  // namespace
