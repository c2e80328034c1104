#include "wordbook/WordListModel.h"

#include "support/Printers.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

ListRow rowOf(GrammarPoint point, RowMarks marks = {})
{
    return {.key = point, .title = label(point), .marks = marks};
}

} // namespace

TEST(WordListModel, ARowThatStaysIsFollowedThroughEveryChange)
{
    using enum GrammarPoint;
    WordListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const ListRow heading{.title = u"已解锁 1"_s};
    model.setRows({heading, rowOf(passive), rowOf(gerund), rowOf(modal)});
    const QPersistentModelIndex followed = model.index(2);
    const QList<QList<ListRow>> changes{
        {heading, rowOf(plural), rowOf(passive), rowOf(gerund), rowOf(modal)}, // added above
        {heading, rowOf(gerund), rowOf(modal)}, // taken away above
        {ListRow{.title = u"已解锁 2"_s}, rowOf(gerund), rowOf(modal)}, // the heading counts on
        {ListRow{.title = u"已解锁 2"_s}, rowOf(gerund)},
        {rowOf(gerund, RowMark::unlocked)},
        {rowOf(future), rowOf(gerund)},
    };
    for (const QList<ListRow> &rows : changes) {
        model.setRows(rows);
        EXPECT_EQ(model.rows(), rows);
        ASSERT_TRUE(followed.isValid());
        EXPECT_EQ(model.rowOf(gerund), followed.row());
    }
    model.setRows({});
    EXPECT_FALSE(followed.isValid());
}

TEST(WordListModel, TellsOfNewMarksAndIsSilentOtherwise)
{
    WordListModel model;
    model.setRows({rowOf(GrammarPoint::passive), rowOf(GrammarPoint::gerund)});
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.setRows({rowOf(GrammarPoint::passive), rowOf(GrammarPoint::gerund)});
    EXPECT_EQ(changed.size(), 0);
    model.setRows({rowOf(GrammarPoint::passive), rowOf(GrammarPoint::gerund, RowMark::unlocked)});
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(model.data(model.index(1), Qt::AccessibleTextRole).toString(),
        label(GrammarPoint::gerund) + u"，已解锁"_s);
}

} // namespace nimbrelle
