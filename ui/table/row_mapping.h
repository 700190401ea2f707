#pragma once

#include <QPersistentModelIndex>
#include <vector>

// Which rows below one parent are shown, and where: proxy rows to source rows and back. -1 is none.
class CRowMapping {
public:
  explicit CRowMapping(const QPersistentModelIndex& SourceParent) : m_SourceParent(SourceParent) {}

  const QPersistentModelIndex& SourceParent() const { return m_SourceParent; }
  int NumRows() const { return static_cast<int>(m_Sources.size()); }
  int SourceOf(int Row) const { return InRange(m_Sources, Row) ? m_Sources[static_cast<size_t>(Row)] : -1; }
  int RowOf(int SourceRow) const { return InRange(m_Rows, SourceRow) ? m_Rows[static_cast<size_t>(SourceRow)] : -1; }

  // Shows these source rows in this order, of NumSources.
  void Set(std::vector<int> Sources, int NumSources);
  // Source rows First to Last came: those that were there move down; the new ones are not shown yet.
  void InsertSources(int First, int Last);
  // Shows source rows from proxy row Pos on.
  void Show(int Pos, const std::vector<int>& Sources);
  // Hides proxy rows First to Last.
  void Hide(int First, int Last);
  // Source rows First to Last, which are hidden, are gone.
  void RemoveSources(int First, int Last);

private:
  static bool InRange(const std::vector<int>& Rows, int Row) {
    return Row >= 0 && static_cast<size_t>(Row) < Rows.size();
  }
  void Renumber(int From);

  QPersistentModelIndex m_SourceParent;
  std::vector<int> m_Sources;
  std::vector<int> m_Rows;
};
