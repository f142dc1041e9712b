#include "DaoFixture.h"

#include <QRandomGenerator>

namespace {

/** One row's columns as the conditions below see them; Null where there is no value. */
struct Row {
    int key;
    std::optional<int> a;
    std::optional<int> b;
};

using Truth = std::optional<bool>; // Null: neither true nor false

struct Condition {
    QString sql;
    std::function<Truth(const Row &)> holds;
};

Truth both(Truth x, Truth y)
{
    if (x == Truth(false) || y == Truth(false))
        return false;
    return x && y ? Truth(true) : std::nullopt;
}

Truth opposite(Truth x) { return x ? Truth(!*x) : std::nullopt; }

class RandomConditions : public DaoFixture
{
protected:
    int below(int n) { return int(m_random.bounded(n)); }

    Condition comparison()
    {
        static constexpr const char16_t *kOps[] = {u"=", u"<>", u"<", u">", u"<=", u">="};
        const int op = below(6);
        const bool ofA = below(2) == 0;
        const bool withB = below(3) == 0;
        const int number = below(5) - 2;
        const auto compare = [op](int x, int y) {
            const bool results[] = {x == y, x != y, x<y, x> y, x <= y, x >= y};
            return results[op];
        };
        return {u"%1 %2 %3"_s.arg(ofA ? u"Port_Success"_s : u"Port_Failure"_s, QString::fromUtf16(kOps[op]),
                                  withB ? u"tblPortStatus.Port_Failure"_s : QString::number(number)),
                [=](const Row &row) -> Truth {
                    const auto left = ofA ? row.a : row.b;
                    const auto right = withB ? row.b : std::optional(number);
                    return left && right ? Truth(compare(*left, *right)) : std::nullopt;
                }};
    }

    Condition condition(int depth)
    {
        const int kind = depth == 0 ? 0 : below(4);
        if (kind == 0)
            return comparison();
        const Condition x = condition(depth - 1);
        if (kind == 1)
            return {u"NOT (%1)"_s.arg(x.sql), [x](const Row &row) { return opposite(x.holds(row)); }};
        const Condition y = condition(depth - 1);
        if (kind == 2)
            return {u"(%1) AND (%2)"_s.arg(x.sql, y.sql),
                    [x, y](const Row &r) { return both(x.holds(r), y.holds(r)); }};
        return {u"(%1) OR (%2)"_s.arg(x.sql, y.sql),
                [x, y](const Row &r) { return opposite(both(opposite(x.holds(r)), opposite(y.holds(r)))); }};
    }

private:
    QRandomGenerator m_random {20000};
};

TEST_F(RandomConditions, SelectWhatTheyShould)
{
    std::vector<Row> table;
    run(u"DELETE * FROM tblPortStatus"_s);
    const auto cell = [this]() -> std::optional<int> {
        return below(4) == 0 ? std::nullopt : std::optional(below(5) - 2);
    };
    const auto sql = [](std::optional<int> v) { return v ? QString::number(*v) : u"Null"_s; };
    for (int key = 1; key <= 60; ++key) {
        const Row row {key, cell(), cell()};
        table.push_back(row);
        run(u"INSERT INTO tblPortStatus (Port_ID, Port_Success, Port_Failure) VALUES (%1, %2, %3)"_s.arg(key)
                .arg(sql(row.a), sql(row.b)));
    }
    for (int round = 0; round < 1500; ++round) {
        const Condition c = condition(3);
        QStringList expected;
        for (const Row &row : table) {
            if (c.holds(row) == Truth(true))
                expected.append(QString::number(row.key));
        }
        ASSERT_EQ(rows(u"SELECT Port_ID FROM tblPortStatus WHERE "_s + c.sql), expected.join(u'\n')) << c.sql;
    }
}

} // namespace
