#include "review/ReviewScreen.h"

#include "frame/Text.h"

#include <algorithm>

namespace nimbrelle::ReviewScreen {

using namespace Qt::StringLiterals;

QString badge(const ReviewQuestion &question)
{
    if (!question.isSpelling())
        return u"认"_s;
    return question.mode() == SpellMode::dictation ? u"听"_s : u"拼"_s;
}

QString prompt(const ReviewQuestion &question)
{
    const auto mode = question.mode();
    if (!mode)
        return u"它在这里是什么意思？先在心里想一想"_s;
    switch (*mode) {
    case SpellMode::copy:
        return u"看一眼再写 · 记住它的样子，消失后把它打出来"_s;
    case SpellMode::fill:
        return u"补字母 · 把空着的字母补上（打完整个词）"_s;
    case SpellMode::chunks:
        return u"按块拼 · 灰色的部分已经给你了，拼出空着的那块（打完整个词）"_s;
    case SpellMode::full:
        return u"完整拼写 · 看中文提示，把空填上"_s;
    case SpellMode::dictation:
        return u"听写 · 听发音，拼出这个词"_s;
    }
    Q_UNREACHABLE();
}

std::optional<Progress> progress(const ReviewSession &session)
{
    const qint64 total = session.queue().size();
    if (total == 0 || std::holds_alternative<ReviewSession::Finished>(session.phase()))
        return std::nullopt;
    const qint64 index = session.index();
    return Progress{
        .done = std::min(index, total), .total = total, .text = u"%1 / %2"_s.arg(index + 1).arg(total)};
}

std::optional<Foot> foot(const ReviewSession &session)
{
    const ReviewQuestion *question = session.current();
    if (!question)
        return std::nullopt;
    if (std::holds_alternative<ReviewSession::Asking>(session.phase()))
        return question->isSpelling() ? Foot::type : Foot::reveal;
    const auto *revealed = std::get_if<ReviewSession::Revealed>(&session.phase());
    if (!revealed)
        return std::nullopt;
    if (!question->isSpelling())
        return revealed->typed ? Foot::next : Foot::rate;
    return revealed->rating == Rating::again ? Foot::copy : Foot::proceed;
}

QString buttonLabel(Rating rating)
{
    switch (rating) {
    case Rating::again:
        return u"没想起来"_s;
    case Rating::hard:
        return u"有点费劲"_s;
    case Rating::good:
        return u"想起来了"_s;
    case Rating::easy:
        return u"太简单了"_s;
    }
    Q_UNREACHABLE();
}

Banner banner(const ReviewSession &session, qint64 leechThreshold)
{
    const auto entry = session.liveEntry();
    if (!entry || !std::holds_alternative<ReviewSession::Revealed>(session.phase()))
        return Banner::none;
    switch (session.lastOutcome()) {
    case ReviewOutcome::graduated:
        return Banner::graduated;
    case ReviewOutcome::becameLeech:
        return Banner::leech;
    case ReviewOutcome::normal:
        return entry->lapses() >= leechThreshold ? Banner::restLink : Banner::none;
    }
    Q_UNREACHABLE();
}

QString text(Banner banner)
{
    switch (banner) {
    case Banner::none:
        return {};
    case Banner::graduated:
        return u"毕业了！这个词已经记牢，名额空出来给新词"_s;
    case Banner::leech:
        return u"这个词有点难啃，硬背效果不好。AI 正在帮你想一个跟你有关的记法，下次出现时会显示。"_s;
    case Banner::restLink:
        return u"这个词太难了，先休息一周"_s;
    }
    Q_UNREACHABLE();
}

QString hiddenWord(const QString &word)
{
    return QString(characterCount(word), u'•');
}

QString initialLine(const ReviewQuestion &question)
{
    return u"首字母 %1 · %2 个字母"_s.arg(
        firstCharacters(question.answer, 1), QString::number(characterCount(question.answer)));
}

std::optional<QString> formLine(const ReviewQuestion &question)
{
    const auto hint = question.formHint();
    return hint ? std::optional(u"（"_s + *hint + u"）"_s) : std::nullopt;
}

std::optional<QString> baseLine(const ReviewQuestion &question)
{
    const bool isHeadword = question.answer.toLower() == question.entry.headword.toLower();
    return isHeadword ? std::nullopt : std::optional(u"← "_s + question.entry.headword);
}

bool isSentenceGenerated(const ReviewQuestion &question)
{
    const auto example = ReviewQuestion::example(question.entry);
    return question.sentence && example && example->isGenerated;
}

QString verdictName(Rating rating)
{
    switch (rating) {
    case Rating::again:
        return u"没拼出来"_s;
    case Rating::hard:
        return u"有小错"_s;
    case Rating::good:
    case Rating::easy:
        return u"拼对了"_s;
    }
    Q_UNREACHABLE();
}

Summary summary(const ReviewSession &session, const WordStore &store, Timestamp now)
{
    const auto listed = [](const QString &label, const QStringList &words) {
        return words.isEmpty() ? std::nullopt : std::optional(label + words.join(u'、'));
    };
    Summary made{.levelUps = listed(u"拼写升级："_s, session.spellLevelUps()),
        .graduated = listed(u"毕业："_s, session.graduatedWords())};
    if (session.isSpellingPractice()) {
        made.figures = u"拼对 %1 次"_s.arg(session.spelledRight());
        made.offersAgain = true;
        return made;
    }
    made.figures = u"记住了 %1 个 · 还要再练 %2 个 · 拼对 %3 个"_s.arg(session.remembered())
                       .arg(session.forgot())
                       .arg(session.spelledRight());
    made.comfort = u"忘了的词会安排在快要忘的时候再出现，不用担心。"_s;
    made.offersAgain = store.sessionCount(now) > 0;
    return made;
}

EmptyRound emptyRound(const ReviewSession &session, const WordStore &store, qint64 learningSlots)
{
    using Picture = EmptyRound::Picture;
    if (session.isSpellingPractice())
        return {.picture = Picture::letters,
            .title = u"还没有常拼的词"_s,
            .lines = {u"在「查词」窗口查一个词，点「加入常拼」。"_s, u"名字、品牌、歌名都可以。"_s}};
    if (store.entries().isEmpty())
        return {.picture = Picture::tray,
            .title = u"生词本还是空的"_s,
            .lines = {u"去网页上查几个词并保存，再回来复习。"_s}};
    const qint64 learning = store.learningCount();
    EmptyRound made{.picture = Picture::done,
        .title = u"现在没有要复习的词"_s,
        .lines = {
            u"在学 %1/%2 · 记忆最需要的是间隔，过一阵再来效果更好。"_s.arg(learning).arg(learningSlots)}};
    if (learning < learningSlots)
        made.offersMore = true;
    else
        made.lines.append(u"名额已满，等有词毕业就会自动补上。"_s);
    return made;
}

} // namespace nimbrelle::ReviewScreen
