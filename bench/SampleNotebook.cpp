#include "SampleNotebook.h"

#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "review/FSRS.h"

#include <QRandomGenerator>

namespace nimbrelle::bench {

namespace {

class Maker {
public:
    explicit Maker(Timestamp now) : m_now(now) { }

    WordEntry word(qsizetype number)
    {
        WordEntry entry;
        entry.id = id();
        entry.headword = QStringLiteral("headword%1").arg(number);
        entry.phonetic = QStringLiteral("/ˈhɛdˌwɝd/");
        entry.pos = QStringLiteral("n.");
        entry.meaningZh = QStringLiteral("词条；词典里的一个词");
        entry.definitionEn = QStringLiteral("a word that has its own place in a dictionary");
        entry.registerNoteZh = QStringLiteral("多用在词典和语言学的讨论里。");
        entry.createdAt = past(200);
        entry.lookupCount = 1 + m_random.bounded(9);
        entry.lastLookupAt = past(40);
        entry.examples = {example(number, 0), example(number, 1)};
        entry.notes = QList<AINote>{note(number)};
        entry.inflections = QMap<QString, QString>{
            {QStringLiteral("base"), entry.headword}, {QStringLiteral("plural"), entry.headword + u's'}};
        entry.forms = QList<FormRecord>{form(FormKind::base, number), form(FormKind::plural, number),
            form(FormKind::past, number), form(FormKind::ing, number)};
        entry.familyRoot = QStringLiteral("head");
        entry.encounterDays = QStringList{DayKey::string(past(60)), DayKey::string(past(20))};
        entry.sourceKeys =
            QStringList{QStringLiteral("forum.example.org"), QStringLiteral("docs.example.org")};
        schedule(entry, number);
        return entry;
    }

private:
    QUuid id()
    {
        quint32 parts[4]{};
        m_random.fillRange(parts);
        return QUuid::fromRfc4122({reinterpret_cast<const char *>(parts), sizeof parts});
    }

    Timestamp past(int days) { return m_now - std::chrono::seconds{m_random.bounded(days * 86400)}; }

    Example example(qsizetype number, int which)
    {
        return {id(),
            QStringLiteral("Sentence %1 of headword%2 was met on a long page about dictionaries and words.")
                .arg(which)
                .arg(number),
            QStringLiteral("这是在一个讲词典和单词的长页面上遇到的第 %1 句。").arg(which),
            QStringLiteral("词条"), which == 1, QStringLiteral("Firefox"),
            QStringLiteral("https://forum.example.org/thread/%1").arg(number),
            QStringLiteral("A long thread"), past(100)};
    }

    AINote note(qsizetype number)
    {
        return {id(), QStringLiteral("这里为什么用 headword%1？").arg(number),
            QStringLiteral(
                "因为这里说的是词典里的一个词条，而不是它的意思。换成 word 也通顺，但不那么准确。"),
            QStringLiteral("The headword stands in bold."), QStringLiteral("词条用粗体。"), {}, {}, {},
            past(90)};
    }

    FormRecord form(FormKind kind, qsizetype number)
    {
        return {kind, QStringLiteral("form%1").arg(number), past(100), 2,
            QStringLiteral("A sentence with the form.")};
    }

    void schedule(WordEntry &entry, qsizetype number)
    {
        if (number % 3 != 0)
            return;
        entry.stage = number % 6 == 0 ? Stage::mastered : Stage::learning;
        entry.review = FSRS::review({}, Rating::good, past(30), 0.95);
        entry.spellPractice = number % 5 == 0 ? std::optional(true) : std::nullopt;
        entry.stateAt = past(30);
    }

    Timestamp m_now;
    QRandomGenerator m_random{42};
};

} // namespace

QList<WordEntry> sampleWords(qsizetype count, Timestamp now)
{
    Maker maker(now);
    QList<WordEntry> words;
    for (qsizetype i = 0; i < count; ++i)
        words.append(maker.word(i));
    return words;
}

} // namespace nimbrelle::bench
