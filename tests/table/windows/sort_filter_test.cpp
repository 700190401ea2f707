// The proxy over a tree, alone: beside the toolkit's own, its signals by the toolkit's tester.

#include "ui/table/sort_filter.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
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

// The toolkit's proxy, made anew for each comparison.
class CPeer : public QSortFilterProxyModel {
public:
  explicit CPeer(const CSortFilter& Proxy)
      : m_Filter(QRegularExpression::fromWildcard(
            Proxy.GetFilter(0).contains(u'*') ? Proxy.GetFilter(0) : u'*' + Proxy.GetFilter(0) + u'*',
            Qt::CaseInsensitive)) {
    setSourceModel(Proxy.sourceModel());
    sort(Proxy.GetSortColumn(), Proxy.GetSortOrder());
  }
  bool filterAcceptsRow(int Row, const QModelIndex& Parent) const override {
    return Parent.isValid() || m_Filter.match(sourceModel()->index(Row, 0, Parent).data().toString()).hasMatch();
  }
  bool lessThan(const QModelIndex& A, const QModelIndex& B) const override {
    const int Names =
        A.siblingAtColumn(0).data().toString().compare(B.siblingAtColumn(0).data().toString(), Qt::CaseInsensitive);
    const int Counts = A.column() == 1 ? A.data().toInt() - B.data().toInt() : 0;
    return Counts != 0 ? Counts < 0 : Names < 0;
  }

private:
  const QRegularExpression m_Filter;
};

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

  void noFilterHidesTheRowForNewItems() {
    m_pModel->bAddRow = true;
    for (const int Column : {0, 1}) {
      m_pProxy->SetFilter(Column, Column == 0 ? u"p"_s : u"< 10"_s);
      QCOMPARE(TextOf(*m_pProxy), Column == 0 ? u"pear[q,p],Apple,cherry[z]"_s : u"pear[q,p],cherry[z]"_s);
    }
  }

  // Whatever happens below, the proxy shows the rows that the toolkit's own does.
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
      QCOMPARE(TextOf(*m_pProxy), TextOf(CPeer(*m_pProxy)));
    }
  }

private:
  std::unique_ptr<CSampleModel> m_pModel;
  std::unique_ptr<CSortFilter> m_pProxy;
  std::unique_ptr<QAbstractItemModelTester> m_pSourceTester;
  std::unique_ptr<QAbstractItemModelTester> m_pTester;
};

QTEST_MAIN(CSortFilterTest)
#include "sort_filter_test.moc"
