#include "looks/Looks.h"
#include "review/views/ReviewStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct LookStage : ReviewStage {
    LookStage(const Look &look, const Show &shown) : ReviewStage(look.scale, look.scheme), show(shown) { }

    void keep(const char *state) { show(*view, state); }
    static void tell(WordEntry &word, const char *meaning, const char *definition, const char *sentence,
        const char *translation)
    {
        word.meaningZh = QString::fromUtf8(meaning);
        word.definitionEn = QString::fromUtf8(definition);
        word.examples = {exampleOf(QString::fromUtf8(sentence))};
        word.examples.first().sentenceZh = QString::fromUtf8(translation);
    }
    WordEntry reluctant() const
    {
        WordEntry word = due("reluctant", 1);
        word.phonetic = u"/rɪˈlʌktənt/"_s;
        tell(word, "不情愿的，犹豫的", "not wanting to do something",
            "I was reluctant to rewrite the whole parser, but the old one kept crashing on empty lines.",
            "我本来不太愿意重写整个解析器，可旧的那个一碰到空行就崩溃。");
        word.mnemonic = u"re- 是往回，luct 是较劲：心里有个小人拽着你往回走。"_s;
        return word;
    }
    WordEntry deprecate(SpellMode mode) const
    {
        WordEntry word = practised("deprecate", mode);
        word.phonetic = u"/ˈdeprəkeɪt/"_s;
        word.pos = u"v."_s;
        word.register_ = Register::technical;
        word.inflections = QMap<QString, QString>{{u"pastParticiple"_s, u"deprecated"_s}};
        tell(word, "弃用，不再推荐使用", "to say that something should no longer be used",
            "This method was deprecated in 3.2 and will be removed in the next major release.",
            "这个方法在 3.2 版被弃用，下一个大版本会删掉。");
        return word;
    }

    const Show &show;
};

void answer(const LookStage &stage, const char *typed)
{
    stage.session->setInput(QString::fromUtf8(typed));
    stage.session->submit();
}

void showRecognition(LookStage &stage)
{
    WordEntry other = stage.due("take it with a grain of salt", 9);
    other.phonetic = u"/ˌteɪk ɪt wɪð ə ˌɡreɪn əv ˈsɔːlt/"_s;
    other.examples.first().isGenerated = true;
    WordEntry third = stage.due("pneumonoultramicroscopicsilicovolcanoconiosis", 12);
    third.meaningZh = u"一种由吸入极细的硅尘引起的肺病，常被当作最长的英文单词来说"_s;
    stage.open({stage.reluctant(), other, third});
    stage.session->start(0);
    stage.keep("asking");
    stage.session->reveal();
    stage.keep("revealed");
    stage.session->rate(Rating::hard);
    stage.keep("phrase");
    stage.session->reveal();
    stage.keep("phraseRevealed");
    stage.session->rate(Rating::hard);
    stage.session->reveal();
    stage.keep("longWord");
    stage.session->rate(Rating::hard);
    stage.keep("finished");
}

void showOutcomes(LookStage &stage)
{
    stage.configure([](AppConfig &config) { config.leechThreshold = 2; });
    WordEntry leech = stage.reluctant();
    leech.review->lapses = 1;
    WordEntry firm = stage.due("walk", 400);
    firm.review->lapses = 5;
    stage.open({leech, firm});
    stage.session->start(0);
    stage.session->reveal();
    stage.session->rate(Rating::again);
    stage.keep("leech");
    stage.session->next();
    stage.session->reveal();
    stage.keep("restLink");
    stage.session->rate(Rating::easy);
    stage.keep("graduated");
    stage.session->next();
    answer(stage, "walk");
    stage.session->next();
    stage.session->reveal();
    stage.session->rate(Rating::hard);
    stage.session->next();
    stage.keep("finishedWell");
}

void showSpelling(LookStage &stage)
{
    const struct {
        const char *name;
        SpellMode mode;
        const char *typed;
    } shots[] = {{"copy", SpellMode::copy, ""}, {"fill", SpellMode::fill, "depra"},
        {"chunks", SpellMode::chunks, "depre"}, {"full", SpellMode::full, "deprecatedx"},
        {"dictation", SpellMode::dictation, ""}};
    for (const auto &shot : shots) {
        stage.openSpelling({stage.deprecate(shot.mode)});
        stage.session->setInput(QString::fromUtf8(shot.typed));
        stage.keep(shot.name);
    }
    stage.openSpelling({stage.deprecate(SpellMode::copy)});
    stage.clock.advance(std::chrono::seconds(3));
    stage.keep("copyHidden");
    stage.openSpelling({stage.deprecate(SpellMode::fill)});
    answer(stage, "nonsense");
    stage.focus();
    stage.session->setCopyInput(u"depr"_s);
    stage.keep("again");
    stage.openSpelling({stage.deprecate(SpellMode::full)});
    answer(stage, "deprecate");
    stage.keep("hard");
    stage.openSpelling({stage.deprecate(SpellMode::dictation)});
    answer(stage, "deprecate");
    stage.keep("good");
    stage.session->next();
    stage.keep("finishedSpelling");
    stage.openSpelling({stage.practised("never look a gift horse in the mouth", SpellMode::fill)});
    stage.keep("longPhrase");
    answer(stage, "");
    stage.keep("longPhraseAgain");
}

void showEmptyRounds(LookStage &stage)
{
    stage.open({});
    stage.keep("emptyNotebook");
    stage.session->startSpelling();
    stage.keep("emptySpelling");
    WordEntry later = stage.due("run");
    later.review->due = stage.clock.now() + std::chrono::hours(48);
    stage.open({later});
    stage.session->start(0);
    stage.keep("emptyDone");
}

} // namespace

void showReview(const Look &look, const Show &show)
{
    for (const auto part : {showRecognition, showOutcomes, showSpelling, showEmptyRounds}) {
        LookStage stage(look, show);
        part(stage);
    }
}

} // namespace nimbrelle
