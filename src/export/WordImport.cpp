#include "export/WordImport.h"

#include "ai/AIError.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "http/TransportError.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "notebook/WordStore.h"

#include <QSet>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto retryAfter = 60s;
constexpr qsizetype mostInARow = 3;

/// Nothing that another word would change.
bool needsTheUser(const std::exception &failure)
{
    constexpr qint64 forbidden = 403;
    const auto *error = dynamic_cast<const AIError *>(&failure);
    if (!error)
        return false;
    switch (error->kind()) {
    case AIError::Kind::noKey:
    case AIError::Kind::unauthorized:
    case AIError::Kind::noBalance:
        return true;
    case AIError::Kind::http:
        return error->status() == forbidden;
    case AIError::Kind::badResponse:
        break;
    }
    return false;
}

/// The provider can't be reached, or has too much to do.
bool passes(const std::exception &failure)
{
    constexpr qint64 tooManyRequests = 429, firstServerError = 500;
    if (dynamic_cast<const TransportError *>(&failure))
        return true;
    const auto *error = dynamic_cast<const AIError *>(&failure);
    return error && (error->status() == tooManyRequests || error->status() >= firstServerError);
}

QString sentence(const QString &text)
{
    return text.endsWith(u'。') ? text : text + u'。';
}

QString namesOf(const QStringList &words)
{
    constexpr qsizetype named = 5;
    const QString rest = words.size() > named ? u" 等"_s : QString();
    return words.first(std::min(named, words.size())).join(u'、') + rest;
}

QString endText(const LookupQueue &queue)
{
    QString text = u"查完了：存了 %1 个词"_s.arg(queue.saved);
    if (queue.known > 0)
        text += u"，%1 个已经在生词本里"_s.arg(queue.known);
    if (!queue.failed.isEmpty())
        text += u"，%1 个没查到："_s.arg(queue.failed.size()) + namesOf(queue.failed);
    return text;
}

} // namespace

WordImport::WordImport(WordStore &words, const ConfigStore &config, const AppPaths &paths, Clock &clock,
    AIClientFactory newClient, DataWriter &writer)
    : m_words(words)
    , m_config(config)
    , m_clock(clock)
    , m_newClient(std::move(newClient))
    , m_path(paths.lookupQueue)
    , m_damaged(clock, writer)
    , m_queue(readRecordFile<LookupQueue>(m_path, m_damaged).value_or(LookupQueue()))
{
    if (m_queue.words.isEmpty())
        m_queue = {};
    else
        m_state = State::paused;
}

void WordImport::start()
{
    if (m_state == State::paused && !m_queue.isPaused)
        resume();
}

qsizetype WordImport::add(const QStringList &words)
{
    if (m_queue.words.isEmpty()) {
        m_queue = {};
        m_putBack.clear();
    }
    QSet<QString> saved, waiting;
    for (const WordEntry &word : m_words.entries())
        saved.insert(headwordKey(word.headword));
    for (const QString &word : std::as_const(m_queue.words))
        waiting.insert(headwordKey(word));
    qsizetype count = 0;
    for (const QString &word : words) {
        const QString key = headwordKey(word);
        if (saved.contains(key))
            continue;
        ++count;
        if (!waiting.contains(key))
            m_queue.words.append(word);
        waiting.insert(key);
    }
    if (count > 0) {
        resume();
        emit changed();
    }
    return count;
}

void WordImport::pause()
{
    if (m_state != State::looking && m_state != State::waiting)
        return;
    m_queue.isPaused = true;
    m_notice.clear();
    write();
    m_state = State::paused;
    m_task.cancel();
    emit changed();
}

void WordImport::resume()
{
    if (m_queue.words.isEmpty())
        return;
    m_queue.isPaused = false;
    m_inARow.clear();
    m_notice.clear();
    write();
    if (m_state != State::looking)
        run(m_task.renew());
}

void WordImport::toggle()
{
    if (m_state == State::paused)
        resume();
    else
        pause();
}

QString WordImport::toggleLabel() const
{
    return m_state == State::paused ? u"继续"_s : u"暂停"_s;
}

void WordImport::cancel()
{
    m_queue = {};
    m_notice = u"已取消，查好的词留在生词本里"_s;
    write();
    m_state = State::idle;
    m_task.cancel();
    emit changed();
}

qint64 WordImport::settledCount() const
{
    return m_queue.saved + m_queue.known + m_queue.failed.size();
}

qint64 WordImport::total() const
{
    return settledCount() + m_queue.words.size();
}

QString WordImport::statusText() const
{
    const QString rest = u"还有 %1 个词没查"_s.arg(m_queue.words.size());
    switch (m_state) {
    case State::looking:
        // No QString::arg for the word, which may hold a %1 of its own.
        return u"正在查 %1 / %2："_s.arg(settledCount() + 1).arg(total()) + m_queue.words.first();
    case State::waiting:
        return m_notice + u"会自动再试，"_s + rest;
    case State::paused:
        return m_notice.isEmpty() ? u"已暂停，"_s + rest : m_notice + rest;
    case State::idle:
        break;
    }
    return total() > 0 ? endText(m_queue) : m_notice;
}

QCoro::Task<> WordImport::run(std::stop_token stop)
{
    while (!m_queue.words.isEmpty()) {
        setState(State::looking);
        try {
            const auto client = m_newClient(m_config.config());
            const LookupResult result = co_await client->lookup(m_queue.words.first(), stop);
            if (!stop.stop_requested())
                take(result.explanation);
        } catch (const std::exception &failure) {
            if (!stop.stop_requested())
                meet(failure);
        }
        if (stop.stop_requested() || m_state == State::paused)
            co_return;
        if (m_state == State::waiting)
            co_await m_clock.sleep(retryAfter, stop);
        if (stop.stop_requested())
            co_return;
    }
    setState(State::idle);
}

// What was asked for may be another form or spelling of a word that is saved.
void WordImport::take(const Explanation &explanation)
{
    m_inARow.clear();
    if (m_words.findHeadword(explanation.headword)) {
        ++m_queue.known;
        settle(explanation.headword + u" 已经在生词本里"_s);
        return;
    }
    m_words.save(explanation, {}); // a list is no place where it was read
    ++m_queue.saved;
    settle(u"已保存："_s + explanation.headword + u' ' + explanation.meaningZh);
}

void WordImport::meet(const std::exception &failure)
{
    const QString reason = sentence(Failure::shownText(failure));
    if (needsTheUser(failure))
        return halt(reason);
    if (passes(failure)) {
        m_notice = reason;
        setState(State::waiting);
        return;
    }
    const QString word = m_queue.words.first();
    m_queue.failed.append(word);
    m_inARow.append(word);
    const bool isEnough = m_inARow.size() == mostInARow;
    if (isEnough)
        putBack();
    settle(word + u" 没查到："_s + reason);
    if (isEnough && !m_queue.words.isEmpty())
        halt(reason);
}

// What failed one after the other may have failed for a reason of the settings', so it gets one more try.
void WordImport::putBack()
{
    QStringList again;
    for (const QString &word : std::exchange(m_inARow, {})) {
        if (m_putBack.contains(word))
            continue;
        m_putBack.insert(word);
        m_queue.failed.removeOne(word);
        again.append(word);
    }
    m_queue.words = m_queue.words.first(1) + again + m_queue.words.sliced(1);
}

void WordImport::halt(const QString &reason)
{
    m_notice = reason;
    m_queue.isPaused = true;
    write();
    setState(State::paused);
}

void WordImport::settle(const QString &line)
{
    m_queue.words.removeFirst();
    write();
    emit wordSettled(line);
}

void WordImport::setState(State state)
{
    m_state = state;
    emit changed();
}

void WordImport::write()
{
    writeRecordFile(m_path, m_queue, m_damaged);
}

} // namespace nimbrelle
