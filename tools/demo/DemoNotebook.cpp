#include "DemoNotebook.h"

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"

#include <QCoro/QCoroTask>
#include <QHash>
#include <QTest>

#include <algorithm>
#include <stdexcept>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 firstDay = 27;

struct Page {
    const char16_t *app;
    const char16_t *url; ///< null for a program without pages
    const char16_t *title;
};

constexpr Page switching{
    u"Firefox", u"https://www.reddit.com/r/linux/comments/1k2f", u"What finally made you switch? : r/linux"};
constexpr Page parser{u"Firefox", u"https://stackoverflow.com/questions/7713452",
    u"Parser crashes on empty lines - Stack Overflow"};
constexpr Page notes{u"Chromium", u"https://docs.example.org/releases/3.2", u"Release notes 3.2"};
constexpr Page habits{
    u"Firefox", u"https://www.reddit.com/r/getdisciplined/comments/9xq", u"How I stopped procrastinating"};
constexpr Page video{u"mpv", nullptr, u"A keyboard from scratch"};

/// A word met while reading, in a sentence that the practice provider knows.
struct Meeting {
    qint64 daysAgo;
    const char16_t *word;
    const char16_t *sentence;
    const Page &page;
};

const Meeting meetings[] = {
    {27, u"crashes", u"The app crashes every time I rotate the screen.", parser},
    {27, u"awkward", u"I waved back at someone who wasn't waving at me; so awkward.", switching},
    {27, u"writer", u"The writer clearly never used the product.", switching},
    {27, u"lurking", u"I've been lurking here for years, and this is my first post.", switching},
    {26, u"figure out", u"It took me an hour to figure out where the setting was.", parser},
    {26, u"latency", u"The latency drops a lot if you pick a server near you.", notes},
    {24, u"distracted", u"I get distracted by every little sound.", habits},
    {24, u"overwhelmed", u"I feel overwhelmed when I see two hundred unread emails.", habits},
    {22, u"workaround", u"It's not pretty, but this workaround saved my evening.", parser},
    {22, u"wrote", u"I wrote this on my phone, so sorry for the typos.", switching},
    {22, u"ended up", u"I went to buy a mouse and ended up with a new laptop.", switching},
    {21, u"eventually", u"I eventually gave up and read the source code.", parser},
    {20, u"bottleneck", u"The database is the bottleneck, not your code.", parser},
    {18, u"frustrating", u"It's frustrating when the guide skips the one step you need.", parser},
    {17, u"underrated", u"This is the most underrated app on my phone.", switching},
    {15, u"subtle", u"There is a subtle bug in the date code.", parser},
    {14, u"controversial", u"Tabs or spaces is still the most controversial question here.", switching},
    {13, u"idempotent", u"Make the endpoint idempotent so that a retry never charges the user twice.", notes},
    {12, u"procrastinate", u"I cleaned my whole desk just to procrastinate.", habits},
    {12, u"convinced", u"You convinced me to give Linux another try.", switching},
    {11, u"regressions", u"We caught two regressions before the release went out.", notes},
    {9, u"idempotent", u"Make the endpoint idempotent so that a retry never charges the user twice.", notes},
    {8, u"relatable", u"Forgetting why you opened the fridge is so relatable.", habits},
    {8, u"unwilling", u"They were unwilling to pay for a tool they used every day.", switching},
    {7, u"rewritten", u"The config loader was rewritten in Rust last year, and nobody noticed.", notes},
    {6, u"underestimate", u"Never underestimate how long a small change takes.", parser},
    {5, u"hesitant", u"I'm hesitant to update because the last one broke my sound.", switching},
    {5, u"bottleneck", u"The database is the bottleneck, not your code.", parser},
    {4, u"flaky", u"The test is flaky: it passes on my laptop and fails on the server.", notes},
    {3, u"sarcasm", u"It's hard to notice sarcasm in a text message.", switching},
    {3, u"rewrite", u"I'd rather rewrite this function than debug it again.", parser},
    {2, u"rabbit hole", u"I went down a rabbit hole and read about keyboards until 3 a.m.", video},
    {2, u"compatible", u"The new driver isn't compatible with my old card.", switching},
    {1, u"rewrite",
        u"I was reluctant to rewrite the whole parser, but the old one kept crashing on empty lines.",
        parser},
    {1, u"overthinking", u"Stop overthinking it and just ship the first version.", habits},
    {0, u"appreciate", u"I really appreciate you taking the time to answer.", switching},
};

const QStringList spelled{u"definitely"_s, u"recommend"_s, u"放弃"_s};
constexpr qint64 spelledSince = 16;

/// Evenings without a round, as they happen.
constexpr qint64 skipped[] = {25, 23, 20, 19, 16, 10, 7, 0};

Rating ratingOf(const WordEntry &word)
{
    static const QHash<QString, QList<Rating>> hard{
        {u"idempotent"_s, {Rating::again, Rating::again, Rating::hard, Rating::again, Rating::hard}},
        {u"awkward"_s, {Rating::again, Rating::hard}},
        {u"procrastinate"_s, {Rating::again, Rating::again, Rating::hard}},
        {u"subtle"_s, {Rating::good, Rating::again}},
        {u"crash"_s, {Rating::easy, Rating::easy}},
        {u"write"_s, {Rating::easy, Rating::easy}},
    };
    return hard.value(word.headword).value(word.review.value_or(ReviewState()).reps, Rating::good);
}

PageSource sourceOf(const Page &page)
{
    PageSource source;
    source.app = QString::fromUtf16(page.app);
    if (page.url)
        source.url = QString::fromUtf16(page.url);
    source.title = QString::fromUtf16(page.title);
    return source;
}

} // namespace

DemoNotebook::DemoNotebook(const QString &directory, Timestamp now)
    : m_now(now)
    , m_clock(now)
    , m_paths(directory)
    , m_config(m_paths, m_clock)
    , m_log(m_paths, m_clock)
    , m_client(m_config.config(), m_connections)
    , m_words(m_paths, m_clock, m_config, m_log,
          [this](const WordEntry &word, const QStringList &knownWords, const QStringList &interests) {
              return m_client.mnemonic(word, knownWords, interests);
          })
{
}

void DemoNotebook::fill()
{
    for (qint64 daysAgo = firstDay; daysAgo >= 0; --daysAgo) {
        m_clock.set(addDays(m_now, -daysAgo) - 3h);
        readOn(daysAgo);
        if (std::ranges::find(skipped, daysAgo) != std::ranges::end(skipped))
            continue;
        m_clock.set(addDays(m_now, -daysAgo) - 1h);
        reviewOn(daysAgo);
        spellOn(daysAgo);
    }
    keepNotes();
    wantToLearn(u"relatable"_s);
    wantToLearn(u"compatible"_s);
    findMemoryAid(u"idempotent"_s);
}

void DemoNotebook::readOn(qint64 daysAgo)
{
    for (const Meeting &meeting : meetings) {
        if (meeting.daysAgo != daysAgo)
            continue;
        const Explanation answer = QCoro::waitFor(m_client.explain(
            QString::fromUtf16(meeting.word), std::optional(QString::fromUtf16(meeting.sentence))));
        const PageSource source = sourceOf(meeting.page);
        if (m_words.findHeadword(answer.headword))
            m_words.recordLookup(answer, source);
        m_words.save(answer, source); // which adds the sentence to a word that is there already
    }
    if (daysAgo == spelledSince)
        for (const QString &query : spelled)
            practiseSpelling(query);
}

void DemoNotebook::reviewOn(qint64 daysAgo)
{
    const QList<QUuid> round = m_words.buildSession(0);
    for (const QUuid &id : round) {
        m_clock.set(m_clock.now() + 20s);
        m_words.applyReview(id, ratingOf(*m_words.find(id)), LogKind::review);
    }
    if (daysAgo == 5)
        m_words.rest(idOf(u"controversial"_s), 7);
}

void DemoNotebook::spellOn(qint64 daysAgo)
{
    if (daysAgo % 3 != 0)
        return;
    for (const QUuid &id : m_words.buildSpellingSession(3)) {
        m_clock.set(m_clock.now() + 20s);
        m_words.applySpelling(id, Rating::good);
    }
}

void DemoNotebook::practiseSpelling(const QString &query)
{
    const LookupResult result = QCoro::waitFor(m_client.lookup(query));
    m_words.addSpellPractice(result.explanation);
}

void DemoNotebook::keepNotes()
{
    m_clock.set(m_now - 2h);
    const PageSource source = sourceOf(parser);
    const AINote note{QUuid::createUuid(), u"为什么这么用？"_s,
        u"be **reluctant to do** 是固定搭配：心里不太愿意，但不一定拒绝。\n"
        "后面的 **kept crashing** 用 keep doing，强调“一次又一次地崩”，比 crashed 更有画面。"_s,
        u"I was reluctant to rewrite the whole parser, but the old one kept crashing on empty lines."_s,
        u"我本来不太想重写整个解析器，但旧的那个遇到空行总崩。"_s, source.app, source.url, source.title,
        m_clock.now()};
    m_words.addNote(note, u"rewrite"_s);
    AINote sentence = note;
    sentence.id = QUuid::createUuid();
    m_words.addSentenceNote(sentence);
}

void DemoNotebook::wantToLearn(const QString &headword)
{
    m_words.setWantToLearn(idOf(headword), true);
}

void DemoNotebook::findMemoryAid(const QString &headword)
{
    const QUuid id = idOf(headword);
    m_words.requestMnemonic(id);
    if (!QTest::qWaitFor([&] { return m_words.find(id)->mnemonic.has_value(); }))
        throw std::runtime_error("no memory aid came");
}

QUuid DemoNotebook::idOf(const QString &headword) const
{
    const WordEntry *word = m_words.findHeadword(headword);
    if (!word)
        throw std::runtime_error("the notebook has no " + headword.toStdString());
    return word->id;
}

} // namespace nimbrelle
