// The proxy over a tree, alone: its answers by a simple oracle, its signals by the toolkit's tester.

#include "ui/table/sort_filter.h"

#include <QAbstractItemModelTester>
#include <QTest>
#include <random>

#include "sample_model.h"

using namespace Qt::StringLiterals;

namespace {

// Names in the order in which they stand, children between brackets.
QString TextOf(const QAbstractItemModel& Model, const QModelIndex& Parent = QModelIndex()) {
  QStringList Rows;
  for (int Row = 0; Row < Model.rowCount(Parent); ++Row) {
    const QModelIndex Item = Model.index(Row, 0, Parent);
    const QString sChildren = TextOf(Model, Item);
    Rows << Item.data().toString() + (sChildren.isEmpty() ? QString() : u'[' + sChildren + u']');
  }
  return Rows.join(u',');
}

}  // namespace

class CSortFilterTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void init() {
    m_pModel = std::make_unique<CSampleModel>();
    m_pProxy = std::make_unique<CSortFilter>();
    m_pSourceTester = std::make_unique<QAbstractItemModelTester>(m_pModel.get());
    m_pProxy->setSourceModel(m_pModel.get());
    m_pTester = std::make_unique<QAbstractItemModelTester>(m_pProxy.get());
    m_pModel->Fill(u"pear=3[q=2,p=1],Apple=16,fig=3,cherry=255[z=1]"_s);
  }
  void cleanup() {
    m_pTester.reset();
    m_pProxy.reset();
    m_pSourceTester.reset();
    m_pModel.reset();
  }

  void persistentIndexesStayWithTheirRows() {
    QList<QPersistentModelIndex> Items;
    const QStringList Names = {u"fig"_s, u"p"_s, u"cherry"_s};
    for (const QString& sName : Names) Items << m_pProxy->mapFromSource(m_pModel->Find(sName));
    m_pProxy->sort(0, Qt::DescendingOrder);
    for (int i = 0; i < 3; ++i) QCOMPARE(Items[i].data().toString(), Names[i]);
    m_pProxy->SetFilter(0, u"p"_s);
    QVERIFY(!Items[0].isValid() && Items[1].data() == u"p"_s && !Items[2].isValid());
  }

  // Whatever happens below, the proxy shows the rows that a simple look at the model gives.
  void randomChanges() {
    std::mt19937 Random(11);
    const auto Pick = [&Random](int Count) { return static_cast<int>(Random() % static_cast<unsigned>(Count)); };
    const char* const FILTERS[] = {"", "a", "b*", "*c", "zz"};
    for (int Step = 0; Step < 600; ++Step) {
      QModelIndex Parent;
      if (m_pModel->rowCount() > 0 && Pick(3) == 0) Parent = m_pModel->index(Pick(m_pModel->rowCount()), 0);
      const int NumRows = m_pModel->rowCount(Parent);
      const int What = Pick(10);
      if (What < 5) {
        const QString sName =
            QString(QLatin1Char("abcABC"[Pick(6)])) + QLatin1Char("abc"[Pick(3)]) + QString::number(Step);
        m_pModel->Insert(Parent, Pick(NumRows + 1), sName, Pick(5));
      } else if (What < 7 && NumRows > 0) {
        const int First = Pick(NumRows);
        m_pModel->Remove(Parent, First, std::min(NumRows - 1, First + Pick(4)));
      } else if (What == 7) {
        m_pProxy->SetFilter(0, QLatin1String(FILTERS[Pick(5)]));
      } else if (What == 8) {
        m_pProxy->sort(Pick(3) - 1, Pick(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
      } else if (NumRows > 0) {
        m_pModel->setData(m_pModel->index(Pick(NumRows), 1, Parent), Pick(5));
      }
      QCoreApplication::processEvents();
      QCOMPARE(TextOf(*m_pProxy), Oracle(QModelIndex()));
    }
  }

private:
  QString Oracle(const QModelIndex& Parent) const {
    std::vector<QModelIndex> Items;
    const QString sFilter = m_pProxy->GetFilter(0);
    for (int Row = 0; Row < m_pModel->rowCount(Parent); ++Row) {
      const QModelIndex Item = m_pModel->index(Row, 0, Parent);
      const QString sName = Item.data().toString();
      const bool bShown = Parent.isValid() || sFilter == u"*" ||
                          (sFilter.endsWith(u'*')     ? sName.startsWith(sFilter.chopped(1), Qt::CaseInsensitive)
                           : sFilter.startsWith(u'*') ? sName.endsWith(sFilter.mid(1), Qt::CaseInsensitive)
                                                      : sName.contains(sFilter, Qt::CaseInsensitive));
      if (bShown) Items.push_back(Item);
    }
    const int Column = m_pProxy->GetSortColumn();
    const auto Less = [Column](const QModelIndex& A, const QModelIndex& B) {
      const int Names = A.data().toString().compare(B.data().toString(), Qt::CaseInsensitive);
      const I64 Counts = A.siblingAtColumn(1).data().toLongLong() - B.siblingAtColumn(1).data().toLongLong();
      return Column == 1 && Counts != 0 ? Counts < 0 : Names < 0;
    };
    if (Column >= 0) {
      std::ranges::stable_sort(Items, [&](const QModelIndex& A, const QModelIndex& B) {
        return m_pProxy->GetSortOrder() == Qt::AscendingOrder ? Less(A, B) : Less(B, A);
      });
    }
    QStringList Rows;
    for (const QModelIndex& Item : Items) {
      const QString sChildren = Oracle(Item);
      Rows << Item.data().toString() + (sChildren.isEmpty() ? QString() : u'[' + sChildren + u']');
    }
    return Rows.join(u',');
  }

  std::unique_ptr<CSampleModel> m_pModel;
  std::unique_ptr<CSortFilter> m_pProxy;
  std::unique_ptr<QAbstractItemModelTester> m_pSourceTester;
  std::unique_ptr<QAbstractItemModelTester> m_pTester;
};

QTEST_MAIN(CSortFilterTest)
#include "sort_filter_test.moc"
