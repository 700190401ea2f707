#pragma once
// What holds for any text that is read as a user file.

#include <QSet>
#include <algorithm>
#include <iterator>
#include <string>

#include "project/user_file.h"
#include "project/window_layout.h"

// Every step leans on a dock that stands already in the same area, and every dock is placed once.
inline std::string BrokenPlanRule(const QList<DOCK_RECORD>& Records, const QStringList& Names, const DOCK_PLAN& Plan) {
  QSet<QString> Placed;
  for (const DOCK_STEP& Step : Plan.Steps) {
    if (Placed.contains(Step.sDock)) return "a dock is placed twice";
    if (Step.Kind == DOCK_STEP_ADD ? !Step.sAnchor.isEmpty() : !Placed.contains(Step.sAnchor)) {
      return "a dock leans on one that does not stand yet";
    }
    Placed.insert(Step.sDock);
  }
  for (const DOCK_RECORD& Dock : Plan.Floating) Placed.insert(Dock.sName);
  for (const QString& sDock : Plan.Hidden) Placed.insert(sDock);
  const qsizetype NumNames = Records.isEmpty() ? 0 : Names.size();
  return Placed.size() == NumNames ? "" : "a dock is neither placed nor hidden";
}

// The rule that the text breaks, in words; empty if it keeps all.
inline std::string BrokenUserFileRule(const QString& sText) {
  const USER_FILE File = ParseUserFile(sText);
  const USER_FILE Again = ParseUserFile(MakeUserFileText(File));
  const auto IsShown = [](const DOCK_RECORD& Dock) { return Dock.Area != DOCK_AREA_NONE; };
  QList<DOCK_RECORD> Shown, ShownAgain;
  std::copy_if(File.Docks.cbegin(), File.Docks.cend(), std::back_inserter(Shown), IsShown);
  std::copy_if(Again.Docks.cbegin(), Again.Docks.cend(), std::back_inserter(ShownAgain), IsShown);
  for (DOCK_RECORD& Dock : Shown) {
    if (!Dock.FilterBarShown) Dock.FilterBarShown = false;  // always written
  }
  if (File.WindowTexts.isEmpty() && Shown != ShownAgain) return "docks differ when they are written and read again";
  if (File.WindowTexts != Again.WindowTexts) return "window texts differ when they are written and read again";
  if (File.ToolBars != Again.ToolBars) return "tool bars differ when they are written and read again";
  if (File.TableHeaders != Again.TableHeaders) return "table headers differ when they are written and read again";
  QStringList Names;
  for (const DOCK_RECORD& Dock : File.Docks) Names << Dock.sName;
  const std::string sPlan = BrokenPlanRule(File.Docks, Names, PlanDocks(File.Docks, Names));
  if (!sPlan.empty()) return sPlan;
  QStringList Bars;
  for (const TOOL_BAR_RECORD& Bar : File.ToolBars) Bars << Bar.sName;
  if (PlanToolBars(File.ToolBars, Bars).size() != Bars.size()) return "a tool bar is lost";
  return "";
}
