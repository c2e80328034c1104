#include "card/AskContext.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

QString target(const AskContext &context)
{
    return context.focusWord ? u'「' + *context.focusWord + u'」' : u"这句话里值得注意的词和搭配"_s;
}

} // namespace

QString AskContext::contextText() const
{
    QString text = u"我在看这段英文：\n"_s + original;
    if (translation && !translation->isEmpty())
        text += u"\n\n中文翻译："_s + *translation;
    if (focusWord)
        text += u"\n\n我想重点了解的词："_s + *focusWord;
    return text + u"\n\n下面是我的问题。"_s;
}

QString label(QuickQuestion question)
{
    switch (question) {
    case QuickQuestion::why:
        return u"为什么这么用？"_s;
    case QuickQuestion::structure:
        return u"拆解句子结构"_s;
    case QuickQuestion::simpler:
        return u"换个简单说法"_s;
    case QuickQuestion::examples:
        return u"再举几个例子"_s;
    }
    Q_UNREACHABLE();
}

QString prompt(QuickQuestion question, const AskContext &context)
{
    switch (question) {
    case QuickQuestion::why:
        return u"为什么这里用"_s + target(context)
            + u"？这样说是什么意思、什么语气？换成别的说法会有什么不同？"_s;
    case QuickQuestion::structure:
        return u"帮我把这句话拆开讲讲：主干是什么，每一部分起什么作用？"_s;
    case QuickQuestion::simpler:
        return u"用更简单、更常见的英文把这句话再说一遍，并说明改了哪里。"_s;
    case QuickQuestion::examples:
        return u"用"_s + target(context) + u"再造 3 个日常能用到的例句，每句附中文。"_s;
    }
    Q_UNREACHABLE();
}

} // namespace nimbrelle
