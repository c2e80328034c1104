#include "coach/CoachQuestion.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

QString label(CoachQuestion question)
{
    switch (question) {
    case CoachQuestion::afterReview:
        return u"聊聊刚才的复习"_s;
    case CoachQuestion::focus:
        return u"今天重点记哪几个？"_s;
    case CoachQuestion::weakest:
        return u"我最近哪里最弱？"_s;
    case CoachQuestion::trick:
        return u"给我一个记词的小办法"_s;
    }
    return {};
}

QString prompt(CoachQuestion question, const QString &todayReview)
{
    switch (question) {
    case CoachQuestion::afterReview:
        return u"我刚复习完。今天复习过的词和每次的结果：\n"_s + todayReview
            + u"\n像教练一样跟我说说：哪些是真的进步了，哪个词卡住了、为什么可能会卡、下次换个什么办法。"_s;
    case CoachQuestion::focus:
        return u"今天时间不多，你帮我挑 3 个最值得花心思的词，说说为什么是它们、每个怎么记。"_s;
    case CoachQuestion::weakest:
        return u"根据我的记录，说说我最近最弱的地方是什么（比如某类词、拼写、某个时间段），别泛泛而谈，用我的词举例，再给一个小改法。"_s;
    case CoachQuestion::trick:
        return u"挑一个我最近老忘的词，给我一个和我在读的内容有关的记法，要有画面感。"_s;
    }
    return {};
}

} // namespace nimbrelle
