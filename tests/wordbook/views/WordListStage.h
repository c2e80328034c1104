#pragma once

#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"
#include "support/Words.h"
#include "wordbook/views/NotebookList.h"
#include "wordbook/views/WordListView.h"

#include <QMenu>

namespace nimbrelle {

/// The notebook's screen over a notebook as its user may have it.
struct WordListStage {
    explicit WordListStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light) : theme(scale)
    {
        theme.setScheme(scheme);
        theme.applyToApplication();
        notebook.configure([](AppConfig &config) { config.learningSlots = 5; });
    }

    void open()
    {
        view.resize(view.sizeHint());
        view.show();
        view.activateWindow();
        hand.settle();
    }

    void fill() { notebook.store.applySync(sample()); }

    NotebookList &list(const char *name) const { return *hand.find<NotebookList>(name); }
    QStringList rows(const char *name) const
    {
        QStringList titles;
        const QAbstractItemModel &model = *list(name).model();
        for (int i = 0; i < model.rowCount(); ++i)
            titles.append(model.index(i, 0).data().toString());
        return titles;
    }
    /// The one row that the list shows as chosen; empty for none.
    QString chosen(const char *name) const
    {
        const auto selected = list(name).selectionModel()->selectedIndexes();
        return selected.isEmpty() ? QString() : selected.first().data().toString();
    }
    QModelIndex row(const char *name, const QString &title) const
    {
        const QAbstractItemModel &model = *list(name).model();
        for (int i = 0; i < model.rowCount(); ++i)
            if (model.index(i, 0).data().toString() == title)
                return model.index(i, 0);
        throw std::runtime_error("no row " + title.toStdString());
    }
    void click(const char *name, const QString &title, Qt::MouseButton button = Qt::LeftButton)
    {
        const QModelIndex index = row(name, title);
        list(name).scrollTo(index);
        const QPoint at = list(name).visualRect(index).center();
        QTest::mouseClick(list(name).viewport(), button, {}, at);
        if (button == Qt::RightButton) {
            QContextMenuEvent event(QContextMenuEvent::Mouse, at, list(name).viewport()->mapToGlobal(at));
            QCoreApplication::sendEvent(list(name).viewport(), &event);
        }
        hand.settle();
    }
    void pick(const char *menu, const QString &text)
    {
        for (QAction *action : hand.find<QMenu>(menu)->actions())
            if (action->text() == text)
                action->trigger();
        hand.find<QMenu>(menu)->close();
        hand.settle();
    }

    static SyncBundle sample();

    Notebook notebook;
    FakeSpeaker speaker;
    Theme theme;
    WordListView view{{.theme = theme,
        .clock = notebook.clock,
        .config = notebook.config,
        .words = notebook.store,
        .speaker = speaker}};
    ViewStage hand{view};
};

inline WordEntry sampleWord(
    const QString &headword, const QString &meaning, std::optional<Stage> stage, Timestamp now)
{
    WordEntry word = wordNamed(headword);
    word.meaningZh = meaning;
    word.stage = stage;
    word.createdAt = now;
    return word;
}

inline WordEntry sampleRegression(Timestamp now)
{
    using namespace Qt::StringLiterals;
    WordEntry word = sampleWord(u"regression"_s, u"改坏了原有功能"_s, Stage::learning, addDays(now, -27));
    word.phonetic = u"/rɪˈɡreʃn/"_s;
    word.pos = u"n."_s;
    word.definitionEn = u"when something gets worse after a change"_s;
    word.register_ = Register::technical;
    word.lookupCount = 5;
    word.encounterDays = QStringList{u"2026-02-02"_s, u"2026-02-12"_s, u"2026-02-22"_s};
    word.review = ReviewState{.due = addDays(now, 2), .reps = 6, .lapses = 4};
    word.spellPractice = true;
    word.familyRoot = u"regress"_s;
    word.inflections = QMap<QString, QString>{{u"base"_s, u"regression"_s}, {u"plural"_s, u"regressions"_s}};
    word.forms = QList<FormRecord>{{.kind = FormKind::base, .form = u"regression"_s, .count = 5}};
    Example met =
        exampleOf(u"Most of these reports turn out to be flaky networks rather than a regression."_s);
    met.sentenceZh = u"这类反馈最后大多是网络不稳，而不是新版本弄坏了什么。"_s;
    Example made = exampleOf(u"The update caused a regression."_s, Origin::generated);
    made.sourceApp = u"Firefox"_s;
    made.sourceURL = u"https://news.ycombinator.com/item?id=1"_s;
    made.sourceTitle = u"Show HN: A notebook for those who read more than they can keep in mind"_s;
    word.examples = {met, made};
    word.notes = QList<AINote>{{.id = QUuid::createUuid(),
        .question = u"为什么这么用？"_s,
        .answer = u"**regression** 在软件里专指「新版本把原来好的功能弄坏了」。\n- 常和 cause、fix 连用"_s}};
    word.mnemonic = u"re（往回）+ gress（走）：功能往回走，就是退步了。"_s;
    return word;
}

inline SyncBundle WordListStage::sample()
{
    using namespace Qt::StringLiterals;
    const Timestamp now = ManualClock().now();
    SyncBundle bundle;
    bundle.words = {sampleWord(u"reluctant"_s, u"不情愿的"_s, Stage::learning, now),
        sampleWord(u"deprecate"_s, u"弃用"_s, Stage::learning, now),
        sampleWord(u"ngl"_s, u"说真的"_s, std::nullopt, now),
        sampleWord(u"overthink"_s, u"想太多"_s, std::nullopt, now), sampleRegression(now),
        sampleWord(u"flaky"_s, u"时好时坏的"_s, Stage::resting, now),
        sampleWord(u"rewrite"_s, u"重写"_s, Stage::mastered, now),
        sampleWord(u"take it with a grain of salt and then some more"_s, u"别全信"_s, std::nullopt, now),
        sampleWord(u"idempotent"_s, u"幂等的"_s, std::nullopt, addDays(now, -40)),
        sampleWord(u"regressive"_s, u"倒退的"_s, std::nullopt, now)};
    bundle.words[1].notes = QList<AINote>{AINote{}};
    bundle.words[3].wantToLearn = true;
    bundle.words[9].familyRoot = u"regress"_s;
    Example rewritten =
        exampleOf(u"The config loader was rewritten in Rust last year, and nobody noticed."_s);
    rewritten.sentenceZh = u"配置加载器去年用 Rust 重写了，谁也没发现。"_s;
    bundle.words[6].examples = {rewritten};
    bundle.words[6].inflections = QMap<QString, QString>{{u"pastParticiple"_s, u"rewritten"_s}};
    bundle.grammar = {{.id = QUuid::createUuid(),
        .point = GrammarPoint::passive,
        .headword = u"deprecate"_s,
        .surface = u"deprecated"_s,
        .sentence = u"This method was deprecated in 3.2."_s,
        .sentenceZh = u"这个方法在 3.2 版被弃用。"_s,
        .noteZh = u"was deprecated：被弃用"_s,
        .sourceApp = u"Firefox"_s}};
    bundle.affixes = {{.id = QUuid::createUuid(),
                          .affix = Affix::re,
                          .headword = u"rewrite"_s,
                          .sentence = rewritten.sentence},
        {.id = QUuid::createUuid(),
            .affix = Affix::re,
            .headword = u"reinstall"_s,
            .sentence = u"I had to reinstall the driver twice before it worked."_s}};
    bundle.notes = {{.id = QUuid::createUuid(),
                        .question = u"为什么这么用？"_s,
                        .answer = u"**turn out** 表示「结果是」。"_s,
                        .original = u"Most of these reports turn out to be flaky networks."_s,
                        .translation = u"这类反馈最后大多是网络不稳。"_s,
                        .sourceApp = u"Firefox"_s,
                        .sourceURL = u"https://example.org/a"_s},
        {.id = QUuid::createUuid(),
            .question = u"拆一下句子结构"_s,
            .answer = u"主语是 **it**。"_s,
            .original = u"It is worth a try."_s}};
    return bundle;
}

} // namespace nimbrelle
