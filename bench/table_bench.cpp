// Filters and order of a table of many rows, in our proxy and in the toolkit's, each with a tree view on it, on the
// offscreen platform. Times are from the call to the end of the view's layout, of the processor, so that other work of
// the machine does not count. Usage: table_bench [ROWS]
#include <QApplication>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <ctime>

#include "ui/table/sort_filter.h"
#include "ui/table/table_model.h"

namespace {

constexpr int DEFAULT_ROWS = 100'000;
constexpr int RUNS = 3;
constexpr double MS_PER_S = 1e3;
constexpr unsigned FACTOR = 2654435761u;  // scatters row numbers
constexpr unsigned NUM_VALUES = 60'000;   // distinct numbers

class CBenchModel : public CTableModel {
public:
  explicit CBenchModel(int NumRows)
      : CTableModel(QStringLiteral("BenchModel"),
                    {{QStringLiteral("Name")}, {QStringLiteral("Size"), COLUMN_INTEGER}}) {
    for (int Row = 0; Row < NumRows; ++Row) {
      const unsigned Number = static_cast<unsigned>(Row) * FACTOR >> 8;
      m_Names << QStringLiteral("Module%1_Handler_%2").arg(Number % 977).arg(Number);
      m_Numbers << static_cast<qlonglong>(Number % NUM_VALUES);
    }
  }
  int rowCount(const QModelIndex& Parent = QModelIndex()) const override {
    return Parent.isValid() ? 0 : static_cast<int>(m_Names.size());
  }
  QVariant GetItemData(const QModelIndex& Index, int Role) const override {
    if (Role == Qt::DisplayRole)
      return Index.column() == 0 ? m_Names[Index.row()] : QString::number(m_Numbers[Index.row()]);
    if (Role == ROLE_SORT_VALUE && Index.column() == 1) return m_Numbers[Index.row()];
    return {};
  }

private:
  QStringList m_Names;
  QList<qlonglong> m_Numbers;
};

class CTable {
public:
  explicit CTable(QAbstractItemModel& Proxy) {
    m_View.setUniformRowHeights(true);
    m_View.setModel(&Proxy);
    m_View.resize(800, 600);
    m_View.show();
    Finish();
  }
  template <typename DO>
  double Time(const DO& Do) {
    const std::clock_t Start = std::clock();
    Do();
    Finish();
    return static_cast<double>(std::clock() - Start) * MS_PER_S / CLOCKS_PER_SEC;
  }

private:
  void Finish() {
    m_View.scrollTo(m_View.model()->index(0, 0));
    QCoreApplication::processEvents();
  }

  QTreeView m_View;
};

double MedianOf(std::vector<double> Times) {
  std::ranges::sort(Times);
  return Times[Times.size() / 2];
}

// Before each measured step an unmeasured one that undoes it.
template <typename OURS, typename THEIRS, typename UNDO_OURS, typename UNDO_THEIRS>
void Compare(const char* sWhat, CTable& Ours, CTable& Theirs, const OURS& DoOurs, const THEIRS& DoTheirs,
             const UNDO_OURS& UndoOurs, const UNDO_THEIRS& UndoTheirs) {
  std::vector<double> OurTimes, TheirTimes;
  for (int Run = 0; Run < RUNS; ++Run) {
    Ours.Time(UndoOurs);
    OurTimes.push_back(Ours.Time(DoOurs));
    Theirs.Time(UndoTheirs);
    TheirTimes.push_back(Theirs.Time(DoTheirs));
  }
  const double Our = MedianOf(OurTimes), Their = MedianOf(TheirTimes);
  std::printf("%-36s here %7.1f ms, toolkit's proxy %8.1f ms, ratio %.3f\n", sWhat, Our, Their, Our / Their);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication App(argc, argv);
  const int NumRows = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : DEFAULT_ROWS;
  CBenchModel Model(NumRows);
  CSortFilter Ours;
  Ours.setSourceModel(&Model);
  QSortFilterProxyModel Theirs;
  Theirs.setSourceModel(&Model);
  Theirs.setFilterCaseSensitivity(Qt::CaseInsensitive);
  Theirs.setSortCaseSensitivity(Qt::CaseInsensitive);
  CTable OurTable(Ours), TheirTable(Theirs);

  const auto Filter = [&](const char* sWhat, const QString& sText) {
    Theirs.setSortRole(Qt::DisplayRole);
    Compare(
        sWhat, OurTable, TheirTable, [&] { Ours.SetFilter(0, sText); }, [&] { Theirs.setFilterFixedString(sText); },
        [&] { Ours.ClearFilters(); }, [&] { Theirs.setFilterFixedString(QString()); });
    std::printf("%-36s %d of %d rows\n", "", Ours.rowCount(), NumRows);
    if (Ours.rowCount() != Theirs.rowCount()) std::printf("The two differ: %d rows\n", Theirs.rowCount());
    Compare(
        "  and its removal", OurTable, TheirTable, [&] { Ours.ClearFilters(); },
        [&] { Theirs.setFilterFixedString(QString()); }, [&] { Ours.SetFilter(0, sText); },
        [&] { Theirs.setFilterFixedString(sText); });
  };
  Filter("filter, scattered matches", QStringLiteral("_handler_1"));
  Filter("filter, few matches", QStringLiteral("Handler_12345"));
  const auto Sort = [&](const char* sWhat, int Column, int Role) {
    Theirs.setSortRole(Role);
    Compare(
        sWhat, OurTable, TheirTable, [&] { Ours.sort(Column); }, [&] { Theirs.sort(Column); }, [&] { Ours.sort(-1); },
        [&] { Theirs.sort(-1); });
  };
  Sort("sort by text", 0, Qt::DisplayRole);
  Sort("sort by number", 1, ROLE_SORT_VALUE);
  return 0;
}
