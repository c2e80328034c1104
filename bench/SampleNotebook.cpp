#include "SampleNotebook.h"

#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "review/FSRS.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace nimbrelle::bench {

namespace {

class Maker {
public:
    explicit Maker(Timestamp now) : m_now(now) { }

    WordEntry word(qsizetype number)
    {
        WordEntry entry;
        entry.id = id();
        entry.headword = u"headword%1"_s.arg(number);
        entry.phonetic = u"/ˈhɛdˌwɝd/"_s;
        entry.pos = u"n."_s;
        entry.meaningZh = u"词条；词典里的一个词"_s;
        entry.definitionEn = u"a word that has its own place in a dictionary"_s;
        entry.registerNoteZh = u"多用在词典和语言学的讨论里。"_s;
        entry.createdAt = past(200);
        entry.lookupCount = 1 + m_random.bounded(9);
        entry.lastLookupAt = past(40);
        entry.examples = {example(number, 0), example(number, 1)};
        entry.notes = QList<AINote>{note(number)};
        entry.inflections =
            QMap<QString, QString>{{u"base"_s, entry.headword}, {u"plural"_s, entry.headword + u's'}};
        entry.forms = QList<FormRecord>{form(FormKind::base, number), form(FormKind::plural, number),
            form(FormKind::past, number), form(FormKind::ing, number)};
        entry.familyRoot = u"head"_s;
        entry.encounterDays = QStringList{DayKey::string(past(60)), DayKey::string(past(20))};
        entry.sourceKeys = QStringList{u"forum.example.org"_s, u"docs.example.org"_s};
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
            u"Sentence %1 of headword%2 was met on a long page about dictionaries and words."_s.arg(which)
                .arg(number),
            u"这是在一个讲词典和单词的长页面上遇到的第 %1 句。"_s.arg(which), u"词条"_s, which == 1,
            u"Firefox"_s, u"https://forum.example.org/thread/%1"_s.arg(number), u"A long thread"_s,
            past(100)};
    }

    AINote note(qsizetype number)
    {
        return {id(), u"这里为什么用 headword%1？"_s.arg(number),
            u"因为这里说的是词典里的一个词条，而不是它的意思。换成 word 也通顺，但不那么准确。"_s,
            u"The headword stands in bold."_s, u"词条用粗体。"_s, {}, {}, {}, past(90)};
    }

    FormRecord form(FormKind kind, qsizetype number)
    {
        return {kind, u"form%1"_s.arg(number), past(100), 2, u"A sentence with the form."_s};
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
