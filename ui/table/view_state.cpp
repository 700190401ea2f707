#include "ui/table/view_state.h"

#include <QScrollBar>

#include "ui/table/sort_filter.h"
#include "ui/table/table_model.h"
#include "ui/table/tree_view.h"

namespace {

const CTableModel& ModelOf(const CSortFilter& Proxy) {
  return *static_cast<const CTableModel*>(Proxy.sourceModel());
}

ITEM_PATH PathOf(const CTableModel& Model, QModelIndex Source) {
  ITEM_PATH Path;
  for (; Source.isValid(); Source = Source.parent()) Path.prepend(Model.GetItemId(Source));
  return Path;
}

// The item of a path, of the model. The children of each parent are looked through once.
class CPathFinder {
public:
  explicit CPathFinder(const CTableModel& Model) : m_Model(Model) {}

  QModelIndex Find(const ITEM_PATH& Path) {
    QModelIndex Item;
    for (qsizetype Depth = 1; Depth <= Path.size(); ++Depth) {
      const auto& Children = ChildrenOf(Path.mid(0, Depth - 1), Item);
      const auto it = Children.constFind(Path[Depth - 1]);
      if (it == Children.cend()) return {};
      Item = m_Model.index(*it, 0, Item);
    }
    return Item;
  }

private:
  const QHash<U32, int>& ChildrenOf(const ITEM_PATH& Path, const QModelIndex& Parent) {
    const auto Known = m_Children.constFind(Path);
    if (Known != m_Children.cend()) return *Known;
    QHash<U32, int>& Children = m_Children[Path];
    const int NumRows = m_Model.rowCount(Parent);
    Children.reserve(NumRows);
    // Of several with one key the first.
    for (int Row = NumRows - 1; Row >= 0; --Row) Children.insert(m_Model.GetItemId(m_Model.index(Row, 0, Parent)), Row);
    return Children;
  }

  const CTableModel& m_Model;
  QHash<ITEM_PATH, QHash<U32, int>> m_Children;
};

// Every item that the view shows when it is scrolled.
template <typename VISIT>
void ForEachRow(const CTreeView& View, const CSortFilter& Proxy, const VISIT& Visit) {
  for (QModelIndex Index = Proxy.index(0, 0); Index.isValid(); Index = View.indexBelow(Index)) {
    Visit(Index.siblingAtColumn(0), Proxy.mapToSource(Index.siblingAtColumn(0)));
  }
}

CItemStates::KEY KeyOf(const QModelIndex& Source) {
  return static_cast<CItemStates::KEY>(Source.internalId());
}

}  // namespace

VIEW_STATE TakeViewState(const CTreeView& View, const CSortFilter& Proxy, const CItemStates& States) {
  const CTableModel& Model = ModelOf(Proxy);
  VIEW_STATE State;
  if (!Model.IsFlat() || States.HasChanges()) {
    ForEachRow(View, Proxy, [&](const QModelIndex& Index, const QModelIndex& Source) {
      if (View.isExpanded(Index)) State.Expanded << PathOf(Model, Source);
      const CItemStates::KEY Key = KeyOf(Source);
      if (States.IsChanged(Key)) {
        State.Changed.insert(Model.GetItemId(Source), {States.GetValue(Key), States.GetLevel(Key)});
      }
    });
  }
  State.Current = PathOf(Model, Proxy.mapToSource(View.currentIndex()));
  State.CurrentColumn = std::max(View.currentIndex().column(), 0);
  State.TopRow = View.verticalScrollBar()->value();
  State.LeftPixel = View.horizontalScrollBar()->value();
  return State;
}

void ApplyViewState(const VIEW_STATE& State, U32 DoNotRestoreFlags, CTreeView& View, CSortFilter& Proxy,
                    CItemStates& States) {
  const CTableModel& Model = ModelOf(Proxy);
  CPathFinder Finder(Model);
  if (!(DoNotRestoreFlags & RESTORE_NO_EXPANSION)) {
    for (const ITEM_PATH& Path : State.Expanded) View.expand(Proxy.mapFromSource(Finder.Find(Path)));
  }
  if (!State.Changed.isEmpty()) {
    ForEachRow(View, Proxy, [&](const QModelIndex&, const QModelIndex& Source) {
      const auto it = State.Changed.constFind(Model.GetItemId(Source));
      if (it != State.Changed.cend()) States.Restore(KeyOf(Source), it->Value, it->Level);
    });
  }
  const QModelIndex Current = State.Current.isEmpty() ? QModelIndex() : Proxy.mapFromSource(Finder.Find(State.Current));
  if (Current.isValid() && !(DoNotRestoreFlags & RESTORE_NO_CURRENT)) {
    View.setCurrentIndex(Current.siblingAtColumn(State.CurrentColumn));
  }
  if (!(DoNotRestoreFlags & RESTORE_NO_SCROLL)) {
    View.LayOutNow();
    View.verticalScrollBar()->setValue(State.TopRow);
    View.horizontalScrollBar()->setValue(State.LeftPixel);
  }
}
