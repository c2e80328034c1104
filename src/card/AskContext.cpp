#include "card/AskContext.h"

namespace nimbrelle {

namespace {

QString target(const AskContext &context)
{
    return context.focusWord ? u'「' + *context.focusWord + u'」'
                             : QStringLiteral("这句话里值得注意的词和搭配");
}

} // namespace

QString AskContext::contextText() const
{
    QString text = QStringLiteral("我在看这段英文：\n") + original;
    if (translation && !translation->isEmpty())
        text += QStringLiteral("\n\n中文翻译：") + *translation;
    if (focusWord)
        text += QStringLiteral("\n\n我想重点了解的词：") + *focusWord;
    return text + QStringLiteral("\n\n下面是我的问题。");
}

QString label(QuickQuestion question)
{
    switch (question) {
    case QuickQuestion::why:
        return QStringLiteral("为什么这么用？");
    case QuickQuestion::structure:
        return QStringLiteral("拆解句子结构");
    case QuickQuestion::simpler:
        return QStringLiteral("换个简单说法");
    case QuickQuestion::examples:
        return QStringLiteral("再举几个例子");
    }
    Q_UNREACHABLE();
}

QString prompt(QuickQuestion question, const AskContext &context)
{
    switch (question) {
    case QuickQuestion::why:
        return QStringLiteral("为什么这里用") + target(context)
            + QStringLiteral("？这样说是什么意思、什么语气？换成别的说法会有什么不同？");
    case QuickQuestion::structure:
        return QStringLiteral("帮我把这句话拆开讲讲：主干是什么，每一部分起什么作用？");
    case QuickQuestion::simpler:
        return QStringLiteral("用更简单、更常见的英文把这句话再说一遍，并说明改了哪里。");
    case QuickQuestion::examples:
        return QStringLiteral("用") + target(context)
            + QStringLiteral("再造 3 个日常能用到的例句，每句附中文。");
    }
    Q_UNREACHABLE();
}

} // namespace nimbrelle
