#include "main/SelfTestReview.h"
#include "shell/MenuBarText.h"

#include <QTextStream>

namespace nimbrelle::SelfTest {

using namespace Qt::StringLiterals;

namespace {

WordEntry sampleWord(const QString &headword, const QString &sentence)
{
    WordEntry entry;
    entry.headword = headword;
    entry.examples = {{{}, sentence, {}, {}, false, {}, {}, {}, Timestamp{}}};
    return entry;
}

QList<WordEntry> sampleWords()
{
    WordEntry run = sampleWord(u"run"_s, u"She was running late, so she ran."_s);
    run.inflections = {{u"ing"_s, u"running"_s}, {u"past"_s, u"ran"_s}, {u"thirdPerson"_s, u"runs"_s}};
    return {run,
        sampleWord(u"give up on"_s,
            u"Honestly I would never give up on a project like this one just because the build is slow."_s),
        sampleWord(u"deprecate"_s, u"This API is Deprecated and will be removed."_s),
        sampleWord(u"ngl"_s, u"that was kinda wild"_s)};
}

QString boldText(const MenuBarText::SentenceTitle &title)
{
    if (!title.bold)
        return u"（句子里没找到）"_s;
    return title.text.mid(title.bold->start, title.bold->length).replace(u'\n', u'⏎');
}

} // namespace

void runMenuBar(QTextStream &out)
{
    for (const QString &word : {u"ngl"_s, u"deprecate"_s, u"internationalization"_s, u"give up on"_s})
        out << u"菜单栏："_s << word << u" → "_s << MenuBarText::title(word) << Qt::endl;
    for (const WordEntry &word : sampleWords()) {
        if (const auto title = MenuBarText::sentenceTitle(word))
            out << u"---\n%1\n加粗：%2"_s.arg(title->text, boldText(*title)) << Qt::endl;
    }
    const QString chinese = u"（表示某事）被正式宣布为过时、不推荐再使用的，以后版本会删除"_s;
    out << u"---\n中文折行：\n"_s << MenuBarText::wrap(chinese, MenuBarText::sentenceWrapWidth) << Qt::endl;
}

} // namespace nimbrelle::SelfTest
