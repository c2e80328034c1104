#include "coach/SampleLearner.h"

#include "frame/RecordCodec.h"
#include "support/Words.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

WordEntry word(const char *headword, const char *pos, const char *meaning, const char *createdAt)
{
    WordEntry entry = wordNamed(QString::fromUtf8(headword));
    entry.pos = QString::fromUtf8(pos);
    entry.meaningZh = QString::fromUtf8(meaning);
    entry.createdAt = utc(createdAt);
    return entry;
}

ReviewState reviewed(qint64 reps, qint64 lapses, double stability, const char *due)
{
    return {stability, 5, utc(due), utc("2026-03-11T00:00:00Z"), reps, lapses, 1};
}

Example met(const char *sentence, std::optional<QString> app, std::optional<QString> url,
    std::optional<QString> title, Origin origin = Origin::met)
{
    Example example = exampleOf(QString::fromUtf8(sentence), origin);
    example.sourceApp = std::move(app);
    example.sourceURL = std::move(url);
    example.sourceTitle = std::move(title);
    return example;
}

WordEntry reluctant()
{
    WordEntry entry = word("reluctant", "adj.", "不情愿的", "2026-03-13T02:00:00Z");
    entry.stage = Stage::learning;
    entry.review = reviewed(5, 3, 0.4, "2026-03-14T13:30:00Z");
    entry.spellLevel = 1;
    entry.mnemonic = u"联想：re 往回\n画面：往回躲的猫"_s;
    entry.sourceKeys = QStringList{u"reddit.com"_s, u"forum.example.org"_s};
    entry.examples = {met("An example of the AI.", {}, {}, {}, Origin::generated),
        met("I was reluctant to ask.", u"Firefox"_s, u"https://www.reddit.com/r/adhd"_s, u"A thread"_s)};
    return entry;
}

WordEntry slang()
{
    WordEntry entry = word("ngl", "abbr.", "说实话", "2026-03-11T05:00:00Z");
    entry.stage = Stage::learning;
    entry.register_ = Register::slang;
    entry.sourceKeys = QStringList{u"Reddit.com"_s};
    entry.examples = {met("ngl this is fun.", u"Discord"_s, {}, u"A thread"_s, Origin::generated)};
    return entry;
}

WordEntry formal()
{
    WordEntry entry = word("build", "v.", "建立", "2026-01-05T00:00:00Z");
    entry.stage = Stage::learning;
    entry.register_ = Register::formal;
    entry.review = reviewed(9, 5, 2.6, "2026-03-20T00:00:00Z");
    entry.spellLevel = 9;
    return entry;
}

WordEntry resting()
{
    WordEntry entry = word("deprecate", "v.", "弃用", "2026-02-01T00:00:00Z");
    entry.stage = Stage::resting;
    entry.restUntil = utc("2026-03-20T00:00:00Z");
    entry.register_ = Register::technical;
    entry.review = reviewed(6, 4, 3, "2026-03-01T00:00:00Z");
    return entry;
}

WordEntry mastered()
{
    WordEntry entry = word("decision", "n.", "决定", "2026-01-02T16:30:00Z");
    entry.stage = Stage::mastered;
    entry.review = reviewed(8, 0, 60, "2026-03-14T00:00:00Z");
    return entry;
}

WordEntry name()
{
    WordEntry entry = word("Claude", "name", "人名", "2026-03-07T13:30:00Z");
    entry.spellPractice = true;
    entry.sourceKeys = QStringList{u"常拼"_s};
    return entry;
}

WordEntry seen()
{
    WordEntry entry = word("give up on", "phrase", "放弃", "2026-03-07T13:29:59Z");
    entry.examples = {met("Don't give up on it.", {}, u"file:///home/x/notes%20two.pdf"_s, {})};
    return entry;
}

WordEntry dormant()
{
    return word("obscure", "adj.", "晦涩的", "2026-01-03T00:00:00Z");
}

QString event(const char *time, const char *kind, const char *headword, const char *detail = nullptr)
{
    const LearningLog::Event event{utc(time), QString::fromUtf8(kind), QString::fromUtf8(headword),
        detail ? std::optional(QString::fromUtf8(detail)) : std::nullopt};
    return QString::fromUtf8(encode(event, TextForm::line).value());
}

QStringList logLines()
{
    return {
        u"no JSON at all"_s,
        uR"({"time":"2026-03-14T09:00:00Z","kind":"review"})"_s,
        uR"({"time":"2026-03-14T09:00:00.5Z","kind":"review","word":"broken","detail":"again"})"_s,
        event("2026-01-02T16:30:00Z", "save", "decision"),
        event("2026-03-11T04:00:00Z", "review", "reluctant", "good"),
        // The day that two weeks begin in: one second decides.
        event("2026-02-28T13:29:59Z", "review", "reluctant", "again"),
        event("2026-02-28T13:30:00Z", "review", "reluctant", "again"),
        // A day with all four periods, one of them from an event that is no item.
        event("2026-03-10T20:00:00Z", "dance", "ngl"),
        event("2026-03-10T23:00:00Z", "review", "reluctant", "again"),
        event("2026-03-10T23:10:00Z", "recall", "reluctant", "hard"),
        event("2026-03-11T05:00:00Z", "save", "ngl", "Discord"),
        event("2026-03-11T05:01:00Z", "lookup", "reluctant", "reddit.com"),
        event("2026-03-11T10:00:00Z", "glance", "ngl"),
        // A day without an item.
        event("2026-03-12T01:00:00Z", "join", "build", "manual"),
        event("2026-03-13T02:00:00Z", "save", "reluctant", "reddit.com"),
        event("2026-03-13T02:10:00Z", "spell", "reluctant", "补字母 easy"),
        event("2026-03-13T02:05:00Z", "spell", "reluctant", "补字母 again"),
        event("2026-03-13T02:20:00Z", "review", "build", "good"),
        event("2026-03-13T02:21:00Z", "review", "build", "easy"),
        event("2026-03-13T02:22:00Z", "review", "decision", "good"),
        event("2026-03-13T02:22:00Z", "graduate", "decision"),
        event("2026-03-13T02:23:00Z", "graduate", "vanished"),
        event("2026-03-13T02:24:00Z", "review", "vanished", "again"),
        event("2026-03-13T02:25:00Z", "review", "vanished", "again"),
        event("2026-03-13T02:26:00Z", "review", "vanished", "odd"),
        // Today, from its first second.
        event("2026-03-13T16:00:00Z", "review", "reluctant", "good"),
        event("2026-03-13T16:01:00Z", "spell", "reluctant", "按块拼 hard"),
        event("2026-03-14T13:00:00Z", "recall", "deprecate", "again"),
        event("2026-03-14T13:00:00Z", "leech", "deprecate"),
        event("2026-03-14T13:00:01Z", "rest", "deprecate"),
        event("2026-03-14T13:01:00Z", "lookup", "obscure"),
        event("2026-03-14T13:02:00Z", "graduate", "decision"),
        event("2026-03-14T13:03:00Z", "spell", "Claude", "看一眼再写 good"),
        event("2026-03-14T13:04:00Z", "spell", "reluctant", "按块拼 again"),
        event("2026-03-14T13:05:00Z", "spell", "reluctant", "听写 easy"),
    };
}

} // namespace

const AppPaths &SampleLearner::prepared()
{
    seed(paths, {reluctant(), slang(), formal(), name(), resting(), mastered(), seen(), dormant()});
    log.replaceAll(logLines());
    return paths;
}

QString SampleLearner::expectedFacts()
{
    return uR"(现在：2026-03-14 星期六 晚上 21 点
第一次用 Nimbrelle 的记录：2026-01-03。有记录的日子一共 6 天
今天之前最近一次学习：2026-03-13（1 天前）
常看的地方和页面：reddit.com；forum.example.org；A thread

最近两周每天的记录（只列有活动的日子）：
- 2026-02-28（晚上）：复习 1 题（没想起来 1）
- 2026-03-11（上午、下午、晚上、深夜）：存了 1 个词；又查到已存的词 1 次；复习 3 题（没想起来 1、费劲想起 1、想起来了 1）；点开菜单栏的词看了 1 次
- 2026-03-13（上午）：存了 1 个词；复习 6 题（没想起来 2、想起来了 2、太简单 1）；拼写 2 次（拼对 1）；记牢毕业：decision, vanished
- 2026-03-14（晚上、深夜）：又查到已存的词 1 次；复习 2 题（没想起来 1、想起来了 1）；拼写 4 次（拼对 2）；记牢毕业：decision

最近 7 天新存的词（新的在前），后面是在哪里遇到的、原句：
- 2026-03-13 reluctant（adj. 不情愿的） 来自 reddit.com「A thread」：I was reluctant to ask.
- 2026-03-11 ngl（abbr. 说实话，俚语） 来自 Discord「A thread」
- 2026-03-07 Claude（name 人名）

单词本一共 8 个词：在学 3、见过 2、休息 1、掌握 1、沉睡 1。「在学」名额 30 个（只有在学和掌握的词会复习）
「在学」的词：
- build（建立，正式）：复习 9 次，忘 5 次，现在大约能记 3 天，拼写练到「听写」
- reluctant（不情愿的）：复习 5 次，忘 3 次，现在大约能记 不到 1 天，拼写练到「补字母」
- ngl（说实话，俚语）：还没复习过

最近两周忘过两次以上的词：
- reluctant：没想起来 → 没想起来 → 费劲想起 → 想起来了 → 想起来了。意思：不情愿的。原句：I was reluctant to ask.。已经给过的联想：联想：re 往回 画面：往回躲的猫
- vanished：没想起来 → 没想起来 → odd
最近两次都想起来了的词：build, reluctant
难啃的词（忘了 4 次以上）：build, deprecate
正在休息、暂时不考的词：deprecate
已经掌握的词：decision
最近两周每个词的拼写结果（按时间先后）：
- Claude：看一眼再写 good
- reluctant：补字母 again → 补字母 easy → 按块拼 hard → 按块拼 again → 听写 easy
「常拼」（想练拼写的名字、品牌等）有 1 个：Claude

今天已经复习了 2 题。现在打开复习，这一轮有 4 题，每题大约 15～20 秒)"_s;
}

QString SampleLearner::expectedReview()
{
    return uR"(reluctant：想起来了 → 拼写（按块拼 有小错） → 拼写（按块拼 拼错） → 拼写（听写 拼对）
deprecate：没想起来 → 变成难啃的词 → 先休息
decision：毕业了
Claude：拼写（看一眼再写 拼对）)"_s;
}

} // namespace nimbrelle
