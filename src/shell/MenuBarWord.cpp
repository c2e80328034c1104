#include "shell/MenuBarWord.h"

#include "frame/ConfigStore.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"

#include <QRandomGenerator>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds rotationPeriod{1200};

void shuffleAtRandom(QList<QUuid> &ids)
{
    std::shuffle(ids.begin(), ids.end(), *QRandomGenerator::global());
}

} // namespace

MenuBarWord::MenuBarWord(
    WordStore &store, const ConfigStore &config, LearningLog &log, Clock &clock, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_config(config)
    , m_log(log)
    , m_shuffle(shuffleAtRandom)
    , m_rotation(clock, rotationPeriod)
{
}

void MenuBarWord::start()
{
    // Queued, since the store tells of a change before it takes effect.
    connect(&m_store, &WordStore::changing, this, &MenuBarWord::replaceMissing, Qt::QueuedConnection);
    connect(&m_rotation, &Recheck::due, this, &MenuBarWord::next);
    next();
    m_rotation.start();
}

void MenuBarWord::next()
{
    const QList<QUuid> ids = learningIds();
    m_queue.removeIf([&ids](const QUuid &id) { return !ids.contains(id); });
    if (m_queue.isEmpty())
        beginPass(ids);
    m_current = m_queue.isEmpty() ? std::nullopt : std::optional(m_queue.takeFirst());
    m_glanced = false;
    emit changed();
}

std::optional<WordEntry> MenuBarWord::entry() const
{
    if (!m_config.config().menuBarWord || !m_current)
        return std::nullopt;
    const WordEntry *word = m_store.find(*m_current);
    if (!word || word->stage != Stage::learning)
        return std::nullopt;
    return *word;
}

void MenuBarWord::glance()
{
    const auto shown = entry();
    if (!shown || std::exchange(m_glanced, true))
        return;
    m_log.add(LogKind::glance, shown->headword);
}

QList<QUuid> MenuBarWord::learningIds() const
{
    QList<QUuid> ids;
    for (const WordEntry &word : m_store.entries()) {
        if (word.stage == Stage::learning)
            ids.append(word.id);
    }
    return ids;
}

// The last word of a pass does not open the following one.
void MenuBarWord::beginPass(const QList<QUuid> &ids)
{
    m_queue = ids;
    m_shuffle(m_queue);
    if (m_queue.size() >= 2 && m_queue.first() == m_current)
        m_queue.swapItemsAt(0, 1);
}

void MenuBarWord::replaceMissing()
{
    if (!entry())
        next();
}

} // namespace nimbrelle
