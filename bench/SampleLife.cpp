#include "SampleLife.h"

#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "notebook/Rounds.h"
#include "notebook/SlotPlan.h"
#include "notebook/WordChanges.h"
#include "review/FSRS.h"

#include <QHash>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle::bench {

namespace {

struct Place {
    const char16_t *app;
    const char16_t *url; ///< null for a program without pages
    const char16_t *key;
};

constexpr Place places[]{{u"Firefox", u"https://www.reddit.com/r/linux/comments/1k2f", u"reddit.com"},
    {u"Firefox", u"https://stackoverflow.com/questions/7713452", u"stackoverflow.com"},
    {u"Chromium", u"https://docs.example.org/releases/3.2", u"docs.example.org"}, {u"mpv", nullptr, u"mpv"},
    {u"Firefox", u"https://news.example.com/a", u"news.example.com"}};

constexpr const char16_t *sentences[]{u"Nobody on the thread could explain the %1 to me.",
    u"It took me an hour to find the %1 in the settings.", u"The %1 is mentioned once, in a footnote.",
    u"I only noticed the %1 after the second reading."};

class Life {
public:
    Life(const Reader &reader, Timestamp now) : m_reader(reader), m_now(now - std::chrono::days{reader.days})
    {
    }

    GrowthSource lived()
    {
        for (int day = 0; day < m_reader.days; ++day) {
            read();
            for (int round = 0; round < m_reader.roundsDaily; ++round)
                review(round == 0);
            m_now += std::chrono::days{1};
        }
        std::ranges::reverse(m_life.words); // the newest first
        std::ranges::reverse(m_life.affixes);
        return m_life;
    }

private:
    void log(LogKind kind, const QString &word, const std::optional<QString> &detail = std::nullopt)
    {
        m_now += std::chrono::seconds{1};
        m_life.events.append({.time = m_now, .kind = caseText(kind), .word = word, .detail = detail});
    }

    void read()
    {
        const int saved = m_random.bounded(2 * m_reader.savedDaily + 1);
        for (int i = 0; i < saved && m_life.words.size() < m_reader.vocabulary.size(); ++i)
            save(m_reader.vocabulary[m_life.words.size()]);
        for (int i = 0; i < m_reader.lookupsDaily && !m_life.words.isEmpty(); ++i)
            meet(m_life.words[m_random.bounded(m_life.words.size())]);
    }

    void save(const QString &headword)
    {
        WordEntry word;
        word.id = id();
        word.headword = headword;
        word.meaningZh = u"%1 的意思"_s.arg(headword);
        word.createdAt = m_now;
        word.inflections = QMap<QString, QString>{{u"base"_s, headword}, {u"plural"_s, headword + u's'}};
        const Place &place = placeAtRandom();
        log(LogKind::save, headword, QString::fromUtf16(place.key));
        meet(word, place);
        word.examples = {example(headword, place)};
        if (m_life.words.size() % 4 == 0)
            m_life.affixes.append({.id = id(),
                .affix = static_cast<Affix>(m_random.bounded(int(caseCount<Affix>))),
                .headword = headword,
                .root = {},
                .sentence = {},
                .addedAt = m_now});
        m_life.grammar.append({.id = id(),
            .point = static_cast<GrammarPoint>(m_random.bounded(int(caseCount<GrammarPoint>))),
            .headword = headword,
            .surface = headword,
            .sentence = word.examples.first().sentence,
            .sentenceZh = {},
            .noteZh = {},
            .sourceApp = {},
            .sourceURL = {},
            .sourceTitle = {},
            .addedAt = m_now});
        m_life.words.append(word);
    }

    void meet(WordEntry &word)
    {
        const Place &place = placeAtRandom();
        log(LogKind::lookup, word.headword, QString::fromUtf16(place.key));
        ++word.lookupCount;
        word.lastLookupAt = m_now;
        meet(word, place);
    }

    void meet(WordEntry &word, const Place &place)
    {
        QStringList keys = word.sourceKeys.value_or(QStringList()),
                    days = word.encounterDays.value_or(QStringList());
        keys.append(QString::fromUtf16(place.key));
        days.append(DayKey::string(m_now));
        keys.removeDuplicates();
        days.removeDuplicates();
        word.sourceKeys = keys;
        word.encounterDays = days;
        const FormKind kind = m_random.bounded(3) == 0 ? FormKind::plural : FormKind::base;
        QList<FormRecord> forms = word.forms.value_or(QList<FormRecord>());
        if (std::ranges::find(forms, kind, &FormRecord::kind) == forms.end())
            forms.append(
                {.kind = kind, .form = word.headword, .firstSeenAt = m_now, .count = 1, .sentence = {}});
        word.forms = forms;
    }

    Example example(const QString &headword, const Place &place)
    {
        return {.id = id(),
            .sentence =
                QString::fromUtf16(sentences[m_random.bounded(int(std::size(sentences)))]).arg(headword),
            .sentenceZh = u"这一句里有 %1。"_s.arg(headword),
            .meaningZh = {},
            .isGenerated = false,
            .sourceApp = QString::fromUtf16(place.app),
            .sourceURL = place.url ? std::optional(QString::fromUtf16(place.url)) : std::nullopt,
            .sourceTitle = {},
            .addedAt = m_now};
    }

    void review(bool isFirst)
    {
        const SlotPlan plan =
            planSlots(m_life.words, m_life.config, isFirst ? 0 : m_life.config.dailyNewLimit, 0, m_now);
        for (const qsizetype i : plan.waking)
            WordChanges::wake(m_life.words[i], m_now);
        for (const qsizetype i : plan.joining) {
            WordChanges::joinLearning(m_life.words[i], m_now);
            log(LogKind::join, m_life.words[i].headword);
        }
        QHash<QUuid, qsizetype> positions;
        for (qsizetype i = 0; i < m_life.words.size(); ++i)
            positions.insert(m_life.words[i].id, i);
        for (const QUuid &asked : Rounds::review(m_life.words, m_life.config.sessionSize, m_now))
            answer(m_life.words[positions.value(asked)]);
    }

    /// A memory that forgets a little faster than the scheduler expects.
    void answer(WordEntry &word)
    {
        const double recall = word.review ? FSRS::retrievability(*word.review, m_now) : 0.6;
        const bool isRecalled = m_random.generateDouble() < recall * 0.97;
        const Rating rating =
            isRecalled ? (m_random.bounded(4) == 0 ? Rating::hard : Rating::good) : Rating::again;
        log(LogKind::review, word.headword, caseText(rating));
        if (WordChanges::review(word, rating, m_life.config, m_now) == ReviewOutcome::graduated)
            log(LogKind::graduate, word.headword);
        else if (word.stage == Stage::learning && rating == Rating::again && m_random.bounded(6) == 0) {
            WordChanges::rest(word, WordChanges::restDays, m_now);
            log(LogKind::rest, word.headword);
        }
    }

    const Place &placeAtRandom() { return places[m_random.bounded(int(std::size(places)))]; }

    QUuid id()
    {
        quint32 parts[4]{};
        m_random.fillRange(parts);
        return QUuid::fromRfc4122({reinterpret_cast<const char *>(parts), sizeof parts});
    }

    const Reader m_reader;
    Timestamp m_now;
    GrowthSource m_life;
    QRandomGenerator m_random{42};
};

} // namespace

GrowthSource sampleLife(const Reader &reader, Timestamp now)
{
    return Life(reader, now).lived();
}

} // namespace nimbrelle::bench
