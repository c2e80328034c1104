#include "card/views/CardStage.h"
#include "looks/Looks.h"
#include "support/Printers.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

Explanation deprecate()
{
    Explanation explanation = Notebook::explained(
        "deprecate", "This method was deprecated in 3.2 and will be removed in the next major release.");
    explanation.phonetic = u"/ˈdeprəkeɪt/"_s;
    explanation.pos = u"v."_s;
    explanation.meaningZh = u"弃用，不再推荐使用"_s;
    explanation.register_ = u"technical"_s;
    explanation.sentenceZh = u"这个方法在 3.2 版被弃用，下一个大版本会删掉。"_s;
    explanation.surfaceForm = u"deprecated"_s;
    explanation.formKind = u"past_participle"_s;
    explanation.grammar = u"passive"_s;
    explanation.grammarNoteZh = u"was deprecated：被弃用"_s;
    explanation.definitionEn = u"to say that something should no longer be used"_s;
    explanation.registerNoteZh = u"技术文档里很常见。"_s;
    explanation.sentenceIsExample = true;
    explanation.familyRoot = u"precate"_s;
    explanation.affixes = QStringList{u"over"_s};
    return explanation;
}

WordCardData cardOf(const Explanation &explanation, std::optional<qint64> count = std::nullopt,
    RecallState::Kind recall = RecallState::Kind::off, bool remembered = false)
{
    return {.selection = explanation.headword,
        .explanation = explanation,
        .source = Notebook::page("https://news.ycombinator.com/item?id=1"),
        .savedLookupCount = count,
        .recall = {recall, remembered}};
}

WordCardData phraseCard()
{
    Explanation phrase = Notebook::explained(
        "take it with a grain of salt", "Take it with a grain of salt, but the benchmark says it is fast.");
    phrase.phonetic = u"/ˌteɪk ɪt wɪð ə ˌɡreɪn əv ˈsɔːlt/"_s;
    phrase.pos = u"idiom"_s;
    phrase.meaningZh = u"别全信，打个折扣听"_s;
    phrase.register_ = u"casual"_s;
    phrase.sentenceZh = u"别全信，不过跑分说它很快。"_s;
    return cardOf(phrase);
}

WordCardData longWordCard()
{
    Explanation word = Notebook::explained("pneumonoultramicroscopicsilicovolcanoconiosis");
    word.phonetic = u"/njuːˌmɒnoʊˌʌltrəˌmaɪkrəˈskɒpɪkˌsɪlɪkoʊvɒlˌkeɪnoʊˌkoʊniˈoʊsɪs/"_s;
    word.meaningZh = u"一种由吸入极细的硅尘引起的肺病，常被当作最长的英文单词来说"_s;
    return cardOf(word, 123456);
}

WordCardData affixCard()
{
    Explanation word = Notebook::explained("counterrevolutionary", "A sentence.");
    QStringList affixes;
    for (const std::string_view name : caseNames<Affix>)
        if (affixes.size() < 20)
            affixes.append(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    word.affixes = affixes;
    return cardOf(word);
}

WordCardData unlockCard()
{
    WordCardData card = cardOf(deprecate(), 1);
    card.justSaved = true;
    Unlock unlock;
    unlock.newForm = FormRecord{.kind = FormKind::pastParticiple, .form = u"rewritten"_s};
    unlock.formProgress = Progress{3, 5};
    unlock.newGrammar = GrammarPoint::passive;
    unlock.grammarProgress = Progress{7, 16};
    unlock.newAffixes = {Affix::re};
    unlock.affixProgress = Progress{9, 30};
    unlock.awakenedAfterDays = 23;
    unlock.familyMembers = {u"write"_s, u"writer"_s};
    card.unlock = unlock;
    return card;
}

struct Shot {
    const char *name;
    CardState state;
    bool isOpen = false;
};

QList<Shot> shots()
{
    using Kind = RecallState::Kind;
    const QString passage =
        u"If you are on a slow connection, consider raising the timeout before filing a bug: "
        u"most of these reports turn out to be flaky networks rather than a regression."_s;
    const TranslationData translation{passage,
        {u"网络慢的话，先把超时时间调大，再去提交 bug：这类反馈最后大多是网络不稳，而不是新版本弄坏了什么。"_s,
            QList<Translation::KeyTerm>{{u"turn out"_s, u"结果是"_s}, {u"flaky"_s, u"时好时坏的"_s},
                {u"regression"_s, u"改坏了原有功能"_s}}}};
    return {{"loading", CardLoading{u"reluctant"_s}}, {"translating", Translating{passage}},
        {"error", CardError{u"还没有填 DeepSeek API key，请在设置里填写。"_s, true}},
        {"offer", TranslateOffer{passage}}, {"new", cardOf(deprecate())},
        {"covered", cardOf(deprecate(), 4, Kind::hidden)},
        {"revealed", cardOf(deprecate(), 4, Kind::revealed)},
        {"remembered", cardOf(deprecate(), 4, Kind::done, true)},
        {"forgotten", cardOf(deprecate(), 4, Kind::done, false)}, {"unlocks", unlockCard()},
        {"open", cardOf(deprecate(), 3), true}, {"openNew", cardOf(deprecate()), true},
        {"bare", cardOf(Notebook::explained("ship"))}, {"phrase", phraseCard()}, {"longWord", longWordCard()},
        {"affixes", affixCard(), true}, {"translation", translation}};
}

} // namespace

void showCard(const Look &look, const Show &show)
{
    CardStage stage(look.scale);
    stage.screens.screens = {{1, {0, 0, 2560, 2000}, {0, 0, 2560, 1960}, 1}}; // so that none has to scroll
    stage.theme.setScheme(look.scheme);
    for (const Shot &shot : shots()) {
        stage.controller.showError({u"first"_s}, {640, 600});
        stage.controller.update(shot.state);
        stage.settle();
        if (shot.isOpen)
            stage.press("fold");
        show(stage.panel, shot.name);
        stage.controller.hide();
    }
}

} // namespace nimbrelle
