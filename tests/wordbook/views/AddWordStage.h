#pragma once

#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"
#include "wordbook/AddWordModel.h"
#include "wordbook/views/AddWordView.h"

namespace nimbrelle {

inline LookupResult giveUp()
{
    using namespace Qt::StringLiterals;
    LookupResult result;
    result.explanation = Notebook::explained("give up", "He gave up.");
    result.explanation.phonetic = u"/ˌɡɪv ˈʌp/"_s;
    result.explanation.pos = u"phrase"_s;
    result.explanation.meaningZh = u"放弃，不再尝试"_s;
    result.explanation.register_ = u"casual"_s;
    result.explanation.definitionEn = u"to stop trying to do something"_s;
    result.aboutZh = u"口语里最常用 give up；语气更正式时用 abandon。"_s;
    result.alternatives = QList<LookupResult::Alternative>{
        {u"abandon"_s, u"彻底丢下、弃置（正式）"_s}, {u"drop it"_s, u"别提了，算了（口语）"_s}};
    return result;
}

/// The add-word window over a notebook of its own.
struct AddWordStage {
    explicit AddWordStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light) : theme(scale)
    {
        theme.setScheme(scheme);
        theme.applyToApplication();
        view.resize(view.sizeHint());
        view.show();
        view.activateWindow();
        hand.settle();
    }
    void look(const QString &word)
    {
        hand.type("word", word);
        hand.key(Qt::Key_Return);
    }
    void look(const QString &word, const LookupResult &answer)
    {
        look(word);
        ai.reply(answer);
        hand.settle();
    }

    Notebook notebook;
    FakeAI ai;
    FakeSpeaker speaker;
    Theme theme;
    AddWordModel model{notebook.config, notebook.store, ai.factory()};
    AddWordView view{theme, model, speaker};
    ViewStage hand{view};
};

} // namespace nimbrelle
