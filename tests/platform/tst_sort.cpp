#include "platform/SortInTurns.h"
#include "support/Fixtures.h"

class TestSort : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// However many there are, in steps as short as can be; equals stay in their order.
    void manyNames()
    {
        const auto less = [](const std::pair<int, int> &a, const std::pair<int, int> &b) { return a.first < b.first; };
        for (const int count : {0, 1, 512, 513, 1024, 1500, 4100}) {
            SortInTurns<std::pair<int, int>, decltype(less)> sort(less);
            std::vector<std::pair<int, int>> expected;
            for (int i = 0; i < count; ++i) {
                expected.emplace_back(i * 7919 % 997, i);
                sort.add(expected.back());
            }
            std::stable_sort(expected.begin(), expected.end(), less);
            int steps = 1;
            for (; !sort.step(QDeadlineTimer(0)); ++steps) {
            }
            QVERIFY(steps >= count / 512 && sort.take() == expected);
        }
    }
};

QTEST_GUILESS_MAIN(TestSort)
#include "tst_sort.moc"
